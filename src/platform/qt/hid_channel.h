// A USB device that carries a serial line in HID reports, by the kernel's hidraw interface.
#pragma once

#include <QObject>
#include <memory>

#include "platform/linux/file.h"
#include "platform/qt/channel.h"

class QSocketNotifier;

namespace orvane {

// What has arrived before a text is sent belongs to no question, as such devices may have kept an
// old reply, and is dropped with the sending.
class HidChannel : public QObject, public Channel {
 public:
  HidChannel();
  ~HidChannel() override;

  bool Open(const std::string& device) override;
  void Close() override;
  bool Write(std::string_view text) override;
  void Take(std::string& text, std::size_t room) override;
  void Rest() override;

 private:
  class Writer;

  bool ReadReports(std::string& text);

  File device_;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::shared_ptr<Writer> writer_;
  bool asked_ = false;  // something was sent since the device was opened
};

}  // namespace orvane
