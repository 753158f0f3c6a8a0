#include "platform/qt/serial_channel.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

namespace orvane {
namespace {

// What may wait for Take, and what may wait to leave.
constexpr qint64 kMostWaiting = qint64{64} * 1024;
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

SerialChannel::SerialChannel(bool gathers) : gathers_(gathers) {
  connect(&port_, &QSerialPort::readyRead, this, [this] { OnArrival(); });
  connect(&port_, &QSerialPort::errorOccurred, this, &SerialChannel::OnError);
}

bool SerialChannel::Configure(std::string_view line) {
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

bool SerialChannel::Open(const std::string& device) {
  port_.setPortName(QString::fromStdString(device));
  port_.setBaudRate(line_.baud);
  port_.setParity(line_.parity);
  port_.setDataBits(line_.data_bits);
  port_.setStopBits(line_.stop_bits);
  port_.setFlowControl(QSerialPort::NoFlowControl);
  const QSignalBlocker quiet(port_);
  return port_.open(QIODevice::ReadWrite);
}

void SerialChannel::Close() {
  if (!port_.isOpen()) return;
  // A close waits for what has not left yet, on a device that hangs for half a minute.
  const QSignalBlocker quiet(port_);
  port_.clear(QSerialPort::Output);
  port_.close();
}

bool SerialChannel::Write(std::string_view text) {
  if (port_.bytesToWrite() > kMostLeaving) return false;
  const auto size = static_cast<qint64>(text.size());
  // The text leaves here and now: the caller may not come back to the event loop for long.
  const bool taken = port_.write(text.data(), size) == size;
  port_.flush();
  return taken;
}

// What waits with the driver, too.
void SerialChannel::Take(std::string& text, std::size_t room) {
  if (gathers_) {
    port_.setReadBufferSize(kMostWaiting);
    while (port_.bytesAvailable() < kMostWaiting && port_.waitForReadyRead(0)) {
    }
  }
  const QByteArray bytes = port_.readAll();
  text.append(bytes.data(), std::min(static_cast<std::size_t>(bytes.size()), room));
}

// Of bytes that are to be gathered the port is given room for one: it reports that one and then
// leaves the rest with the driver.
void SerialChannel::Rest() {
  port_.setReadBufferSize(gathers_ ? 1 : kMostWaiting);
}

void SerialChannel::OnError(QSerialPort::SerialPortError error) {
  switch (error) {
    case QSerialPort::ResourceError:
    case QSerialPort::ReadError:
    case QSerialPort::WriteError:
    case QSerialPort::DeviceNotFoundError:
    case QSerialPort::PermissionError:
    case QSerialPort::UnknownError:
      OnLoss();
      break;
    default:
      break;
  }
}

}  // namespace orvane
