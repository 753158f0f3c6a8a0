#include "platform/linux/logind.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <array>

#include "platform/linux/bus.h"
#include "platform/text.h"

namespace orvane {
namespace {

constexpr BusObject kManager = {"org.freedesktop.login1", "/org/freedesktop/login1",
                                "org.freedesktop.login1.Manager"};

// What a bus that hangs may cost in all, and how much of it the questions may.
constexpr std::chrono::milliseconds kPatience{5000};
constexpr std::chrono::milliseconds kQuestionPatience{2500};

constexpr const char* kYes = "yes";
constexpr const char* kNotAsked = "not asked";
constexpr const char* kNoAnswer = "no answer";

// What "no" and its like mean to whoever reads the line.
std::string InWords(const BusCall& call) {
  if (!call.Answered()) return call.error.empty() ? kNoAnswer : call.error;
  const std::string answer = call.Text();
  if (answer == "challenge") return "only with a password";
  if (answer == "na") return "not possible on this computer";
  return answer.empty() ? "no clear answer" : answer;
}

Bus::Time In(std::chrono::milliseconds wait) {
  return std::chrono::steady_clock::now() + wait;
}

}  // namespace

bool ReadShutdownAction(std::string_view text, ShutdownAction& action) {
  action = ShutdownAction::kHalt;
  if (text.empty() || SameName(text, "Halt")) return true;
  if (SameName(text, "PowerOff")) {
    action = ShutdownAction::kPowerOff;
    return true;
  }
  if (SameName(text, "None")) {
    action = ShutdownAction::kNone;
    return true;
  }
  return false;
}

void Logind::EnableShutdownPrivilege() {
  const End halt = {"Halt", "CanHalt", kNotAsked};
  const End power_off = {"PowerOff", "CanPowerOff", kNotAsked};
  ends_[0] = action_ == ShutdownAction::kPowerOff ? power_off : halt;
  ends_[1] = action_ == ShutdownAction::kPowerOff ? halt : power_off;

  left_ = kPatience;
  const Bus::Time begun = std::chrono::steady_clock::now();
  std::string error;
  const auto bus = Bus::Open(Bus::Which::kSystem, error);
  if (!bus) {
    for (End& end : ends_) end.answer = "no system bus: " + error;
    return;
  }
  // Both questions at once: one slow answer costs no more than two.
  const std::array calls = {bus->Send(kManager, ends_[0].question),
                            bus->Send(kManager, ends_[1].question)};
  static_cast<void>(
      bus->Wait([&] { return calls[0]->done && calls[1]->done; }, In(kQuestionPatience)));
  for (std::size_t i = 0; i < calls.size(); ++i) ends_[i].answer = InWords(*calls[i]);
  left_ -= std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 begun);
}

bool Logind::ExitWindowsEx() {
  const auto said = [](const char* answer) {
    return [answer](const End& end) { return end.answer == answer; };
  };
  const auto first = std::find_if(std::begin(ends_), std::end(ends_), said(kYes));
  if (action_ == ShutdownAction::kNone) {
    report_(first == std::end(ends_)
                ? "the computer could not go down (" + Refusals() +
                      "); Action=None leaves it running anyway"
                : std::string("the computer would now go down (") + first->method +
                      " is allowed); Action=None leaves it running");
    return false;
  }
  // A logind that is too busy to say what is allowed may still do it.
  const auto worth_a_try = said(first == std::end(ends_) ? kNoAnswer : kYes);
  const Bus::Time deadline = In(left_);
  std::string error;
  const auto bus = std::any_of(std::begin(ends_), std::end(ends_), worth_a_try)
                       ? Bus::Open(Bus::Which::kSystem, error)
                       : nullptr;
  for (End& end : ends_) {
    if (!worth_a_try(end)) continue;
    if (!bus) {
      end.answer = "no system bus: " + error;
      continue;
    }
    const auto call = bus->Call(kManager, end.method, deadline, [](sd_bus_message* message) {
      const int interactive = 0;
      sd_bus_message_append_basic(message, 'b', &interactive);
    });
    if (call->Answered()) return true;
    end.answer = call->error.empty() ? kNoAnswer : call->error;
    // Asked and perhaps heard: the other end must not come on top of it.
    if (!call->done) break;
  }
  report_("the computer does not go down: " + Refusals());
  return false;
}

std::string Logind::Refusals() const {
  std::string text;
  for (const End& end : ends_) {
    if (!end.method) return "logind was not asked";
    if (!text.empty()) text += "; ";
    text += std::string(end.method) + ": " + end.answer;
  }
  return text;
}

}  // namespace orvane
