#include "platform/linux/unix_server.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <filesystem>
#include <optional>

#include "support/temp_folder.h"

namespace orvane::test {
namespace {

using Peer = LocalServer::Peer;

constexpr gid_t kOtherGroup = 54321;

// A client that waits for nothing.
class Client {
 public:
  explicit Client(const std::string& path)
      : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    connected_ =
        connect(socket_.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }

  bool Connected() const { return connected_; }
  void Say(std::string_view text) const { EXPECT_TRUE(socket_.WriteAll(text)); }
  // What there is to read now; nothing when the other end has closed.
  std::optional<std::string> Hear() const {
    char text[65536];
    const ssize_t size = recv(socket_.Get(), text, sizeof text, 0);
    if (size == 0) return std::nullopt;
    return std::string(text, size > 0 ? static_cast<std::size_t>(size) : 0);
  }

 private:
  File socket_;
  bool connected_ = false;
};

std::ptrdiff_t Descriptors() {
  const std::filesystem::directory_iterator open("/proc/self/fd");
  return std::distance(begin(open), end(open));
}

struct Offer {
  explicit Offer(const std::string& path)
      : server(
            path,
            [this](int, std::function<void()> run) {
              serve = std::move(run);
              return std::make_shared<int>(0);
            },
            [this](const std::string& line) { reports.push_back(line); }) {
    server.OnConnect = [this](Peer peer) { last = peer; };
    server.OnReceive = [this](Peer peer, std::string_view bytes) {
      heard += bytes;
      if (bytes == "drop\n") server.Drop(peer);
    };
    server.OnClose = [this](Peer) { ++closed; };
  }

  std::function<void()> serve;
  std::vector<std::string> reports;
  std::string heard;
  int closed = 0;
  Peer last = 0;
  UnixServer server;
};

TEST(UnixServer, HasTheRightsOfItsDirectoryAndGoesAtTheEnd) {
  const TempFolder folder;
  const bool root = geteuid() == 0;
  if (root) {
    ASSERT_EQ(chown(folder.Path().c_str(), static_cast<uid_t>(-1), kOtherGroup), 0);
  }
  const std::string path = folder.Path("orvane-ups");
  const mode_t before = umask(0077);
  {
    Offer offer(path);
    ASSERT_TRUE(offer.server.Open());
    struct stat made {};
    ASSERT_EQ(stat(path.c_str(), &made), 0);
    EXPECT_EQ(made.st_mode, S_IFSOCK | 0660U);
    EXPECT_EQ(made.st_gid, root ? kOtherGroup : getegid());
    EXPECT_TRUE(Client(path).Connected());
    // A socket that was taken away is missed, and that of somebody else is not taken along.
    unlink(path.c_str());
    EXPECT_FALSE(offer.server.IsOpen());
    Offer other(path);
    ASSERT_TRUE(other.server.Open());
    offer.server.Close();
    EXPECT_TRUE(Client(path).Connected());
  }
  umask(before);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(UnixServer, ReplacesWhatIsStaleAndNothingElse) {
  const TempFolder folder;
  const auto expect_refused = [](const std::string& path, const std::string& reason) {
    Offer offer(path);
    EXPECT_FALSE(offer.server.Open());
    EXPECT_FALSE(offer.server.Open());
    EXPECT_EQ(offer.reports,
              std::vector<std::string>{"the UPS is not shared: " + path + ": " + reason});
  };
  expect_refused(folder.Path("none/ups"), "No such file or directory");
  expect_refused(folder.Path(std::string(108, 'a')), "the path is too long for a socket");
  folder.Write("file", "text");
  expect_refused(folder.Path("file"), "something else has this name");
  EXPECT_EQ(folder.Read("file"), "text");
  const std::string path = folder.Path("ups");
  {
    // What a program leaves that is killed.
    const File dead(socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(dead.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  }
  Offer offer(path);
  ASSERT_TRUE(offer.server.Open());
  expect_refused(path, "another program serves it");
  EXPECT_TRUE(Client(path).Connected());
  Offer nameless("");
  EXPECT_FALSE(nameless.server.Open());
  EXPECT_TRUE(nameless.reports.empty());
}

TEST(UnixServer, PeersAreHeardAndToldInOrder) {
  const TempFolder folder;
  Offer offer(folder.Path("ups"));
  ASSERT_TRUE(offer.server.Open());
  std::optional<Client> first(folder.Path("ups"));
  offer.serve();
  const Peer peer = offer.last;
  first->Say("one\n");
  offer.serve();
  EXPECT_EQ(offer.heard, "one\n");
  // More than the kernel takes at once waits, and follows as the peer reads on.
  std::string sent, heard;
  for (int i = 0; i < 16; ++i) {
    const std::string piece(1024, static_cast<char>('a' + i));
    sent += piece;
    ASSERT_TRUE(offer.server.Send(peer, piece));
  }
  // Meanwhile it is not listened to.
  first->Say("two\n");
  for (int i = 0; i < 100 && heard.size() < sent.size(); ++i) {
    heard += first->Hear().value_or("");
    offer.serve();
  }
  EXPECT_EQ(heard, sent);
  offer.serve();
  EXPECT_EQ(offer.heard, "one\ntwo\n");
  Client second(folder.Path("ups"));
  offer.serve();
  second.Say("drop\n");
  offer.serve();
  EXPECT_EQ(second.Hear(), std::nullopt);
  EXPECT_EQ(offer.closed, 0);
  first.reset();
  offer.serve();
  EXPECT_EQ(offer.closed, 1);
  EXPECT_FALSE(offer.server.Send(peer, "gone"));
}

TEST(UnixServer, PeersThatNeverReadAndManyCallsCostLittle) {
  const TempFolder folder;
  Offer offer(folder.Path("ups"));
  ASSERT_TRUE(offer.server.Open());
  const auto before = Descriptors();
  {
    const Client deaf(folder.Path("ups"));
    offer.serve();
    std::size_t taken = 0;
    while (taken < 1000000 && offer.server.Send(offer.last, std::string(512, 'x'))) taken += 512;
    EXPECT_LT(taken, 64U * 1024);
    for (int i = 0; i < 1000; ++i) {
      const Client caller(folder.Path("ups"));
      EXPECT_TRUE(caller.Connected());
      offer.serve();
    }
    // Without descriptors to spare a caller is turned away, and does not stay in the queue.
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const Client late(folder.Path("ups"));
    rlimit low = limit;
    low.rlim_cur = static_cast<rlim_t>(dup(0));
    close(static_cast<int>(low.rlim_cur));
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &low), 0);
    offer.serve();
    EXPECT_EQ(late.Hear(), std::nullopt);
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  offer.serve();
  EXPECT_EQ(Descriptors(), before);
}

}  // namespace
}  // namespace orvane::test
