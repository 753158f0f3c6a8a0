// The application windows of an X11 display, as its window manager lists them (EWMH).
#pragma once

#include <memory>
#include <string>

#include "companion/desktop.h"

namespace orvane::companion {

class X11Desktop : public Desktop {
 public:
  // Null when there is no X11 display.
  static std::unique_ptr<X11Desktop> Open();

  ~X11Desktop() override;

  std::vector<Application> List(const std::set<pid_t>& spared) override;
  void AskToClose() override;
  bool Look(std::vector<bool>& gone) override;
  std::vector<Application> Others(const std::set<pid_t>& spared) override;

 private:
  struct Display;
  explicit X11Desktop(std::unique_ptr<Display> display);

  std::unique_ptr<Display> display_;
};

}  // namespace orvane::companion
