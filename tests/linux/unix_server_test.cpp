#include "platform/linux/unix_server.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <filesystem>

#include "support/temp_folder.h"

namespace orvane::test {
namespace {

using Peer = LocalServer::Peer;

// A socket that waits for nothing, and its call on `path`; or, left alone at a path of its own,
// what a program leaves that is killed.
struct Client {
  explicit Client(const std::string& path, decltype(connect)* act = connect) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    done = act(line.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  // What there is to read now; "closed" when the other end has closed.
  std::string Hear() const {
    char text[65536];
    const ssize_t size = recv(line.Get(), text, sizeof text, 0);
    return size == 0 ? "closed" : std::string(text, size > 0 ? static_cast<std::size_t>(size) : 0);
  }

  File line{socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)};
  bool done = false;
};

struct Offer {
  explicit Offer(const std::string& path)
      : server(
            path,
            [this](int, std::function<void()> run) {
              serve = std::move(run);
              return std::make_shared<int>(0);
            },
            [this](const std::string& line) { reports += line; }) {
    server.OnConnect = [this](Peer peer) { last = peer; };
    server.OnReceive = [this](Peer, std::string_view bytes) { heard += bytes; };
    server.OnClose = [this](Peer) { ++closed; };
  }

  std::function<void()> serve;
  std::string reports;
  std::string heard;
  int closed = 0;
  Peer last = 0;
  UnixServer server;
};

TEST(UnixServer, ReplacesWhatIsStaleAndNothingElse) {
  const TempFolder folder;
  const std::string path = folder.Write("ups", "text");
  const auto expect_refused = [](const std::string& place, const std::string& reason) {
    Offer offer(place);
    EXPECT_FALSE(offer.server.Open());
    EXPECT_FALSE(offer.server.Open());
    EXPECT_EQ(offer.reports, "the UPS is not shared: " + place + ": " + reason);
  };
  expect_refused(folder.Path("none/ups"), "No such file or directory");
  expect_refused(folder.Path(std::string(108, 'a')), "the path is too long for a socket");
  expect_refused(path, "something else has this name");
  unlink(path.c_str());
  ASSERT_TRUE(Client(path, bind).done);
  // The group is that of the directory, which only root can give away.
  const gid_t group = geteuid() == 0 ? 54321 : getegid();
  ASSERT_EQ(chown(folder.Path().c_str(), static_cast<uid_t>(-1), group), 0);
  const mode_t before = umask(0077);
  Offer offer(path);
  ASSERT_TRUE(offer.server.Open());
  umask(before);
  struct stat made {};
  ASSERT_EQ(stat(path.c_str(), &made), 0);
  EXPECT_EQ(made.st_mode, S_IFSOCK | 0660U);
  EXPECT_EQ(made.st_gid, group);
  expect_refused(path, "another program serves it");
  // A socket that was taken away is missed, and that of somebody else is not taken along.
  unlink(path.c_str());
  EXPECT_FALSE(offer.server.IsOpen());
  Offer other(path);
  ASSERT_TRUE(other.server.Open());
  offer.server.Close();
  EXPECT_TRUE(Client(path).done);
  other.server.Close();
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(UnixServer, WhatAPeerDoesNotTakeWaitsAndFollowsInOrder) {
  const TempFolder folder;
  Offer offer(folder.Path("ups"));
  ASSERT_TRUE(offer.server.Open());
  {
    const Client client(folder.Path("ups"));
    offer.serve();
    std::string sent, heard;
    for (int i = 0; i < 16; ++i) {
      sent += std::string(1024, static_cast<char>('a' + i));
      ASSERT_TRUE(offer.server.Send(offer.last, sent.substr(sent.size() - 1024)));
    }
    // Meanwhile it is not listened to.
    ASSERT_TRUE(client.line.WriteAll("one\n"));
    offer.serve();
    EXPECT_EQ(offer.heard, "");
    for (int i = 0; i < 100 && heard.size() < sent.size(); ++i) {
      heard += client.Hear();
      offer.serve();
    }
    EXPECT_EQ(heard, sent);
    offer.serve();
    EXPECT_EQ(offer.heard, "one\n");
  }
  offer.serve();
  EXPECT_EQ(offer.closed, 1);
  EXPECT_FALSE(offer.server.Send(offer.last, "gone"));
}

TEST(UnixServer, PeersThatNeverReadAndManyCallsCostLittle) {
  const TempFolder folder;
  Offer offer(folder.Path("ups"));
  ASSERT_TRUE(offer.server.Open());
  const int free_before = dup(0);
  close(free_before);
  {
    const Client deaf(folder.Path("ups"));
    offer.serve();
    std::size_t taken = 0;
    while (taken < 1000000 && offer.server.Send(offer.last, std::string(512, 'x'))) taken += 512;
    EXPECT_LT(taken, 48U * 1024);
    for (int i = 0; i < 1000; ++i) {
      EXPECT_TRUE(Client(folder.Path("ups")).done);
      offer.serve();
    }
    // Without descriptors to spare a caller is turned away, and does not stay in the queue.
    const Client late(folder.Path("ups"));
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const int next = dup(0);
    close(next);
    const rlimit full{static_cast<rlim_t>(next), limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &full), 0);
    offer.serve();
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(late.Hear(), "closed");
  }
  offer.serve();
  const int free_after = dup(0);
  close(free_after);
  EXPECT_EQ(free_after, free_before);
}

}  // namespace
}  // namespace orvane::test
