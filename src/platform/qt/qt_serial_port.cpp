#include "platform/qt/qt_serial_port.h"

#include <QFileInfo>
#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>
#include <vector>

namespace orvane {
namespace {

constexpr int kLastPort = 4;

// What is kept for a caller that does not fetch it, and what may wait to leave.
constexpr std::size_t kMostWaiting = std::size_t{64} * 1024;
constexpr qint64 kMostLeaving = 4096;

std::vector<std::string_view> Split(std::string_view text) {
  std::vector<std::string_view> fields;
  for (;;) {
    const std::size_t comma = text.find(',');
    fields.push_back(text.substr(0, comma));
    if (comma == std::string_view::npos) return fields;
    text.remove_prefix(comma + 1);
  }
}

std::optional<QSerialPort::Parity> ParityOf(std::string_view field) {
  if (field.size() != 1) return std::nullopt;
  switch (field[0] & ~0x20) {
    case 'N':
      return QSerialPort::NoParity;
    case 'E':
      return QSerialPort::EvenParity;
    case 'O':
      return QSerialPort::OddParity;
    case 'M':
      return QSerialPort::MarkParity;
    case 'S':
      return QSerialPort::SpaceParity;
    default:
      return std::nullopt;
  }
}

std::optional<QSerialPort::StopBits> StopBitsOf(std::string_view field) {
  if (field == "1") return QSerialPort::OneStop;
  if (field == "1.5") return QSerialPort::OneAndHalfStop;
  if (field == "2") return QSerialPort::TwoStop;
  return std::nullopt;
}

}  // namespace

QtSerialPort::QtSerialPort(std::function<std::string(int)> device_of,
                           std::chrono::milliseconds gather)
    : device_of_(std::move(device_of)), gather_(static_cast<int>(gather.count())) {
  gather_timer_.setSingleShot(true);
  gather_timer_.setTimerType(Qt::PreciseTimer);
  connect(&gather_timer_, &QTimer::timeout, this, &QtSerialPort::Collect);
  connect(&port_, &QSerialPort::readyRead, this, &QtSerialPort::Arrived);
  connect(&port_, &QSerialPort::errorOccurred, this, &QtSerialPort::Lost);
}

QtSerialPort::~QtSerialPort() {
  Close();
}

bool QtSerialPort::Configure(std::string_view line) {
  const std::vector<std::string_view> fields = Split(line);
  if (fields.size() != 4) return false;
  Line parsed;
  const char* end = fields[0].data() + fields[0].size();
  const auto [stop, error] = std::from_chars(fields[0].data(), end, parsed.baud);
  const auto parity = ParityOf(fields[1]);
  const auto stop_bits = StopBitsOf(fields[3]);
  if (error != std::errc{} || stop != end || parsed.baud <= 0 || !parity || !stop_bits) {
    return false;
  }
  if (fields[2].size() != 1 || fields[2][0] < '5' || fields[2][0] > '8') return false;
  parsed.parity = *parity;
  parsed.data_bits = static_cast<QSerialPort::DataBits>(fields[2][0] - '0');
  parsed.stop_bits = *stop_bits;
  line_ = parsed;
  return true;
}

bool QtSerialPort::Select(int number) {
  if (open_ || number < 1 || number > kLastPort) return false;
  number_ = number;
  return true;
}

bool QtSerialPort::Open() {
  if (open_) return true;
  Close();
  const std::string device = device_of_(number_);
  if (device.empty()) return false;
  // The lock that keeps others off goes by the device's own name, whichever link leads to it.
  const QString name = QString::fromStdString(device);
  const QString own_name = QFileInfo(name).canonicalFilePath();
  port_.setPortName(own_name.isEmpty() ? name : own_name);
  port_.setBaudRate(line_.baud);
  port_.setParity(line_.parity);
  port_.setDataBits(line_.data_bits);
  port_.setStopBits(line_.stop_bits);
  port_.setFlowControl(QSerialPort::NoFlowControl);
  const QSignalBlocker quiet(port_);
  if (!port_.open(QIODevice::ReadWrite)) return false;
  open_ = true;
  Rest();
  return true;
}

void QtSerialPort::Close() {
  open_ = false;
  gathering_ = false;
  gather_timer_.stop();
  waiting_.clear();
  if (!port_.isOpen()) return;
  // A close waits for what has not left yet, on a device that hangs for half a minute.
  const QSignalBlocker quiet(port_);
  port_.clear(QSerialPort::Output);
  port_.close();
}

bool QtSerialPort::Write(std::string_view text) {
  if (!open_ || port_.bytesToWrite() > kMostLeaving) return false;
  const auto size = static_cast<qint64>(text.size());
  // The text leaves here and now: the caller may not come back to the event loop for long.
  const bool taken = port_.write(text.data(), size) == size;
  port_.flush();
  return taken && open_;
}

void QtSerialPort::Read(std::string& text) {
  text += waiting_;
  waiting_.clear();
}

void QtSerialPort::Discard() {
  waiting_.clear();
  if (open_ && !gathering_) port_.readAll();
}

void QtSerialPort::Notify(bool on) {
  notify_ = on;
  if (notify_ && !waiting_.empty()) {
    QMetaObject::invokeMethod(this, &QtSerialPort::Announce, Qt::QueuedConnection);
  }
}

// The device is gone or will not have a write: the port closes by itself. The object that reports
// is still at work and is put away afterwards.
void QtSerialPort::Lost(QSerialPort::SerialPortError error) {
  switch (error) {
    case QSerialPort::ResourceError:
    case QSerialPort::ReadError:
    case QSerialPort::WriteError:
    case QSerialPort::DeviceNotFoundError:
    case QSerialPort::PermissionError:
    case QSerialPort::UnknownError:
      break;
    default:
      return;
  }
  if (!open_) return;
  open_ = false;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (!open_) Close();
      },
      Qt::QueuedConnection);
}

// While the line rests, the control is given room for a single byte: it reports that one and then
// leaves the rest with the driver until it is told to go on.
void QtSerialPort::Rest() {
  gathering_ = false;
  port_.setReadBufferSize(gather_ > 0 ? 1 : static_cast<qint64>(kMostWaiting));
}

void QtSerialPort::Arrived() {
  if (!open_) return;
  if (gather_ == 0) {
    Take();
  } else if (!std::exchange(gathering_, true)) {
    gather_timer_.start(gather_);
  }
}

void QtSerialPort::Collect() {
  if (!open_) return;
  port_.setReadBufferSize(static_cast<qint64>(kMostWaiting));
  while (open_ && port_.bytesAvailable() < static_cast<qint64>(kMostWaiting) &&
         port_.waitForReadyRead(0)) {
  }
  if (!open_) return;
  Take();
  Rest();
}

void QtSerialPort::Take() {
  const QByteArray bytes = port_.readAll();
  const std::size_t room = kMostWaiting - waiting_.size();
  waiting_.append(bytes.data(), std::min(static_cast<std::size_t>(bytes.size()), room));
  Announce();
}

void QtSerialPort::Announce() {
  if (notify_ && !waiting_.empty() && OnReceive) OnReceive();
}

}  // namespace orvane
