#include "simulate/pseudo_terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include "support/temp_folder.h"

namespace orvane::test {
namespace {

// A program that has the port open.
struct Program {
  explicit Program(const std::string& path)
      : descriptor(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {}
  ~Program() { close(descriptor); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // What comes up to and with the `last` bytes, or until nothing comes any more.
  std::string ReadTo(std::string_view last) const {
    std::string text;
    pollfd end{descriptor, POLLIN, 0};
    char byte = 0;
    while (!text.ends_with(last) && poll(&end, 1, 5000) == 1 && read(descriptor, &byte, 1) == 1) {
      text += byte;
    }
    return text;
  }

  int descriptor;
};

TEST(PseudoTerminalTest, BytesForNobodyAreLostAndOldOnesGiveWayToTheNew) {
  PseudoTerminal terminal;
  ASSERT_EQ(terminal.Open(), "");
  terminal.Write("before anybody came");
  {
    const Program first(terminal.Name()), second(terminal.Name());
    terminal.Write("left unread");
  }
  terminal.Write("after they went");
  const Program program(terminal.Name());
  terminal.Write("for me");
  EXPECT_EQ(program.ReadTo("me"), "for me");
  for (int i = 0; i < 5000; ++i) terminal.Write(std::string(100, 'x'));
  terminal.Write("new");
  const std::string text = program.ReadTo("new");
  EXPECT_TRUE(text.ends_with("new"));
  EXPECT_LT(text.size(), 100'000U);
}

TEST(PseudoTerminalTest, ALinkTakenOverByAnotherStays) {
  const TempFolder folder;
  PseudoTerminal first(folder.Path("ups")), second(folder.Path("ups"));
  for (PseudoTerminal* terminal : {&first, &second}) ASSERT_EQ(terminal->Open(), "");
  first.Close();
  EXPECT_EQ(std::filesystem::read_symlink(folder.Path("ups")), second.Name());
}

}  // namespace
}  // namespace orvane::test
