// A call in virtual time, against a modem that answers by a plan.
#include "dial/dialler.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <deque>
#include <string>

#include "app/settings.h"
#include "support/world.h"

namespace orvane::test {
namespace {

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

const Reply kOk{990ms, "\r\nOK\r\n"};
const Reply kBusyOk{990ms, "BUSY\r\nOK\r\n"};
const Reply kNoCarrier{990ms, "NO CARRIER"};
const Reply kNoDialtone{990ms, "NO DIALTONE"};

class DiallerTest : public testing::Test, public World {
 protected:
  DiallerTest() {
    dialler.Attach();
    state.PhoneCode = "119";
    state.Settings[kModemPort] = 3;
    dial_timer.Interval(5000);
    panel.mains.Caption("Fail");
    panel.status_line.Observer = [this] { Note(panel.status_line.Caption()); };
    modem_port.OnSent = [this](const std::string& text) { Sent(text); };
    reply_timer.Tick = [this] {
      const std::string bytes = pending.front().bytes;
      pending.pop_front();
      Schedule();
      modem_port.Receive(bytes);
    };
  }

  // Mains asks for a call, and five seconds pass.
  void Start() {
    state.Main.DialReason = Fault::kMains;
    dial_timer.Enabled(true);
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
    notes += at + what + '|';
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

  Dialler dialler{state, panel, seams};
  FakeTimer reply_timer{time};
  milliseconds begin{0};
  Calls calls;
  Replies pending;
  std::string notes;  // seconds since the tick: what the status line said, what was sent (>)
};

// The whole of a call's messages, wire and times, for each way through it.
TEST_F(DiallerTest, Runs) {
  const struct {
    const char* name;
    Calls calls;
    const char* notes;
    bool open;  // the modem's port at the end
    std::size_t beeps;
    Language language = Language::kEnglish;
  } cases[] = {
      {"success in pieces behind the echo",
       {{{100ms, "ATDT119"}, {100ms, ";\r\r\nO"}, {790ms, "K"}, {10ms, "\r\n"}}},
       "0.00 > ATDT119;\r|0.12 ATDT119|0.22 ATDT119;\r\r\nO|1.00 ATDT119;\r\r\nOK|1.00 Succeed|"
       "22.00 Hang up|22.00 > ATH\r|25.00 dialling times:1|25.00 Succeed|",
       false,
       1},
      {"OK goes before NO CARRIER",
       {{{990ms, "NO CARRIER OK"}}},
       "0.00 > ATDT119;\r|1.00 NO CARRIER OK|1.00 Succeed|"
       "22.00 Hang up|22.00 > ATH\r|25.00 dialling times:1|25.00 Succeed|",
       false,
       1},
      {"busy, then success, in Chinese",
       {{kBusyOk}, {kOk}},
       "0.00 > ATDT119;\r|1.00 BUSY\r\nOK\r\n|1.00 线路忙,稍候再拨|1.00 > ATH\r|4.00 拨号次数:1|"
       "4.00 > ATDT119;\r|5.00 \r\nOK\r\n|5.00 拨号成功,稍侯挂机|"
       "26.00 挂机|26.00 > ATH\r|29.00 拨号次数:2|29.00 拨号成功|",
       false,
       2,
       Language::kChinese},
      {"four in vain",
       {{kNoCarrier}, {kNoDialtone}, {kNoCarrier}, {kBusyOk}, {kOk}},
       "0.00 > ATDT119;\r|1.00 NO CARRIER|1.00 This's void phonecode|1.00 > ATH\r|"
       "4.00 dialling times:1|4.00 > ATDT119;\r|5.00 NO DIALTONE|"
       "5.00 No dialing tone,please connect phone line|5.00 > ATH\r|"
       "8.00 dialling times:2|8.00 > ATDT119;\r|9.00 NO CARRIER|9.00 This's void phonecode|"
       "9.00 > ATH\r|12.00 dialling times:3|12.00 > ATDT119;\r|13.00 BUSY\r\nOK\r\n|"
       "13.00 Busy|13.00 > ATH\r|16.00 dialling times:4|16.00 Give up dialing|",
       false,
       1},
      {"words that do not count",
       {{{990ms, "BUSY ok no carrier"}}},
       "0.00 > ATDT119;\r|1.00 BUSY ok no carrier|50.02 Can not dail,please check Modem line|",
       true,
       0},
      {"the last pass counts",
       {{{50010ms, "NO CARRIER"}}, {}},
       "0.00 > ATDT119;\r|50.02 NO CARRIER|50.02 This's void phonecode|50.02 > ATH\r|"
       "53.00 dialling times:1|53.00 > ATDT119;\r|103.02 Can not dail,please check Modem line|",
       true,
       0},
      {"an attempt forgets the one before",
       {{{990ms, "NO CARRIER BUSY"}, {1000ms, "OK NO DIALTONE"}}, {{990ms, "K"}}},
       "0.00 > ATDT119;\r|1.00 NO CARRIER BUSY|1.00 This's void phonecode|1.00 > ATH\r|"
       "4.00 dialling times:1|4.00 > ATDT119;\r|5.00 K|54.02 Can not dail,please check Modem line|",
       true,
       0},
  };
  for (const auto& run : cases) {
    SCOPED_TRACE(run.name);
    calls = run.calls;
    state.language = run.language;
    events.clear();
    panel.status_line.Caption("");
    notes.clear();
    Start();
    Finish();
    EXPECT_EQ(notes, run.notes);
    EXPECT_EQ(modem_port.IsOpen(), run.open);
    EXPECT_EQ(modem_port.Line(), "9600,N,8,1");
    EXPECT_EQ(modem_port.Number(), 3);
    EXPECT_EQ(events, Events(run.beeps, "Beep"));
    EXPECT_FALSE(dial_timer.Enabled());
    EXPECT_FALSE(modem_timer.Enabled());
  }
}

TEST_F(DiallerTest, NumberIsTrimmedAtItsEndsAlone) {
  const struct {
    const char* number;
    const char* sent;  // nothing: no call, and the port is not touched
  } cases[] = {{"   ", ""}, {" 119 ", "ATDT119;\r"}, {"0,,12 34-W(5)", "ATDT0,,12 34-W(5);\r"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.number);
    state.PhoneCode = c.number;
    modem_port.sent.clear();
    Start();
    EXPECT_EQ(modem_port.Wire(), c.sent);
    EXPECT_EQ(dial_timer.Enabled(), *c.sent != 0);
    EXPECT_EQ(modem_port.IsOpen(), *c.sent != 0);
    EXPECT_EQ(panel.status_line.Caption(), "");
    dialler.Stop();
  }
}

TEST_F(DiallerTest, PortThatDoesNotOpenIsToldAndNotTriedAgain) {
  modem_port.present = {1, 2, 4};
  for (const int slot : {0, -1, 5, 3}) {
    SCOPED_TRACE(slot);
    state.Settings[kModemPort] = static_cast<std::int16_t>(slot);
    panel.status_line.Caption("");
    notes.clear();
    Start();
    EXPECT_FALSE(modem_port.IsOpen());
    time.Advance(60s);
    EXPECT_EQ(notes, "0.00 Modem can't use appointed COM port.|");
  }
}

TEST_F(DiallerTest, TakesThePortThatTheRunBeforeLeftOpen) {
  Start();
  Finish();
  ASSERT_TRUE(modem_port.IsOpen());
  modem_port.Receive("OK");
  state.Settings[kModemPort] = 4;
  calls = {{kBusyOk}};
  Start();
  EXPECT_EQ(modem_port.Number(), 4);
  EXPECT_EQ(modem_port.Waiting(), 0U);
  time.Advance(1s);
  EXPECT_EQ(panel.status_line.Caption(), "Busy");
}

// The wait counts seconds of the clock that anyone may set.
TEST_F(DiallerTest, RingingFollowsTheClock) {
  const struct {
    const char* name;
    milliseconds when;  // since the ringing began
    LocalTime now;      // what the clock is set to then; it shows 9:05:39 when the ringing begins
    const char* hang_up;
  } cases[] = {
      {"set ahead", 5s, {2001, 2, 16, 9, 6, 0}, "|6.02 Hang up|"},
      {"set ahead by a minute", 5s, {2001, 2, 16, 9, 6, 44}, "|22.00 Hang up|"},
      {"set back by a second", 5s, {2001, 2, 16, 9, 5, 43}, "|22.00 Hang up|"},
      {"set back by an hour", 20s, {2001, 2, 16, 8, 5, 59}, "|22.00 Hang up|"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    time.SetWall({2001, 2, 16, 9, 5, 33});
    calls = {{kOk}};
    notes.clear();
    Start();
    time.Advance(1s);
    ASSERT_EQ(panel.status_line.Caption(), "Succeed");
    time.Advance(c.when);
    time.SetWall(c.now);
    Finish();
    EXPECT_NE(notes.find(c.hang_up), std::string::npos) << notes;
  }
}

TEST_F(DiallerTest, FloodsAreTakenInBoundedMemory) {
  const std::string noise(32768, '\xFF');
  Replies flood(30, Reply{10ms, noise});
  flood.push_back({10ms, "OK"});
  flood.insert(flood.end(), 100, Reply{200ms, noise});
  calls = {flood};
  Start();
  for (int pass = 0; pass < 500; ++pass) {
    time.Advance(20ms);
    ASSERT_LE(modem_port.Waiting(), 2 * noise.size());
  }
  EXPECT_EQ(panel.status_line.Caption(), "Succeed");
}

}  // namespace
}  // namespace orvane::test
