// Every way through a call: each message, each text on the line, each moment.
#include <ostream>

#include "dial/planned_call.h"

namespace orvane::test {
namespace {

struct RunCase {
  const char* name;
  Calls calls;
  std::vector<std::string> notes;  // seconds since the tick: what Label13 said, what was sent (>)
  bool open = false;               // the modem's port at the end
  std::size_t beeps = 0;
};

std::ostream& operator<<(std::ostream& out, const RunCase& run) {
  return out << run.name;
}

// The whole of a call's messages, wire and times, for each way through it.
class DiallerRunTest : public DiallerTest, public testing::WithParamInterface<RunCase> {};

TEST_P(DiallerRunTest, Run) {
  const RunCase& run = GetParam();
  calls = run.calls;
  Start();
  Finish();
  EXPECT_EQ(notes, run.notes);
  EXPECT_EQ(MSComm2.PortOpen(), run.open);
  EXPECT_EQ(MSComm2.Settings(), "9600,N,8,1");
  EXPECT_EQ(MSComm2.CommPort(), 3);
  EXPECT_EQ(events, Events(run.beeps, "Beep"));
  EXPECT_FALSE(TimerDial.Enabled());
  EXPECT_FALSE(dial_pass.Enabled());
}

const RunCase kRuns[] = {
    {"Success",
     {{kOk}},
     {"0.00 > ATDT119;\r", "1.00 \r\nOK\r\n", "1.00 Succeed", "22.00 Hang up", "22.00 > ATH\r",
      "25.00 dialling times:1", "25.00 Succeed"},
     false,
     1},
    {"SuccessInPiecesBehindTheEcho",
     {{{100ms, "ATDT119"}, {100ms, ";\r\r\nO"}, {790ms, "K"}, {10ms, "\r\n"}}},
     {"0.00 > ATDT119;\r", "0.12 ATDT119", "0.22 ATDT119;\r\r\nO", "1.00 ATDT119;\r\r\nOK",
      "1.00 Succeed", "22.00 Hang up", "22.00 > ATH\r", "25.00 dialling times:1", "25.00 Succeed"},
     false,
     1},
    {"OkGoesBeforeNoCarrier",
     {{{990ms, "NO CARRIER OK"}}},
     {"0.00 > ATDT119;\r", "1.00 NO CARRIER OK", "1.00 Succeed", "22.00 Hang up", "22.00 > ATH\r",
      "25.00 dialling times:1", "25.00 Succeed"},
     false,
     1},
    {"BusyThenSuccess",
     {{kBusyOk}, {kOk}},
     {"0.00 > ATDT119;\r", "1.00 BUSY\r\nOK\r\n", "1.00 Busy", "1.00 > ATH\r",
      "4.00 dialling times:1", "4.00 > ATDT119;\r", "5.00 \r\nOK\r\n", "5.00 Succeed",
      "26.00 Hang up", "26.00 > ATH\r", "29.00 dialling times:2", "29.00 Succeed"},
     false,
     2},
    {"BusyInAPieceOfItsOwn",
     {{{500ms, "BUSY"}, {490ms, "OK"}}, {kOk}},
     {"0.00 > ATDT119;\r", "0.52 BUSY", "1.00 BUSYOK", "1.00 Busy", "1.00 > ATH\r",
      "4.00 dialling times:1", "4.00 > ATDT119;\r", "5.00 \r\nOK\r\n", "5.00 Succeed",
      "26.00 Hang up", "26.00 > ATH\r", "29.00 dialling times:2", "29.00 Succeed"},
     false,
     2},
    {"FourBusy",
     {{kBusyOk}, {kBusyOk}, {kBusyOk}, {kBusyOk}, {kOk}},
     {"0.00 > ATDT119;\r",
      "1.00 BUSY\r\nOK\r\n",
      "1.00 Busy",
      "1.00 > ATH\r",
      "4.00 dialling times:1",
      "4.00 > ATDT119;\r",
      "5.00 BUSY\r\nOK\r\n",
      "5.00 Busy",
      "5.00 > ATH\r",
      "8.00 dialling times:2",
      "8.00 > ATDT119;\r",
      "9.00 BUSY\r\nOK\r\n",
      "9.00 Busy",
      "9.00 > ATH\r",
      "12.00 dialling times:3",
      "12.00 > ATDT119;\r",
      "13.00 BUSY\r\nOK\r\n",
      "13.00 Busy",
      "13.00 > ATH\r",
      "16.00 dialling times:4",
      "16.00 Give up dialing"},
     false,
     4},
    {"TheFourthSucceeds",
     {{kNoCarrier}, {kNoDialtone}, {kNoCarrier}, {kOk}},
     {"0.00 > ATDT119;\r",
      "1.00 NO CARRIER",
      "1.00 This's void phonecode",
      "1.00 > ATH\r",
      "4.00 dialling times:1",
      "4.00 > ATDT119;\r",
      "5.00 NO DIALTONE",
      "5.00 No dialing tone,please connect phone line",
      "5.00 > ATH\r",
      "8.00 dialling times:2",
      "8.00 > ATDT119;\r",
      "9.00 NO CARRIER",
      "9.00 This's void phonecode",
      "9.00 > ATH\r",
      "12.00 dialling times:3",
      "12.00 > ATDT119;\r",
      "13.00 \r\nOK\r\n",
      "13.00 Succeed",
      "34.00 Hang up",
      "34.00 > ATH\r",
      "37.00 dialling times:4",
      "37.00 Succeed"},
     false,
     1},
    {"Silence", {}, {"0.00 > ATDT119;\r", "50.02 Can not dail,please check Modem line"}, true},
    {"BusyAlone",
     {{{990ms, "BUSY"}}},
     {"0.00 > ATDT119;\r", "1.00 BUSY", "50.02 Can not dail,please check Modem line"},
     true},
    {"LowerCase",
     {{{990ms, "ok no carrier"}}},
     {"0.00 > ATDT119;\r", "1.00 ok no carrier", "50.02 Can not dail,please check Modem line"},
     true},
    {"TheLastPassCounts",
     {{{50010ms, "NO CARRIER"}}, {}},
     {"0.00 > ATDT119;\r", "50.02 NO CARRIER", "50.02 This's void phonecode", "50.02 > ATH\r",
      "53.00 dialling times:1", "53.00 > ATDT119;\r",
      "103.02 Can not dail,please check Modem line"},
     true},
    {"AnAttemptForgetsTheOneBefore",
     {{{990ms, "NO CARRIER BUSY"}, {1000ms, "OK NO DIALTONE"}}, {{990ms, "K"}}},
     {"0.00 > ATDT119;\r", "1.00 NO CARRIER BUSY", "1.00 This's void phonecode", "1.00 > ATH\r",
      "4.00 dialling times:1", "4.00 > ATDT119;\r", "5.00 K",
      "54.02 Can not dail,please check Modem line"},
     true},
};

INSTANTIATE_TEST_SUITE_P(, DiallerRunTest, testing::ValuesIn(kRuns),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace orvane::test
