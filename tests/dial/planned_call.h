// A call in virtual time: a modem that answers by a plan, and a record of what was said and sent.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <deque>
#include <string>
#include <vector>

#include "app/settings.h"
#include "dial/dialler.h"
#include "support/world.h"

namespace orvane::test {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

// Bytes from the modem, `after` the dial text or the reply before.
struct Reply {
  milliseconds after;
  std::string bytes;
};
using Replies = std::deque<Reply>;

// What the first replies of an attempt are, attempt by attempt; silence behind the last.
using Calls = std::deque<Replies>;

class DiallerTest : public testing::Test, public World {
 protected:
  DiallerTest() {
    dialler.Attach();
    state.PhoneCode = "119";
    state.Settings[kModemPort] = 3;
    TimerDial.Interval(5000);
    panel.lblAc.Caption("Fail");
    panel.Label13.Observer = [this] { Note(panel.Label13.Caption()); };
    MSComm2.OnSent = [this](const std::string& text) { Sent(text); };
    reply_timer.Tick = [this] { Deliver(); };
  }

  // The fault asks for a call, and five seconds pass.
  void Start(int reason = kAcFail) {
    state.Main.DialReason = static_cast<std::uint8_t>(reason);
    TimerDial.Enabled(true);
    time.Advance(4999ms);
    EXPECT_FALSE(dialler.Running());
    begin = time.Steady() + 1ms;
    time.Advance(1ms);
  }

  // Runs until the call is over. A run takes 4 x 53 s at most.
  void Finish() {
    for (int second = 0; dialler.Running() && second < 300; ++second) time.Advance(1s);
    EXPECT_FALSE(dialler.Running());
  }

  void Note(const std::string& what) {
    char at[32];
    std::snprintf(at, sizeof at, "%.2f ",
                  static_cast<double>((time.Steady() - begin).count()) / 1e3);
    notes.push_back(at + what);
  }

  void Sent(const std::string& text) {
    Note("> " + text);
    if (!text.starts_with("ATDT")) return;
    pending.clear();
    if (!calls.empty()) {
      pending = calls.front();
      calls.pop_front();
    }
    Schedule();
  }

  void Schedule() {
    reply_timer.Enabled(false);
    if (pending.empty()) return;
    reply_timer.Interval(static_cast<int>(pending.front().after.count()));
    reply_timer.Enabled(true);
  }

  void Deliver() {
    const std::string bytes = pending.front().bytes;
    pending.pop_front();
    Schedule();
    MSComm2.Receive(bytes);
  }

  Dialler dialler{state, panel, seams};
  FakeTimer reply_timer{time};
  milliseconds begin{0};
  Calls calls;
  Replies pending;
  std::vector<std::string> notes;
};

inline const Reply kOk{990ms, "\r\nOK\r\n"};
inline const Reply kBusyOk{990ms, "BUSY\r\nOK\r\n"};
inline const Reply kNoCarrier{990ms, "NO CARRIER"};
inline const Reply kNoDialtone{990ms, "NO DIALTONE"};

}  // namespace orvane::test
