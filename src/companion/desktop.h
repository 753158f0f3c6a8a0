// Where applications stand, and how one asks them to close.
#pragma once

#include <set>
#include <vector>

#include "companion/application.h"

namespace orvane::companion {

struct Desktop {
  virtual ~Desktop() = default;

  // The applications that stand open and can be asked to close, but for those of the processes in
  // `spared`. Once.
  virtual std::vector<Application> List(const std::set<pid_t>& spared) = 0;

  // Asks the listed ones to close, without waiting for it.
  virtual void AskToClose() = 0;

  // Looks which of the listed ones have gone: one value for each, in the order of List. False when
  // that can no longer be found out.
  virtual bool Look(std::vector<bool>& gone) = 0;

  // Whether a request of AskToClose is still under way, which may be closing what is not listed.
  virtual bool IsAsking() { return false; }

  // What stands open besides the listed ones, but for those of the processes in `spared`: what
  // cannot be asked, and what has come up since.
  virtual std::vector<Application> Others(const std::set<pid_t>& spared) = 0;
};

}  // namespace orvane::companion
