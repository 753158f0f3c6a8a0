// A simulated modem with the AT command set, as much of it as a call by voice needs: it dials
// ("ATDT", number, ";"), hangs up ("ATH"), and answers a dial as it is ordered to.
#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "simulate/device.h"
#include "simulate/orders.h"

namespace orvane {

// What the modem says when a number is dialled.
enum class DialAnswer {
  kOk,          // dialled, and the line is open
  kBusy,        // "BUSY", then "OK"
  kBusyAlone,   // "BUSY" without "OK"
  kNoCarrier,   // nobody there
  kNoDialtone,  // no telephone line
  kNone,        // nothing, to no command at all, as a modem that hangs
};

struct ModemManners {
  DialAnswer answer = DialAnswer::kOk;
  Moment delay{3000};     // from a dial to its answer; other commands are answered at once
  bool echo = true;       // every byte that arrives is sent back
  bool crlf = true;       // carriage return and line feed stand before and behind every word
  std::size_t piece = 0;  // an answer comes in pieces of so many bytes; 0: whole
};

class ModemModel : public Device {
 public:
  // Between two pieces of an answer.
  static constexpr Moment kPieceGap{60};

  // May be changed at any time; holds for the commands that follow.
  ModemManners manners;

  // Says `text` of its own accord, as it stands.
  void Say(std::string_view text);

  void Advance(Moment now) override;
  void Receive(std::string_view bytes) override;
  std::string Take() override;
  std::optional<Moment> Next() const override;

 private:
  struct Speech {
    Moment due;
    std::string bytes;
    std::string word;  // what the record of the trial says to it; empty for nothing
  };

  void Obey(std::string_view command);
  void Dial(std::string_view number);
  void HangUp();
  void Answer(std::string_view word, Moment due);
  void Speak(std::string_view bytes, std::string_view word, Moment due);
  void Report(Trace kind, std::string_view text) const;

  Moment now_{0};
  LineReader reader_{'\r'};
  std::deque<Speech> speeches_;    // still to be said, in the order of their moments
  std::string said_;               // ready to be taken
  std::optional<Moment> dialled_;  // when the present call began; nothing on the hook
};

// The orders that change how `modem` behaves. It has to outlive the table.
void AddModemOrders(OrderTable& orders, ModemModel& modem);

}  // namespace orvane
