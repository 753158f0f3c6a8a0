// The line to the UPS: which port, the poll, the watchdog, and what the replies mean.
#pragma once

#include <functional>
#include <string>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "link/mirror.h"
#include "link/reply_decoder.h"
#include "link/status_evaluation.h"
#include "records/journals.h"

namespace orvane {

class UpsLink {
 public:
  UpsLink(State& state, Panel& panel, Journals& journals, const Seams& seams);

  // Runs when a receive event has been dealt with: the panel shows what came.
  std::function<void()> OnShown;

  // Puts the Change reactions of link and read-outs on the panel and the receive event on the port.
  void Attach();

  // Port steps of the load: the port of slot 0, or with slot 0 at 0 the one on which such a search
  // has found a UPS before, else the first of ports 1 to 4 that opens. Shows the outcome on the
  // port line; a failure stops the poll and shows a box, during which other events are served.
  void OpenPort();

  // Devices have come or gone. A port that OpenPort could not open, and that can be opened now, is
  // taken up, without another box.
  void OnDevicesChange();

  // Poll tick: sends "Q1", declares the link lost on the fourth poll in a row without an answer,
  // refreshes the warning line. A port that was lost while the program ran is opened again first,
  // as soon as its device is back. A port of the search on which four polls have brought nothing
  // makes way for the next one that opens, until a UPS answers.
  void OnPoll();

  // The computer falls asleep: lets go of the port and sends no poll until Resume, which takes
  // both up again. The counts of the program take no notice. Resume without Suspend does nothing.
  void Suspend();
  void Resume();

  // Receive event: collects, and decodes and evaluates one reply after the other. A line, up to its
  // carriage return, that is no reply is dropped; what has no end yet waits for the rest.
  void OnReceive();

  // Runs inside the write of the link's caption: a link that was down takes its warnings along;
  // the UPS is asked for its data. One that does not answer that is asked for its ratings and its
  // name, each once and each behind a status reply, when the line is free.
  void OnLinkChange();

 private:
  bool Open(int number);
  bool IsModem(int number) const;
  bool Try(int number);
  bool SearchPort();
  bool OpenChosen();
  void MissPort(Message box, Message line);
  bool Searching() const;
  void OpenNextPort();
  void OnReply(Reply reply, bool was_up);
  void LinkLoss();
  void RefreshWarningLine();

  State& state_;
  Panel& panel_;
  Seams seams_;
  ValueMirror mirror_;
  StatusEvaluation evaluation_;
  ReplyDecoder decoder_;
  std::string received_;    // what one event brought, kept for its capacity
  int found_port_ = 0;      // on which a search has found a UPS last; 0: none yet
  bool suspended_ = false;  // Suspend ended the poll
  bool missing_ = false;    // OpenPort has opened none
};

}  // namespace orvane
