// The program's connection to the system bus or the user's, served by its event loop.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/linux/bus.h"

namespace orvane {

class BusConnection {
 public:
  // Has the event loop serve a bus for as long as the result lives.
  using Attach = std::function<std::shared_ptr<void>(Bus& bus)>;

  BusConnection(Bus::Which which, Attach attach) : which_(which), attach_(std::move(attach)) {}

  // The connection, which is begun by the first call and begun anew when it has gone. Never waits.
  // Null, with the reason in `error`, when there is no such bus.
  Bus* Get(std::string& error);

 private:
  const Bus::Which which_;
  Attach attach_;
  std::unique_ptr<Bus> bus_;
  std::shared_ptr<void> attached_;
};

}  // namespace orvane
