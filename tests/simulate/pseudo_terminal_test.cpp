#include "simulate/pseudo_terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace orvane::test {
namespace {

namespace fs = std::filesystem;

class PseudoTerminalTest : public testing::Test {
 protected:
  PseudoTerminalTest() {
    char name[] = "/tmp/orvane-pty-XXXXXX";
    directory_ = mkdtemp(name);
    link_ = directory_ / "ups";
  }
  ~PseudoTerminalTest() override { fs::remove_all(directory_); }

  // A program that has the port open.
  struct Program {
    explicit Program(const fs::path& path)
        : descriptor(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {}
    ~Program() { close(descriptor); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Write(const std::string& bytes) const {
      EXPECT_EQ(write(descriptor, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    // Up to `size` bytes, as soon as they are there; what came within the deadline.
    std::string Read(std::size_t size) const {
      std::string text;
      while (text.size() < size && Readable(descriptor)) {
        char bytes[4096];
        const ssize_t count = read(descriptor, bytes, std::min(size - text.size(), sizeof bytes));
        if (count <= 0) break;
        text.append(bytes, static_cast<std::size_t>(count));
      }
      return text;
    }

    int descriptor;
  };

  static bool Readable(int descriptor) {
    pollfd end{descriptor, POLLIN, 0};
    return poll(&end, 1, 5000) == 1;
  }

  fs::path directory_;
  fs::path link_;
};

TEST_F(PseudoTerminalTest, BytesPassUnchangedWhoeverComesAndGoes) {
  PseudoTerminal terminal(link_);
  ASSERT_EQ(terminal.Open(), "");
  EXPECT_EQ(terminal.Read(), "");
  std::string every_byte;
  for (int byte = 0; byte < 256; ++byte) every_byte += static_cast<char>(byte);
  for (int visit = 0; visit < 5; ++visit) {
    SCOPED_TRACE(visit);
    const Program program(link_);
    ASSERT_GE(program.descriptor, 0);
    program.Write(every_byte);
    ASSERT_TRUE(Readable(terminal.Descriptor()));
    EXPECT_EQ(terminal.Read(), every_byte);
    terminal.Write(every_byte);
    EXPECT_EQ(program.Read(256), every_byte);
  }
  EXPECT_EQ(terminal.Read(), "");
}

TEST_F(PseudoTerminalTest, WhatNobodyReadsGivesWayToTheNew) {
  PseudoTerminal terminal(link_);
  ASSERT_EQ(terminal.Open(), "");
  const Program program(link_);
  for (int i = 0; i < 5000; ++i) terminal.Write(std::string(100, 'x'));
  terminal.Write("new");
  std::string text;
  while (!text.ends_with("new")) {
    const std::string more = program.Read(1);
    ASSERT_FALSE(more.empty()) << text.size();
    text += more;
  }
  EXPECT_LT(text.size(), 100'000U);
}

TEST_F(PseudoTerminalTest, BytesForNobodyAreLost) {
  PseudoTerminal terminal(link_);
  ASSERT_EQ(terminal.Open(), "");
  terminal.Write("before anybody came");
  {
    const Program first(link_), second(link_);
    terminal.Write("left unread");
  }
  terminal.Write("after they went");
  const Program program(link_);
  terminal.Write("for me");
  EXPECT_EQ(program.Read(6), "for me");
}

TEST_F(PseudoTerminalTest, LinkNamesTheTerminalWhileItIsOpen) {
  fs::create_symlink("/nowhere", link_);  // left behind by a crash
  PseudoTerminal terminal(link_);
  ASSERT_EQ(terminal.Open(), "");
  EXPECT_EQ(fs::read_symlink(link_), terminal.Name());
  EXPECT_EQ(terminal.Open(), "");

  const Program program(link_);
  terminal.Close();
  EXPECT_FALSE(fs::is_symlink(link_));
  EXPECT_FALSE(terminal.IsOpen());
  // Whoever had it open finds the line dead.
  EXPECT_TRUE(Readable(program.descriptor));
  EXPECT_LT(write(program.descriptor, "Q1\r", 3), 0);
  terminal.Write("lost");
  EXPECT_EQ(terminal.Read(), "");

  ASSERT_EQ(terminal.Open(), "");
  EXPECT_EQ(fs::read_symlink(link_), terminal.Name());
}

TEST_F(PseudoTerminalTest, NothingButALinkIsReplaced) {
  std::ofstream(link_) << "precious";
  PseudoTerminal terminal(link_);
  EXPECT_EQ(terminal.Open(), link_.string() + ": exists and is no link");
  EXPECT_FALSE(terminal.IsOpen());
  EXPECT_TRUE(fs::is_regular_file(link_));

  PseudoTerminal lost(directory_ / "absent" / "ups");
  EXPECT_NE(lost.Open(), "");
  EXPECT_FALSE(lost.IsOpen());
}

TEST_F(PseudoTerminalTest, ALinkTakenOverByAnotherStays) {
  PseudoTerminal first(link_), second(link_);
  ASSERT_EQ(first.Open(), "");
  ASSERT_EQ(second.Open(), "");
  first.Close();
  EXPECT_EQ(fs::read_symlink(link_), second.Name());
}

}  // namespace
}  // namespace orvane::test
