// An application as the companion sees it: something that can be asked to close.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace orvane::companion {

struct Application {
  std::string title;               // of its window, UTF-8 as far as its owner kept to it
  std::vector<pid_t> processes;    // whose writing counts as its own; may be empty
  bool closed = false;             // it went after it had been asked
  std::vector<std::string> files;  // written since the request, full paths
};

}  // namespace orvane::companion
