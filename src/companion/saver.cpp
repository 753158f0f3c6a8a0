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
constexpr std::chrono::milliseconds kFileLook{500};
constexpr std::chrono::milliseconds kFilesLimit{10};
constexpr std::chrono::milliseconds kFoldersLimit{500};

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

void AddProcesses(const std::vector<Application>& applications, std::set<pid_t>& processes) {
  for (const Application& application : applications) {
    processes.insert(application.processes.begin(), application.processes.end());
  }
}

// The applications of all desktops, one desktop behind the other.
std::vector<Share> List(const std::vector<std::unique_ptr<Desktop>>& desktops,
                        std::set<pid_t> spared, std::vector<Application>& applications) {
  std::vector<Share> shares;
  for (const auto& desktop : desktops) {
    std::vector<Application> listed = desktop->List(spared);
    // What one desktop asks, the next one does not.
    AddProcesses(listed, spared);
    shares.push_back({desktop.get(), applications.size(), std::vector<bool>(listed.size())});
    std::move(listed.begin(), listed.end(), std::back_inserter(applications));
  }
  return shares;
}

// Takes in which applications have gone, and when that was seen. False when nothing has changed.
bool Look(Share& share, std::vector<Application>& applications,
          std::vector<Clock::time_point>& gone_at) {
  share.lost = share.lost || !share.desktop->Look(share.gone);
  bool changed = false;
  for (std::size_t i = 0; !share.lost && i < share.gone.size(); ++i) {
    Application& application = applications[share.first + i];
    if (application.closed == share.gone[i]) continue;
    application.closed = share.gone[i];
    gone_at[share.first + i] = Clock::now();
    changed = true;
  }
  return changed;
}

// Adds what stands open in the end and was not listed. What one desktop has listed or shows, the
// others do not show.
void AddOthers(const std::vector<Share>& shares, std::set<pid_t> spared,
               std::vector<Application>& applications) {
  for (const Share& share : shares) {
    if (share.lost) continue;
    std::set<pid_t> elsewhere = spared;
    for (const Share& other : shares) {
      for (std::size_t i = other.first; i < other.first + other.gone.size(); ++i) {
        if (&other == &share) continue;
        elsewhere.insert(applications[i].processes.begin(), applications[i].processes.end());
      }
    }
    const std::vector<Application> others = share.desktop->Others(elsewhere);
    AddProcesses(others, spared);
    applications.insert(applications.end(), others.begin(), others.end());
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

std::vector<Application> SaveAndClose(
    const std::vector<std::unique_ptr<Desktop>>& desktops, Clock::time_point deadline,
    const std::function<void(const std::vector<Application>&)>& on_change) {
  const std::set<pid_t> own = ProcessTree().Own(DirectoryOfExecutable(getpid()));
  std::vector<Application> applications;
  std::vector<Share> shares = List(desktops, own, applications);
  FileWatch watch(applications);
  for (const auto& desktop : desktops) desktop->AskToClose();
  on_change(applications);

  std::vector<Clock::time_point> gone_at(applications.size());
  Clock::time_point next_look = Clock::now();
  for (bool waiting = true; waiting && Clock::now() < deadline;) {
    std::this_thread::sleep_for(kLook);
    bool changed = false;
    for (Share& share : shares) changed = Look(share, applications, gone_at) || changed;
    if (changed) on_change(applications);
    if (Clock::now() >= next_look) {
      watch.Look(kFilesLimit);
      next_look = Clock::now() + kFileLook;
    }
    waiting = false;
    for (const Share& share : shares) {
      if (!share.lost && share.desktop->IsAsking()) waiting = true;
      for (std::size_t i = share.first; !share.lost && i < share.first + share.gone.size(); ++i) {
        if (!IsDone(applications[i], gone_at[i], watch.LastWrite(i))) waiting = true;
      }
    }
  }
  const auto written = watch.Written(kFoldersLimit);
  for (std::size_t i = 0; i < written.size(); ++i) applications[i].files = written[i];
  // The last look may hang.
  on_change(applications);
  AddOthers(shares, own, applications);
  return applications;
}

}  // namespace orvane::companion
