// A serial port of this machine.
#pragma once

#include <QSerialPort>
#include <QTimer>
#include <chrono>
#include <functional>
#include <string>

#include "platform/serial_port.h"

namespace orvane {

class QtSerialPort : public QObject, public SerialPort {
 public:
  // `device_of` names the device of a port number, or gives an empty text when there is none; it is
  // asked at every opening. Bytes that follow each other within `gather` of the first one are
  // announced together, which spares a wake-up for each of them; 0 announces them as they come.
  QtSerialPort(std::function<std::string(int)> device_of, std::chrono::milliseconds gather);
  ~QtSerialPort() override;

  void Notify(bool on) override;
  bool Configure(std::string_view line) override;
  int Number() const override { return number_; }
  bool Select(int number) override;
  bool IsOpen() const override { return open_; }
  bool Open() override;
  void Close() override;
  bool Write(std::string_view text) override;
  std::size_t Waiting() const override { return waiting_.size(); }
  void Read(std::string& text) override;
  void Discard() override;

 private:
  struct Line {
    int baud = 9600;
    QSerialPort::Parity parity = QSerialPort::NoParity;
    QSerialPort::DataBits data_bits = QSerialPort::Data8;
    QSerialPort::StopBits stop_bits = QSerialPort::OneStop;
  };

  void Lost(QSerialPort::SerialPortError error);
  void Arrived();
  void Collect();
  void Take();
  void Rest();
  void Announce();

  std::function<std::string(int)> device_of_;
  const int gather_;
  Line line_;
  int number_ = 1;
  bool notify_ = false;
  QSerialPort port_;
  bool open_ = false;       // the device is there, as far as anybody knows
  bool gathering_ = false;  // the first byte is here, the others are being waited for
  QTimer gather_timer_;
  std::string waiting_;  // received and not yet read
};

}  // namespace orvane
