#include "platform/qt/device_port.h"

#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <functional>

#include "platform/hid_reports.h"
#include "simulate/hid_line.h"
#include "simulate/pseudo_terminal.h"
#include "support/temp_folder.h"

namespace orvane::test {
namespace {

using std::chrono::milliseconds;

constexpr std::chrono::seconds kPatience{30};

// How long arrivals are gathered, and what kind of device the port is.
struct Kind {
  int gather;
  bool hid;
  friend void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.gather << " ms, " << (kind.hid ? "HID" : "serial");
  }
};

struct DevicePortTest : testing::TestWithParam<Kind> {
  DevicePortTest() {
    port.Configure("2400,N,8,1");
    port.OnReceive = [this] { port.Read(received); };
  }

  // With a new device, under a new name.
  void Open() {
    ASSERT_EQ(device.Open(), "");
    name = NameOf(device);
    ASSERT_TRUE(port.Open());
  }

  // By its name the port knows a HID device.
  std::string NameOf(const PseudoTerminal& terminal) const {
    if (!GetParam().hid) return terminal.Name();
    const std::string link = folder.Path("hidraw0");
    unlink(link.c_str());
    EXPECT_EQ(symlink(terminal.Name().c_str(), link.c_str()), 0);
    return link;
  }

  void Say(const std::string& text) {
    if (!GetParam().hid) return device.Write(text);
    for (std::size_t i = 0; i < text.size(); i += kReportBytes) {
      device.Write(HidLine::Report(text.substr(i, kReportBytes)));
    }
  }
  // The next text that was sent to the device.
  std::string Heard() {
    std::string text;
    HidLine line;
    Until([&] {
      const std::string bytes = device.Read();
      text += GetParam().hid ? line.Receive(bytes) : bytes;
      return text.ends_with('\r');
    });
    return text;
  }

  static bool Until(const std::function<bool()>& condition) {
    const QDeadlineTimer limit(kPatience);
    while (!condition()) {
      if (limit.hasExpired()) return false;
      QCoreApplication::processEvents();
    }
    return true;
  }
  void Expect(std::string_view text) {
    EXPECT_TRUE(Until([&] { return received == text; })) << received;
  }

