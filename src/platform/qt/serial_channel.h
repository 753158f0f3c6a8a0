// A serial port of this machine.
#pragma once

#include <QSerialPort>

#include "platform/qt/channel.h"

namespace orvane {

class SerialChannel : public QObject, public Channel {
 public:
  // `gathers`: the user lets some time pass between an arrival and Take. The bytes of that time
  // then wait with the driver, and wake nobody.
  explicit SerialChannel(bool gathers);
  ~SerialChannel() override { SerialChannel::Close(); }

  // As SerialPort::Configure.
  bool Configure(std::string_view line);

  bool Open(const std::string& device) override;
  void Close() override;
  bool Write(std::string_view text) override;
  void Take(std::string& text, std::size_t room) override;
  void Rest() override;

 private:
  struct Line {
    int baud = 9600;
    QSerialPort::Parity parity = QSerialPort::NoParity;
    QSerialPort::DataBits data_bits = QSerialPort::Data8;
    QSerialPort::StopBits stop_bits = QSerialPort::OneStop;
  };

  void OnError(QSerialPort::SerialPortError error);

  const bool gathers_;
  Line line_;
  QSerialPort port_;
};

}  // namespace orvane
