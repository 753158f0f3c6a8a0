// The serial control on a device of this machine.
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

  bool Settings(std::string_view line) override;
  int CommPort() const override { return number_; }
  bool CommPort(int number) override;
  bool PortOpen() const override { return open_; }
  bool PortOpen(bool open) override;
  bool Output(std::string_view text) override;
  void Input(std::string& text) override;
  std::size_t InBufferCount() const override { return waiting_.size(); }
  void ClearInBuffer() override;
  void RThreshold(int bytes) override;
  int CommEvent() const override { return event_; }

 private:
  struct Line {
    int baud = 9600;
    QSerialPort::Parity parity = QSerialPort::NoParity;
    QSerialPort::DataBits data_bits = QSerialPort::Data8;
    QSerialPort::StopBits stop_bits = QSerialPort::OneStop;
  };

  bool Open();
  void Close();
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
  int threshold_ = 0;
  int event_ = kCommEventNone;
  QSerialPort port_;
  bool open_ = false;       // the device is there, as far as anybody knows
  bool gathering_ = false;  // the first byte is here, the others are being waited for
  QTimer gather_timer_;
  std::string waiting_;  // received and not yet fetched by Input
};

}  // namespace orvane
