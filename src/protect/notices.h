// What the desktop is told of: mains failure and the moment at which the computer goes down, a low
// battery, a fault of the UPS, a UPS that is silent.
#pragma once

#include <optional>
#include <string_view>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "protect/alert_form.h"

namespace orvane {

class Notices {
 public:
  Notices(const State& state, const Panel& panel, const AlertForm& alert, const Seams& seams)
      : state_(state), panel_(panel), alert_(alert), seams_(seams) {}

  // Takes all notifications away and knows of nothing, as at a load of the form.
  void Withdraw();

  // To be called behind each poll.
  void OnPoll();

  // To be called behind whatever may have changed the panel: brings the notifications up to date
  // with it. Nothing is shown twice, and nothing of the mains while the alert stands.
  void Update();

 private:
  void UpdateMains();
  void UpdateFault(const Label& line, Notice notice, Message title, Message body);
  std::optional<int> EndOfCount() const;
  void Show(Notice notice, Message title, std::string_view body, bool urgent, bool stays);

  const State& state_;
  const Panel& panel_;
  const AlertForm& alert_;
  Seams seams_;
  bool mains_failed_ = false;
  bool mains_shown_ = false;
  std::optional<int> shown_end_;  // the end of the count that is shown, as EndOfCount
  EnumArray<Notice, bool, kNotices> standing_{};
  int silent_polls_ = 0;  // since the link was lost
};

// The notification that the way down begins with.
Notification WayDownNotification(const State& state);

}  // namespace orvane
