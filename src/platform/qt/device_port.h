// A port of this machine: a serial port, or a USB device that carries one in HID reports.
#pragma once

#include <QTimer>
#include <chrono>
#include <functional>
#include <string>

#include "platform/qt/hid_channel.h"
#include "platform/qt/serial_channel.h"
#include "platform/serial_port.h"

namespace orvane {

class DevicePort : public QObject, public SerialPort {
 public:
  // `device_of` names the device of a port number, or gives an empty text when there is none; it is
  // asked at every opening. A name that begins with "hidraw", or stands for a file with such a
  // name, is a HID device, to which the line parameters do not apply. Bytes that follow each other
  // within `gather` of the first one are announced together, which spares a wake-up for each of
  // them; 0 announces them as they come.
  DevicePort(std::function<std::string(int)> device_of, std::chrono::milliseconds gather);
  ~DevicePort() override;

  void Notify(bool on) override;
  bool Configure(std::string_view line) override { return serial_.Configure(line); }
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
  void Arrived();
  void Collect();
  void Announce();
  void Lost();

  std::function<std::string(int)> device_of_;
  const int gather_;
  int number_ = 1;
  bool notify_ = false;
  SerialChannel serial_;
  HidChannel hid_;
  Channel* channel_ = &serial_;  // that of the device opened last
  bool open_ = false;            // the device is there, as far as anybody knows
  bool gathering_ = false;       // the first byte is here, the others are being waited for
  QTimer gather_timer_;
  std::string waiting_;  // received and not yet read
};

}  // namespace orvane
