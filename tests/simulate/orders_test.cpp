#include "simulate/orders.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

TEST(OrderTableTest, OrdersAreCarriedOutOrRefusedWithAReason) {
  std::string done;
  OrderTable orders;
  orders.Add("quit", "", [&] { done += "quit;"; });
  orders.AddSwitch("mains", "", [&](bool on) { done += on ? "mains on;" : "mains off;"; });
  orders.AddNumber("load", 0, 150.5, "", [&](double load) { done += std::to_string(load) + ";"; });
  orders.AddText("answer", "TEXT", "", [&](std::string_view text) -> std::string {
    if (text.empty()) return "takes a text";
    done += std::string(text) + ";";
    return {};
  });
  struct Case {
    const char* line;
    const char* done;
    const char* complaint;
  };
  const Case cases[] = {
      {"quit", "quit;", ""},
      {"  quit\t\r", "quit;", ""},
      {"quit now", "", "\"quit\" takes no argument"},
      {"mains off", "mains off;", ""},
      {"mains   on", "mains on;", ""},
      {"mains", "mains on;", ""},
      {"mains maybe", "", "\"mains\" takes \"on\" or \"off\""},
      {"load 110", "110.000000;", ""},
      {"load 150.5", "150.500000;", ""},
      {"load 150.6", "", "\"load\" takes a number from 0 to 150.5"},
      {"load -1", "", "\"load\" takes a number from 0 to 150.5"},
      {"load", "", "\"load\" takes a number from 0 to 150.5"},
      {"load 3x", "", "\"load\" takes a number from 0 to 150.5"},
      {"load nan", "", "\"load\" takes a number from 0 to 150.5"},
      {"answer NO CARRIER ", "NO CARRIER;", ""},
      {"answer", "", "\"answer\" takes a text"},
      {"", "", ""},
      {" # quit", "", ""},
      {"Mains off", "", "unknown order \"Mains\"; \"help\" lists the orders"},
      {"mainsoff", "", "unknown order \"mainsoff\"; \"help\" lists the orders"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.line);
    done.clear();
    EXPECT_EQ(orders.Run(row.line), row.complaint);
    EXPECT_EQ(done, row.done);
  }
}

TEST(OrderTableTest, HelpNamesEveryOrderInItsColumn) {
  OrderTable orders;
  orders.AddSwitch("mains", "the mains", [](bool) {});
  orders.AddNumber("a very long name indeed", 0, 1, "a number", [](double) {});
  EXPECT_EQ(orders.Help(),
            "  mains on|off        the mains\n"
            "  a very long name indeed NUMBER a number\n");
}

TEST(LineReaderTest, LinesInAnyPieces) {
  struct Case {
    const char* name;
    char end;
    std::vector<std::string> pieces;
    std::vector<std::string> lines;
  };
  const Case cases[] = {
      {"in bytes", '\n', {"q", "u", "\n"}, {"qu"}},
      {"several at once", '\n', {"a\nb\n\nc"}, {"a", "b", ""}},
      {"carriage return in front", '\n', {"a\r", "\nb\rc\n"}, {"a", "b\rc"}},
      {"ended by carriage return", '\r', {"Q1\rMD", "\r\nT\r"}, {"Q1", "MD", "\nT"}},
      {"overlong", '\n', {std::string(5000, 'x') + "\ny\n"}, {std::string(1024, 'x'), "y"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    LineReader reader(row.end);
    std::vector<std::string> lines;
    for (const std::string& piece : row.pieces) {
      reader.Put(piece);
      while (auto line = reader.Take()) lines.push_back(*line);
    }
    EXPECT_EQ(lines, row.lines);
  }
}

TEST(ScriptTest, OrdersComeAtTheirTimes) {
  Script script;
  ASSERT_EQ(script.Read("# a trial\n\n5 mains off\r\n  0.25  load 110 \n5 battery 20\n1 quit"), "");
  EXPECT_EQ(script.Next(), 250ms);
  EXPECT_EQ(script.Take(249ms), std::nullopt);
  EXPECT_EQ(script.Take(250ms), "load 110");
  EXPECT_EQ(script.Take(250ms), std::nullopt);
  EXPECT_EQ(script.Next(), 1s);
  EXPECT_EQ(script.Take(9s), "quit");
  EXPECT_EQ(script.Take(9s), "mains off");
  EXPECT_EQ(script.Take(9s), "battery 20");
  EXPECT_EQ(script.Take(9s), std::nullopt);
  EXPECT_EQ(script.Next(), std::nullopt);
}

TEST(ScriptTest, ABadLineIsNamed) {
  const char* cases[] = {"1 quit\n\nquit\n", "\n\n3\n",       "# x\n\n-1 quit",
                         "\n\n1e3 quit",     "\n\n5s quit\n", "\n\nnan quit\n"};
  for (const char* text : cases) {
    SCOPED_TRACE(text);
    EXPECT_EQ(Script().Read(text), "line 3: expected \"SECONDS ORDER\"");
  }
}

}  // namespace
}  // namespace orvane::test
