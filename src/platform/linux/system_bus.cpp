#include "platform/linux/system_bus.h"

namespace orvane {

Bus* SystemBus::Get(std::string& error) {
  if (bus_ && bus_->Descriptor() >= 0) return bus_.get();
  attached_.reset();
  bus_ = Bus::Open(Bus::Which::kSystem, error);
  if (bus_) attached_ = attach_(*bus_);
  return bus_.get();
}

}  // namespace orvane
