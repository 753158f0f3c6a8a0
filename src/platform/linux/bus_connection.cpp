#include "platform/linux/bus_connection.h"

namespace orvane {

Bus* BusConnection::Get(std::string& error) {
  if (bus_ && bus_->Descriptor() >= 0) return bus_.get();
  attached_.reset();
  bus_ = Bus::Open(which_, error);
  if (bus_) attached_ = attach_(*bus_);
  return bus_.get();
}

}  // namespace orvane
