#include "platform/qt/bus_notifier.h"

#include <algorithm>

namespace orvane {

BusNotifier::BusNotifier(Bus& bus)
    : bus_(bus),
      read_(bus.Descriptor(), QSocketNotifier::Read),
      write_(bus.Descriptor(), QSocketNotifier::Write) {
  due_.setSingleShot(true);
  QObject::connect(&read_, &QSocketNotifier::activated, [this] { Serve(); });
  QObject::connect(&write_, &QSocketNotifier::activated, [this] { Serve(); });
  QObject::connect(&due_, &QTimer::timeout, [this] { Serve(); });
  bus_.OnSend = [this] { Watch(); };
  Watch();
}

BusNotifier::~BusNotifier() {
  bus_.OnSend = nullptr;
}

void BusNotifier::Serve() {
  if (bus_.Serve()) return Watch();
  // The descriptor is closed and may soon be somebody else's.
  read_.setEnabled(false);
  write_.setEnabled(false);
  due_.stop();
}

void BusNotifier::Watch() {
  write_.setEnabled(bus_.WantsToWrite());
  const auto due = bus_.Due();
  if (!due) return due_.stop();
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(*due - std::chrono::steady_clock::now());
  due_.start(std::max(left, std::chrono::milliseconds(0)));
}

}  // namespace orvane
