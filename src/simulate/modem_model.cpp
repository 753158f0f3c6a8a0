#include "simulate/modem_model.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace orvane {
namespace {

// Bytes that the far end did not fetch; more are lost.
constexpr std::size_t kMostSaid = 65536;

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

struct AnswerRow {
  std::string_view name;  // in orders
  DialAnswer answer;
  std::array<std::string_view, 2> words;
};

constexpr AnswerRow kAnswers[] = {
    {"ok", DialAnswer::kOk, {"OK"}},
    {"busy", DialAnswer::kBusy, {"BUSY", "OK"}},
    {"busy-alone", DialAnswer::kBusyAlone, {"BUSY"}},
    {"no-carrier", DialAnswer::kNoCarrier, {"NO CARRIER"}},
    {"no-dialtone", DialAnswer::kNoDialtone, {"NO DIALTONE"}},
    {"none", DialAnswer::kNone, {}},
};

}  // namespace

void ModemModel::Say(std::string_view text) {
  Speak(text, text, now_);
  Advance(now_);
}

void ModemModel::Advance(Moment now) {
  now_ = std::max(now_, now);
  for (; !speeches_.empty() && speeches_.front().due <= now_; speeches_.pop_front()) {
    const Speech& speech = speeches_.front();
    if (!speech.word.empty()) Report(Trace::kReply, speech.word);
    said_ +=
        std::string_view(speech.bytes).substr(0, kMostSaid - std::min(kMostSaid, said_.size()));
  }
}

void ModemModel::Receive(std::string_view bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (manners.echo && said_.size() < kMostSaid) said_ += bytes[i];
    reader_.Put(bytes.substr(i, 1));
    if (const auto command = reader_.Take()) Obey(*command);
    Advance(now_);
  }
}

std::string ModemModel::Take() {
  return std::exchange(said_, {});
}

std::optional<Moment> ModemModel::Next() const {
  if (speeches_.empty()) return std::nullopt;
  return speeches_.front().due;
}

void ModemModel::Obey(std::string_view command) {
  if (command.starts_with('\n')) command.remove_prefix(1);
  if (command.empty()) return;
  Report(Trace::kCommand, command);
  // A command cuts short whatever the modem was about.
  speeches_.clear();
  const std::string upper = UpperCase(command);
  if (upper.starts_with("ATDT") || upper.starts_with("ATDP")) {
    Dial(command.substr(4));
  } else if (upper == "AT") {
    Answer("OK", now_);
  } else if (upper == "ATH" || upper == "ATH0" || upper == "ATZ") {
    HangUp();
    Answer("OK", now_);
  } else if (upper == "ATE0" || upper == "ATE1") {
    manners.echo = upper == "ATE1";
    Answer("OK", now_);
  } else {
    Answer("ERROR", now_);
  }
}

void ModemModel::Dial(std::string_view number) {
  HangUp();
  // Without the semicolon the modem waits for another modem to answer, and there is none.
  const bool stays_in_command_mode = number.ends_with(';');
  if (stays_in_command_mode) number.remove_suffix(1);
  Report(Trace::kEvent, "dials " + std::string(number));
  dialled_ = now_;
  const DialAnswer answer = stays_in_command_mode ? manners.answer : DialAnswer::kNoCarrier;
  for (const AnswerRow& row : kAnswers) {
    if (row.answer != answer) continue;
    for (const std::string_view word : row.words) {
      if (!word.empty()) Answer(word, now_ + manners.delay);
    }
  }
}

void ModemModel::HangUp() {
  if (!dialled_) return;
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "hangs up after %.1f s",
                static_cast<double>((now_ - *dialled_).count()) / 1000);
  dialled_.reset();
  Report(Trace::kEvent, text.data());
}

void ModemModel::Answer(std::string_view word, Moment due) {
  if (manners.answer == DialAnswer::kNone) return;
  const std::string_view line_end = manners.crlf ? "\r\n" : "";
  std::string bytes(line_end);
  bytes += word;
  bytes += line_end;
  Speak(bytes, word, due);
}

void ModemModel::Speak(std::string_view bytes, std::string_view word, Moment due) {
  if (!speeches_.empty()) due = std::max(due, speeches_.back().due);
  const std::size_t size =
      manners.piece == 0 ? std::max<std::size_t>(bytes.size(), 1) : manners.piece;
  while (!bytes.empty()) {
    speeches_.push_back({due, std::string(bytes.substr(0, size)), std::string(word)});
    bytes.remove_prefix(std::min(size, bytes.size()));
    word = {};
    due += kPieceGap;
  }
}

void ModemModel::Report(Trace kind, std::string_view text) const {
  if (OnTrace) OnTrace(kind, text);
}

void AddModemOrders(OrderTable& orders, ModemModel& modem) {
  std::string names;
  for (const AnswerRow& row : kAnswers) {
    names += (names.empty() ? "" : ", ") + std::string(row.name);
  }
  orders.AddText("answer", "WHAT", "what a dial is answered with: " + names,
                 [&modem, names](std::string_view name) -> std::string {
                   for (const AnswerRow& row : kAnswers) {
                     if (row.name != name) continue;
                     modem.manners.answer = row.answer;
                     return {};
                   }
                   return "takes one of: " + names;
                 });
  orders.AddNumber("delay", 0, 600, "seconds from a dial to its answer (3)", [&](double seconds) {
    modem.manners.delay = std::chrono::round<Moment>(std::chrono::duration<double>(seconds));
  });
  orders.AddSwitch("echo", "sends back what arrives (on)",
                   [&](bool on) { modem.manners.echo = on; });
  orders.AddSwitch("crlf", "a carriage return and a line feed round every word (on)",
                   [&](bool on) { modem.manners.crlf = on; });
  orders.AddNumber("pieces", 0, 1000, "bytes of an answer that come together; 0: all (0)",
                   [&](double bytes) { modem.manners.piece = static_cast<std::size_t>(bytes); });
  orders.AddText("say", "TEXT", "says a text by itself", [&](std::string_view text) -> std::string {
    if (text.empty()) return "takes a text";
    modem.Say("\r\n" + std::string(text) + "\r\n");
    return {};
  });
}

}  // namespace orvane
