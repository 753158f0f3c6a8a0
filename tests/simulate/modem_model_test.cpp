#include "simulate/modem_model.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

class ModemModelTest : public testing::Test {
 protected:
  ModemModelTest() {
    AddModemOrders(orders, modem);
    modem.OnTrace = [this](Trace kind, std::string_view text) {
      told.push_back((kind == Trace::kCommand ? "> "
                      : kind == Trace::kReply ? "< "
                                              : "* ") +
                     std::string(text));
    };
  }

  // What the modem says in the time that follows, each piece with its moment in milliseconds.
  std::vector<std::pair<long, std::string>> Hear(Moment until) {
    std::vector<std::pair<long, std::string>> heard;
    const auto take = [&] {
      if (std::string bytes = modem.Take(); !bytes.empty()) heard.emplace_back(now.count(), bytes);
    };
    take();
    while (const auto next = modem.Next()) {
      if (*next > until) break;
      now = *next;
      modem.Advance(now);
      take();
    }
    now = until;
    modem.Advance(now);
    take();
    return heard;
  }

  ModemModel modem;
  OrderTable orders;
  Moment now{0};
  std::vector<std::string> told;
};

using Heard = std::vector<std::pair<long, std::string>>;

struct ManneredCase {
  std::vector<const char*> orders;
  Heard heard;
};

TEST_F(ModemModelTest, AnswersADialAsItIsTold) {
  const ManneredCase cases[] = {
      {{"echo off"}, {{3000, "\r\nOK\r\n"}}},
      {{}, {{0, "ATDT119;\r"}, {3000, "\r\nOK\r\n"}}},
      {{"echo off", "crlf off", "delay 0.5"}, {{500, "OK"}}},
      {{"echo off", "answer busy"}, {{3000, "\r\nBUSY\r\n\r\nOK\r\n"}}},
      {{"echo off", "crlf off", "answer busy-alone"}, {{3000, "BUSY"}}},
      {{"echo off", "crlf off", "answer no-carrier"}, {{3000, "NO CARRIER"}}},
      {{"echo off", "crlf off", "answer no-dialtone"}, {{3000, "NO DIALTONE"}}},
      {{"echo off", "answer none"}, {}},
      {{"answer none"}, {{0, "ATDT119;\r"}}},
      {{"echo off", "crlf off", "delay 0", "pieces 4", "answer no-carrier"},
       {{0, "NO C"}, {60, "ARRI"}, {120, "ER"}}},
      {{"echo off", "crlf off", "delay 1", "pieces 1", "answer busy"},
       {{1000, "B"}, {1060, "U"}, {1120, "S"}, {1180, "YO"}, {1240, "K"}}},
  };
  for (const ManneredCase& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.orders));
    modem = {};
    now = 0ms;
    for (const char* order : c.orders) ASSERT_EQ(orders.Run(order), "");
    modem.Receive("ATDT119;\r");
    EXPECT_EQ(Hear(60s), c.heard);
  }
}

TEST_F(ModemModelTest, CommandsComeInAnyPieces) {
  modem.manners.echo = modem.manners.crlf = false;
  modem.Receive("AT");
  modem.Receive("DT0, 1");
  EXPECT_TRUE(told.empty());
  modem.Receive("2;\rATH");
  modem.Advance(21s);
  modem.Receive("\r");
  EXPECT_EQ(told, (std::vector<std::string>{"> ATDT0, 12;", "* dials 0, 12", "< OK", "> ATH",
                                            "* hangs up after 21.0 s", "< OK"}));
  EXPECT_EQ(modem.Take(), "OKOK");
}

TEST_F(ModemModelTest, KnowsItsCommands) {
  const struct {
    const char* command;
    const char* answer;
  } cases[] = {
      {"AT\r", "OK"},      {"at\r\n", "OK"},   {"ATZ\r", "OK"},           {"ATE0\r", "OK"},
      {"ATH\r", "OK"},     {"\r", ""},         {"\r\n\r\n", ""},          {"Q1\r", "ERROR"},
      {"ATX9\r", "ERROR"}, {"atdt1;\r", "OK"}, {"ATDT1\r", "NO CARRIER"},
  };
  modem.manners = {.delay = 0s, .echo = false, .crlf = false};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.command);
    modem.Receive(c.command);
    EXPECT_EQ(modem.Take(), c.answer);
  }
  modem.Receive("ATE1\rAT\r");
  EXPECT_EQ(modem.Take(), "OKAT\rOK");
}

TEST_F(ModemModelTest, CommandCutsAnAnswerShort) {
  modem.manners.echo = modem.manners.crlf = false;
  modem.Receive("ATDT1;\r");
  modem.Advance(2s);
  modem.manners.answer = DialAnswer::kNoCarrier;
  modem.Receive("ATDT2;\r");
  EXPECT_EQ(Hear(60s), (Heard{{5000, "NO CARRIER"}}));
  EXPECT_EQ(told,
            (std::vector<std::string>{"> ATDT1;", "* dials 1", "> ATDT2;", "* hangs up after 2.0 s",
                                      "* dials 2", "< NO CARRIER"}));
}

TEST_F(ModemModelTest, WrongOrdersChangeNothing) {
  for (const char* order : {"answer", "answer maybe", "delay -1", "pieces x", "say"}) {
    EXPECT_NE(orders.Run(order), "") << order;
  }
  EXPECT_EQ(modem.manners.answer, DialAnswer::kOk);
  EXPECT_EQ(orders.Run("say RING"), "");
  EXPECT_EQ(modem.Take(), "\r\nRING\r\n");
}

}  // namespace
}  // namespace orvane::test