  const TempFolder folder;
  PseudoTerminal device;
  std::string name;
  DevicePort port{[this](int number) { return number == 1 ? name : ""; },
                  milliseconds(GetParam().gather)};
  std::string received;
};

INSTANTIATE_TEST_SUITE_P(Kinds, DevicePortTest,
                         testing::Values(Kind{0, false}, Kind{20, false}, Kind{0, true},
                                         Kind{20, true}));

TEST_P(DevicePortTest, CarriesBytesBothWays) {
  Open();
  port.Notify(true);
  EXPECT_TRUE(port.Write("nine byte\r"));
  EXPECT_EQ(Heard(), "nine byte\r");
  std::string all;
  for (int c = GetParam().hid ? 1 : 0; c < 256; ++c) all += static_cast<char>(c);
  Say(all);
  Expect(all);
  // A single byte is announced, too.
  Say("(");
  Expect(all + '(');
  if (GetParam().hid) return;
  // What is sent leaves without the event loop.
  EXPECT_TRUE(port.Write("Q1\r"));
  EXPECT_EQ(device.Read(), "Q1\r");
  termios line{};
  tcgetattr(device.Descriptor(), &line);
  EXPECT_EQ(cfgetospeed(&line), speed_t{B2400});
}

// What is said to nobody is lost, and what nobody fetches gives way to the new.
TEST_P(DevicePortTest, HearsWhatIsSaidWhileItIsOpen) {
  ASSERT_EQ(device.Open(), "");
  for (const char* text : {"before anybody came", "after they went"}) {
    Say(text);
    Open();
    Say("left unread");
    port.Close();
  }
  port.Notify(true);
  Open();
  if (GetParam().hid) {
    // What a chip has kept, before the first question and between two.
    for (int i = 0; i < 2; ++i) {
      Say("old");
      EXPECT_TRUE(port.Write("Q1\r"));
      EXPECT_EQ(Heard(), "Q1\r");
    }
  }
  Say("for me");
  Expect("for me");
  for (int i = 0; i < 5000; ++i) device.Write(std::string(100, 'x'));
  Say("new");
  EXPECT_TRUE(Until([&] { return received.ends_with("new"); }));
  EXPECT_LT(received.size(), 100'000U);
}

TEST_P(DevicePortTest, BytesWaitWhileNobodyWantsThem) {
  Open();
  EXPECT_TRUE(port.Write("Q1\r"));
  Say("early");
  EXPECT_TRUE(Until([&] { return port.Waiting() == 5; }));
  port.Notify(true);
  EXPECT_EQ(received, "") << "announced inside the caller's handler";
  Expect("early");
  EXPECT_EQ(port.Waiting(), 0u);
  port.Notify(false);
  // Up to a bound.
  const std::string piece(1024, 'x');
  const auto full = [&] { return port.Waiting() == 64 * 1024; };
  for (int i = 0; i < 70; ++i) {
    device.Write(piece);
    const std::size_t before = port.Waiting();
    EXPECT_TRUE(Until([&] { return port.Waiting() > before || full(); }));
  }
  QCoreApplication::processEvents();
  EXPECT_TRUE(full()) << "goes on beyond the bound";
  port.Discard();
  EXPECT_EQ(port.Waiting(), 0u);
  EXPECT_EQ(received, "early");
  // So does what nobody fetches at the other end.
  int sent = 0;
  while (sent < 1000 && port.Write(piece)) ++sent;
  EXPECT_LT(sent, 1000);
}

TEST_P(DevicePortTest, DeviceVanishesAndReturns) {
  port.Notify(true);
  for (const bool by_write : {false, true, false}) {
    SCOPED_TRACE(by_write);
    Open();
    received.clear();
    EXPECT_TRUE(port.Write("Q1\r"));
    EXPECT_EQ(Heard(), "Q1\r");
    Say("(half");
    Expect("(half");
    device.Close();
    EXPECT_TRUE(by_write || Until([&] { return !port.IsOpen(); }));
    EXPECT_FALSE(port.Write("Q1\r"));
    EXPECT_FALSE(port.IsOpen());
    // Its number may be that of another process's terminal by now.
    name = folder.Path("gone");
    EXPECT_FALSE(port.Open()) << "there is no device";
  }
}

TEST_P(DevicePortTest, PortsAreHadOnceAndWithDevicesOnly) {
  Open();
  const std::string link = folder.Path(GetParam().hid ? "hidraw1" : "by-id");
  ASSERT_EQ(symlink(name.c_str(), link.c_str()), 0);
  std::string other_name = name;
  DevicePort other([&](int) { return other_name; }, milliseconds(0));
  EXPECT_FALSE(other.Open());
  other_name = link;
  EXPECT_FALSE(other.Open());
  EXPECT_FALSE(port.Select(2)) << "it is open";
  EXPECT_TRUE(port.Open()) << "it is open";
  for (int i = 0; i < 2; ++i) port.Close();
  EXPECT_FALSE(port.Write("Q1\r"));
  EXPECT_TRUE(other.Open());
  for (const int number : {0, 5}) EXPECT_FALSE(port.Select(number));
  EXPECT_TRUE(port.Select(2));
  EXPECT_FALSE(port.Open()) << "no device has this number";
  EXPECT_TRUE(port.Select(1));
  for (const std::string& path : {folder.Write("file", ""), folder.Path("none"), folder.Path()}) {
    name = path;
    EXPECT_FALSE(port.Open()) << path;
  }
}

TEST_P(DevicePortTest, DeviceThatSendsFillingWithoutEndHoldsNobodyUp) {
  if (!GetParam().hid) return;
  name = folder.Path("hidraw1");
  ASSERT_EQ(symlink("/dev/zero", name.c_str()), 0);
  ASSERT_TRUE(port.Open());
  EXPECT_TRUE(port.Write("Q1\r"));
  port.Discard();
  EXPECT_EQ(port.Waiting(), 0U);
}

TEST_P(DevicePortTest, TakesLineParametersOnly) {
  EXPECT_TRUE(port.Configure("9600,n,8,1"));
  for (const char* bad : {"", "2400,N,8", "x,N,8,1", "2400,X,8,1", "2400,N,9,1", "2400,N,8,3"}) {
    EXPECT_FALSE(port.Configure(bad)) << bad;
  }
}

}  // namespace
}  // namespace orvane::test
