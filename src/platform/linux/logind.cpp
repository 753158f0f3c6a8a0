#include "platform/linux/logind.h"

#include <systemd/sd-bus.h>

#include <cstdint>

#include "platform/text.h"

namespace orvane {
namespace {

// SD_LOGIND_SKIP_INHIBITORS. A logind that does not know it, before systemd 257, refuses the
// request as invalid and takes the plain one, which no block lock holds up for whoever may override
// it.
constexpr std::uint64_t kSkipInhibitors = 1U << 4U;

void WithFlags(sd_bus_message* message) {
  sd_bus_message_append_basic(message, 't', &kSkipInhibitors);
}

void NotInteractive(sd_bus_message* message) {
  const int interactive = 0;
  sd_bus_message_append_basic(message, 'b', &interactive);
}

struct Request {
  const char* method;
  void (*fill)(sd_bus_message*);
};

constexpr std::size_t kRequests = 4;
constexpr Request kHaltFirst[kRequests] = {{"HaltWithFlags", WithFlags},
                                           {"Halt", NotInteractive},
                                           {"PowerOffWithFlags", WithFlags},
                                           {"PowerOff", NotInteractive}};
constexpr Request kPowerOffFirst[kRequests] = {kHaltFirst[2], kHaltFirst[3], kHaltFirst[0],
                                               kHaltFirst[1]};

struct Question {
  const char* method;
  const char* end;
};
constexpr Question kQuestions[] = {{"CanHalt", "Halt"}, {"CanPowerOff", "PowerOff"}};

void Add(std::string& list, const std::string& entry) {
  if (!list.empty()) list += "; ";
  list += entry;
}

// What an answer but "yes" means to whoever reads the line.
std::string InWords(const BusCall& call) {
  if (!call.Answered()) return call.error;
  const std::string answer = call.Text();
  if (answer == "challenge") return "only with a password";
  if (answer == "na") return "not possible on this computer";
  if (answer == "inhibited" || answer == "inhibitor-blocked") return "blocked by another program";
  if (answer == "challenge-inhibitor-blocked") {
    return "blocked by another program, and only with a password";
  }
  return answer.empty() ? "no clear answer" : answer;
}

std::string DoesNotGoDown(const std::string& reason) {
  return "the computer does not go down: " + reason;
}

std::string CouldNotGoDown(const std::string& reason) {
  return "the computer could not go down (" + reason + "); Action=None leaves it running anyway";
}

}  // namespace

// The reply lists what, who, why, mode, user and process of each lock.
std::string BlockersIn(const BusCall& call) {
  std::string blockers;
  if (!call.Answered() || sd_bus_message_enter_container(call.answer, 'a', "(ssssuu)") < 0) {
    return blockers;
  }
  const char *what = nullptr, *who = nullptr, *why = nullptr, *mode = nullptr;
  std::uint32_t user = 0, process = 0;
  while (sd_bus_message_read(call.answer, "(ssssuu)", &what, &who, &why, &mode, &user, &process) >
         0) {
    if (!std::string_view(mode).starts_with("block")) continue;
    if ((':' + std::string(what) + ':').find(":shutdown:") == std::string::npos) continue;
    if (!blockers.empty()) blockers += ", ";
    blockers += std::string(who) + " (" + why + ", process " + std::to_string(process) + ')';
  }
  return blockers;
}

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

void Logind::TakeDown() {
  const bool none = action_ == ShutdownAction::kNone;
  std::string error;
  open_ = bus_.Get(error);
  if (!open_) {
    const std::string reason = "no system bus: " + error;
    report_(none ? CouldNotGoDown(reason) : DoesNotGoDown(reason));
  } else if (none) {
    AskWhatIsAllowed();
  } else {
    TryNext();
  }
}

// Any failure leads on, since whatever logind has against one request it may not have against the
// next, and nothing is left to lose.
void Logind::TryNext() {
  if (next_ == kRequests) return ReportWithBlockers(DoesNotGoDown(refusals_));
  const Request& request =
      (action_ == ShutdownAction::kPowerOff ? kPowerOffFirst : kHaltFirst)[next_++];
  open_->Send(kLogindManager, request.method, request.fill, [&](const BusCall& call) {
    if (call.Answered()) return;
    Add(refusals_, std::string(request.method) + ": " + call.error);
    TryNext();
  });
}

void Logind::AskWhatIsAllowed() {
  unanswered_ = std::size(kQuestions);
  for (const Question& question : kQuestions) {
    open_->Send(kLogindManager, question.method, {}, [&](const BusCall& call) {
      if (call.Text() == "yes") {
        if (allowed_.empty()) allowed_ = question.end;
      } else {
        Add(refusals_, std::string(question.end) + ": " + InWords(call));
      }
      if (--unanswered_ > 0) return;
      ReportWithBlockers(allowed_.empty() ? CouldNotGoDown(refusals_)
                                          : "the computer would now go down (" + allowed_ +
                                                " is allowed); Action=None leaves it running");
    });
  }
}

void Logind::ReportWithBlockers(const std::string& line) {
  open_->Send(kLogindManager, "ListInhibitors", {}, [this, line](const BusCall& call) {
    const std::string blockers = BlockersIn(call);
    report_(blockers.empty() ? line : line + "; a shutdown is blocked by " + blockers);
  });
}

}  // namespace orvane
