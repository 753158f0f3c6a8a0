#include "companion/saver.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>
#include <thread>

#include "companion/file_watch.h"
#include "companion/processes.h"
#include "companion/unit_desktop.h"
#include "companion/x11_desktop.h"

namespace orvane::companion {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kLook{50};

// An application whose window has gone may still be writing. It is done when its processes have
// ended, or have not written for this long: some stay in the background for good.
constexpr std::chrono::seconds kQuiet{2};

// The applications of one desktop within the whole list.
struct Share {
  Desktop* desktop;
  std::size_t first;
  std::vector<bool> gone;
  bool lost = false;  // the desktop no longer answers
};

// The applications of all desktops, one desktop behind the other, but for those of this program.
std::vector<Share> List(const std::vector<std::unique_ptr<Desktop>>& desktops,
                        std::vector<Application>& applications) {
  std::set<pid_t> spared = ProcessTree().Own(DirectoryOfExecutable(getpid()));
  std::vector<Share> shares;
  for (const auto& desktop : desktops) {
    std::vector<Application> listed = desktop->List(spared);
    // What one desktop asks, the next one does not.
    for (const Application& application : listed) {
      spared.insert(application.processes.begin(), application.processes.end());
    }
    shares.push_back({desktop.get(), applications.size(), std::vector<bool>(listed.size())});
    std::move(listed.begin(), listed.end(), std::back_inserter(applications));
  }
  return shares;
}

// Takes in which applications have gone, and when that was seen.
void Look(Share& share, std::vector<Application>& applications,
          std::vector<Clock::time_point>& gone_at) {
  share.lost = share.lost || !share.desktop->Look(share.gone);
  if (share.lost) return;
  for (std::size_t i = 0; i < share.gone.size(); ++i) {
    Application& application = applications[share.first + i];
    if (share.gone[i] && !application.closed) gone_at[share.first + i] = Clock::now();
    application.closed = share.gone[i];
  }
}

bool IsDone(const Application& application, Clock::time_point gone_at,
            Clock::time_point last_write) {
  if (!application.closed) return false;
  const bool ended =
      !application.processes.empty() &&
      std::none_of(application.processes.begin(), application.processes.end(), IsRunning);
  return ended || Clock::now() - std::max(gone_at, last_write) >= kQuiet;
}

}  // namespace

std::vector<std::unique_ptr<Desktop>> OpenDesktops() {
  std::vector<std::unique_ptr<Desktop>> desktops;
  if (auto x11 = X11Desktop::Open()) desktops.push_back(std::move(x11));
  // On a Wayland session the X11 display shows only the applications that know nothing newer.
  if (desktops.empty() || std::getenv("WAYLAND_DISPLAY")) {
    if (auto units = UnitDesktop::Open()) desktops.push_back(std::move(units));
  }
  return desktops;
}

std::vector<Application> SaveAndClose(const std::vector<std::unique_ptr<Desktop>>& desktops,
                                      Clock::time_point deadline) {
  std::vector<Application> applications;
  std::vector<Share> shares = List(desktops, applications);
  FileWatch watch(applications);
  for (const auto& desktop : desktops) desktop->AskToClose();

  std::vector<Clock::time_point> gone_at(applications.size());
  for (bool waiting = true; waiting && Clock::now() < deadline;) {
    std::this_thread::sleep_for(kLook);
    for (Share& share : shares) Look(share, applications, gone_at);
    watch.Look();
    waiting = false;
    for (const Share& share : shares) {
      for (std::size_t i = share.first; !share.lost && i < share.first + share.gone.size(); ++i) {
        if (!IsDone(applications[i], gone_at[i], watch.LastWrite(i))) waiting = true;
      }
    }
  }
  watch.Look();
  for (std::size_t i = 0; i < applications.size(); ++i) applications[i].files = watch.Written(i);
  return applications;
}

}  // namespace orvane::companion
