#include "platform/linux/bus.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

#include <cstdlib>

#include "platform/linux/file.h"
#include "support/temp_folder.h"

namespace orvane::test {
namespace {

volatile sig_atomic_t signals = 0;

// A request to end the program may come while the bus has not answered yet. It must not cost the
// call: the wait goes on.
TEST(Bus, WaitOutlivesSignals) {
  const TempFolder folder;
  sockaddr_un address{AF_UNIX, {}};
  folder.Path("bus").copy(address.sun_path, sizeof address.sun_path - 1);
  const File silent(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(bind(silent.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(silent.Get(), 1), 0);
  setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder.Path("bus")).c_str(), 1);
  std::string error;
  const auto bus = Bus::Open(Bus::Which::kUser, error);
  ASSERT_TRUE(bus) << error;

  const auto before = signal(SIGALRM, [](int) { signals = signals + 1; });
  itimerval every_millisecond{{0, 1000}, {0, 1000}}, never{};
  setitimer(ITIMER_REAL, &every_millisecond, nullptr);
  const auto deadline = Bus::Time::clock::now() + std::chrono::minutes(1);
  EXPECT_TRUE(bus->Wait([] { return signals >= 5; }, deadline));
  setitimer(ITIMER_REAL, &never, nullptr);
  signal(SIGALRM, before);
}

}  // namespace
}  // namespace orvane::test
