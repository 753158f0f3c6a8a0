#include "simulate/pseudo_terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <filesystem>

namespace orvane::test {
namespace {

namespace fs = std::filesystem;

bool Readable(int descriptor) {
  pollfd end{descriptor, POLLIN, 0};
  return poll(&end, 1, 5000) == 1;
}

// A program that has the port open.
struct Program {
  explicit Program(const fs::path& path)
      : descriptor(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {}
  ~Program() { close(descriptor); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // What comes up to and with the `last` bytes, or until nothing comes any more.
  std::string ReadTo(std::string_view last) const {
    std::string text;
    char byte = 0;
    while (!text.ends_with(last) && Readable(descriptor) && read(descriptor, &byte, 1) == 1) {
      text += byte;
    }
    return text;
  }

  int descriptor;
};

class PseudoTerminalTest : public testing::Test {
 protected:
  PseudoTerminalTest() { EXPECT_EQ(terminal_.Open(), ""); }
  ~PseudoTerminalTest() override { fs::remove_all(directory_); }

  std::string name_ = "/tmp/orvane-pty-XXXXXX";
  fs::path directory_ = mkdtemp(name_.data());
  fs::path link_ = directory_ / "ups";
  PseudoTerminal terminal_{link_};
};

TEST_F(PseudoTerminalTest, BytesPassUnchangedWhoeverComesAndGoes) {
  std::string every_byte;
  for (int byte = 0; byte < 256; ++byte) every_byte += static_cast<char>(byte);
  for (int visit = 0; visit < 3; ++visit) {
    SCOPED_TRACE(visit);
    const Program program(link_);
    EXPECT_EQ(write(program.descriptor, every_byte.data(), 256), 256);
    ASSERT_TRUE(Readable(terminal_.Descriptor()));
    EXPECT_EQ(terminal_.Read(), every_byte);
    terminal_.Write(every_byte);
    EXPECT_EQ(program.ReadTo(every_byte), every_byte);
  }
}

TEST_F(PseudoTerminalTest, WhatNobodyReadsGivesWayToTheNew) {
  const Program program(link_);
  for (int i = 0; i < 5000; ++i) terminal_.Write(std::string(100, 'x'));
  terminal_.Write("new");
  const std::string text = program.ReadTo("new");
  EXPECT_TRUE(text.ends_with("new"));
  EXPECT_LT(text.size(), 100'000U);
}

TEST_F(PseudoTerminalTest, BytesForNobodyAreLost) {
  terminal_.Write("before anybody came");
  {
    const Program first(link_), second(link_);
    terminal_.Write("left unread");
  }
  terminal_.Write("after they went");
  const Program program(link_);
  terminal_.Write("for me");
  EXPECT_EQ(program.ReadTo("me"), "for me");
}

TEST_F(PseudoTerminalTest, ALinkTakenOverByAnotherStays) {
  PseudoTerminal second(link_);
  ASSERT_EQ(second.Open(), "");
  terminal_.Close();
  EXPECT_EQ(fs::read_symlink(link_), second.Name());
}

}  // namespace
}  // namespace orvane::test
