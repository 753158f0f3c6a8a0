#include "platform/qt/qt_serial_port.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <QCoreApplication>
#include <functional>
#include <optional>

#include "linux/temp_folder.h"

namespace orvane::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{30};

// A device at the far end of a pseudo-terminal.
class Device {
 public:
  Device() : end_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
    grantpt(end_);
    unlockpt(end_);
    name_ = ptsname(end_);
  }
  ~Device() { close(end_); }
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  const std::string& Name() const { return name_; }

  void Send(std::string_view bytes) const {
    ASSERT_EQ(write(end_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

  // All that has been written on the port and not yet heard.
  std::string Heard() {
    char bytes[256];
    const ssize_t size = read(end_, bytes, sizeof bytes);
    return {bytes, size > 0 ? static_cast<std::size_t>(size) : 0};
  }

  speed_t Speed() const {
    termios line{};
    tcgetattr(end_, &line);
    return cfgetospeed(&line);
  }

 private:
  int end_;
  std::string name_;
};

class QtSerialPortTest : public testing::TestWithParam<int> {
 protected:
  QtSerialPortTest() {
    port_.Settings("2400,N,8,1");
    port_.OnComm = [this] {
      EXPECT_EQ(port_.CommEvent(), kCommEventReceive);
      port_.Input(received_);
    };
  }

  void Open() {
    device_.emplace();
    name_ = device_->Name();
    ASSERT_TRUE(port_.PortOpen(true));
  }

  bool Until(const std::function<bool()>& condition) {
    const auto end = steady_clock::now() + kPatience;
    while (!condition()) {
      if (steady_clock::now() > end) return false;
      QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 100);
    }
    return true;
  }

  int argc_ = 1;
  char program_[5] = "test";
  char* argv_[2] = {program_, nullptr};
  QCoreApplication application_{argc_, argv_};
  std::optional<Device> device_;
  std::string name_;
  QtSerialPort port_{[this](int number) { return number == 1 ? name_ : ""; },
                     milliseconds(GetParam())};
  std::string received_;
};

INSTANTIATE_TEST_SUITE_P(Gather, QtSerialPortTest, testing::Values(0, 20));

TEST_P(QtSerialPortTest, CarriesBytesBothWays) {
  Open();
  port_.RThreshold(1);
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  device_->Send(all);
  EXPECT_TRUE(Until([&] { return received_ == all; }));
  // A single byte is announced, too.
  device_->Send("(");
  EXPECT_TRUE(Until([&] { return received_ == all + '('; }));
  // What is sent leaves without the event loop.
  EXPECT_TRUE(port_.Output("Q1\r"));
  EXPECT_EQ(device_->Heard(), "Q1\r");
  EXPECT_EQ(device_->Speed(), speed_t{B2400});
}

TEST_P(QtSerialPortTest, BytesWaitWhileNobodyWantsThem) {
  Open();
  device_->Send("early");
  EXPECT_TRUE(Until([&] { return port_.InBufferCount() == 5; }));
  port_.RThreshold(1);
  EXPECT_EQ(received_, "") << "announced inside the caller's handler";
  EXPECT_TRUE(Until([&] { return received_ == "early"; }));
  EXPECT_EQ(port_.InBufferCount(), 0u);
  port_.RThreshold(0);
  // Up to a bound.
  const std::string piece(1024, 'x');
  const auto full = [&] { return port_.InBufferCount() == 64 * 1024; };
  for (int i = 0; i < 70; ++i) {
    device_->Send(piece);
    const std::size_t before = port_.InBufferCount();
    EXPECT_TRUE(Until([&] { return port_.InBufferCount() > before || full(); }));
  }
  QCoreApplication::processEvents();
  EXPECT_TRUE(full());
  port_.ClearInBuffer();
  EXPECT_EQ(port_.InBufferCount(), 0u);
  EXPECT_EQ(received_, "early");
  // So does what nobody fetches at the other end.
  int sent = 0;
  while (sent < 1000 && port_.Output(piece)) ++sent;
  EXPECT_LT(sent, 1000);
}

TEST_P(QtSerialPortTest, DeviceVanishesAndReturns) {
  port_.RThreshold(1);
  for (const bool by_write : {false, true, false}) {
    SCOPED_TRACE(by_write);
    Open();
    received_.clear();
    device_->Send("(half");
    EXPECT_TRUE(Until([&] { return received_ == "(half"; }));
    EXPECT_TRUE(port_.Output("Q1\r"));
    EXPECT_EQ(device_->Heard(), "Q1\r");
    device_.reset();
    EXPECT_TRUE(by_write || Until([&] { return !port_.PortOpen(); }));
    EXPECT_FALSE(port_.Output("Q1\r"));
    EXPECT_FALSE(port_.PortOpen());
    EXPECT_FALSE(port_.PortOpen(true)) << "there is no device";
  }
}

TEST_P(QtSerialPortTest, PortsAreHadOnceAndBySerialLinesOnly) {
  Open();
  const TempFolder folder;
  ASSERT_EQ(symlink(name_.c_str(), folder.Path("by-id").c_str()), 0);
  std::string other_name = name_;
  QtSerialPort other([&](int) { return other_name; }, milliseconds(0));
  EXPECT_FALSE(other.PortOpen(true));
  other_name = folder.Path("by-id");
  EXPECT_FALSE(other.PortOpen(true));
  EXPECT_FALSE(port_.CommPort(2)) << "it is open";
  for (const bool open : {true, false, false}) EXPECT_TRUE(port_.PortOpen(open));
  EXPECT_FALSE(port_.Output("Q1\r"));
  EXPECT_TRUE(other.PortOpen(true));
  for (const int number : {0, 5}) EXPECT_FALSE(port_.CommPort(number));
  EXPECT_TRUE(port_.CommPort(2));
  EXPECT_FALSE(port_.PortOpen(true)) << "no device has this number";
  EXPECT_TRUE(port_.CommPort(1));
  for (const std::string& name : {folder.Write("file", ""), folder.Path("none"), folder.Path()}) {
    name_ = name;
    EXPECT_FALSE(port_.PortOpen(true)) << name;
  }
}

TEST_P(QtSerialPortTest, TakesLineParametersOnly) {
  for (const char* good : {"2400,N,8,1", "9600,n,8,1", "300,E,7,2", "1200,o,5,1.5"}) {
    EXPECT_TRUE(port_.Settings(good)) << good;
  }
  for (const char* bad : {"", "2400,N,8", "2400,N,8,1,", "x,N,8,1", "0,N,8,1", "2400,X,8,1",
                          "2400,NN,8,1", "2400,N,9,1", "2400,N,8,3"}) {
    EXPECT_FALSE(port_.Settings(bad)) << bad;
  }
}

}  // namespace
}  // namespace orvane::test
