// What the methods of the interface do, each for one call.
#include <fcntl.h>
#include <sys/mman.h>
#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

#include "bus/bus_service.h"
#include "bus/fields.h"
#include "bus/history_rows.h"
#include "bus/names.h"
#include "platform/linux/file.h"
#include "records/shutdown_report.h"

namespace orvane {
namespace {

// How long a text of the settings or the schedule may be, in bytes.
constexpr std::size_t kLongestText = 1023;

// Rows of numbers as a file that can be read and not changed.
int ReplyRows(sd_bus_message* call, const std::vector<std::int64_t>& rows) {
  const File file(memfd_create("orvane-history", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  const std::string_view bytes(reinterpret_cast<const char*>(rows.data()),
                               rows.size() * sizeof(std::int64_t));
  if (!file || !file.WriteAll(bytes)) return -EIO;
  if (fcntl(file.Get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) <
      0) {
    return -EIO;
  }
  const File reader(
      open(("/proc/self/fd/" + std::to_string(file.Get())).c_str(), O_RDONLY | O_CLOEXEC));
  return sd_bus_reply_method_return(call, "h", reader ? reader.Get() : file.Get());
}

// The span of time that a call asks for. Nothing where the history cannot hold it.
std::optional<std::pair<sys_seconds, sys_seconds>> ReadSpan(sd_bus_message* call) {
  constexpr std::int64_t kLast = std::int64_t{1} << 40;
  std::int64_t from = 0, to = 0;
  if (sd_bus_message_read(call, "xx", &from, &to) <= 0) return std::nullopt;
  if (from < -kLast || from > to || to > kLast) return std::nullopt;
  return std::pair(sys_seconds(std::chrono::seconds(from)), sys_seconds(std::chrono::seconds(to)));
}

}  // namespace

int BusService::Attach(sd_bus_message* call) {
  sd_bus_message* reply = nullptr;
  const int result = sd_bus_message_new_method_return(call, &reply);
  if (result < 0) return result;
  const char* peer = sd_bus_message_get_sender(call);
  const bool came = attached_.insert(peer).second;
  form_.Watched(true);
  sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "{sv}");
  AppendState(reply, form_.Shown());
  for (const Field& field : fields_) field.append(reply);
  sd_bus_message_close_container(reply);
  const int sent = sd_bus_send(nullptr, reply, nullptr);
  sd_bus_message_unref(reply);
  if (came) CatchUp(peer);
  return sent < 0 ? sent : 1;
}

int BusService::Detach(sd_bus_message* call) {
  Leave(sd_bus_message_get_sender(call));
  return sd_bus_reply_method_return(call, "");
}

int BusService::Saved(sd_bus_message* call) {
  saving_.erase(sd_bus_message_get_sender(call));
  return sd_bus_reply_method_return(call, "");
}

int BusService::OpenJournal(sd_bus_message* call) {
  const char* name = nullptr;
  if (sd_bus_message_read(call, "s", &name) <= 0) return -EINVAL;
  const auto journal = JournalNamed(name);
  if (!journal) return -EINVAL;
  const File file(open(form_.PathOf(*journal).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  if (!file) return -errno;
  return sd_bus_reply_method_return(call, "h", file.Get());
}

int BusService::TellSchedule(sd_bus_message* call) {
  const char* name = nullptr;
  if (sd_bus_message_read(call, "s", &name) <= 0) return -EINVAL;
  const ScheduleSection* section = SectionNamed(name);
  if (!section) return -EINVAL;
  sd_bus_message* reply = nullptr;
  if (const int result = sd_bus_message_new_method_return(call, &reply); result < 0) return result;
  sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "(ssss)");
  for (const ScheduleEntry& entry : form_.Schedule(*section)) {
    sd_bus_message_append(reply, "(ssss)", BusText(entry.enable).c_str(), BusText(entry.on).c_str(),
                          BusText(entry.off).c_str(), BusText(entry.date).c_str());
  }
  sd_bus_message_close_container(reply);
  const int sent = sd_bus_send(nullptr, reply, nullptr);
  sd_bus_message_unref(reply);
  return sent < 0 ? sent : 1;
}

int BusService::TellSamples(sd_bus_message* call) {
  int hours = 0;
  if (sd_bus_message_read(call, "b", &hours) <= 0) return -EINVAL;
  const auto span = ReadSpan(call);
  if (!span) return -EINVAL;
  const Step step = hours ? Step::kHour : Step::kMinute;
  return ReplyRows(call, SampleRows(form_.History().Samples(step, span->first, span->second)));
}

int BusService::TellEpisodes(sd_bus_message* call) {
  const auto span = ReadSpan(call);
  if (!span) return -EINVAL;
  return ReplyRows(call, EpisodeRows(form_.History().Episodes(span->first, span->second)));
}

int BusService::TellFirst(sd_bus_message* call) {
  const auto first = form_.History().First();
  return sd_bus_reply_method_return(
      call, "bx", static_cast<int>(first.has_value()),
      static_cast<std::int64_t>(first ? first->time_since_epoch().count() : 0));
}

// Whoever gets through to here is told of later numbers, too.
int BusService::TellPhone(sd_bus_message* call) {
  steering_.insert(sd_bus_message_get_sender(call));
  return sd_bus_reply_method_return(call, "s", BusText(form_.Shown().PhoneCode).c_str());
}

int BusService::Check(sd_bus_message* call) {
  form_.Check().Ask();
  return sd_bus_reply_method_return(call, "");
}

int BusService::Order(sd_bus_message* call, void (MainForm::*command)()) {
  const int result = sd_bus_reply_method_return(call, "");
  // The way down waits for windows, and they answer by way of the bus that is being served now.
  post_([this, command] {
    if (!GoingDown()) (form_.*command)();
  });
  return result;
}

int BusService::ToggleBeeper(sd_bus_message* call) {
  return Order(call, &MainForm::ToggleBeeper);
}

int BusService::TestFor10Seconds(sd_bus_message* call) {
  return Order(call, &MainForm::TestFor10Seconds);
}

int BusService::TestToLow(sd_bus_message* call) {
  return Order(call, &MainForm::TestToLow);
}

int BusService::CancelTest(sd_bus_message* call) {
  return Order(call, &MainForm::CancelTest);
}

int BusService::GoDown(sd_bus_message* call) {
  return Order(call, &MainForm::GoDown);
}

int BusService::SaveSettings(sd_bus_message* call) {
  SettingsValues values;
  const void* slots = nullptr;
  std::size_t size = 0;
  const char* phone = nullptr;
  if (sd_bus_message_read_array(call, 'n', &slots, &size) < 0 ||
      sd_bus_message_read(call, "s", &phone) <= 0 || size != sizeof values.slots ||
      std::strlen(phone) > kLongestText) {
    return -EINVAL;
  }
  std::memcpy(values.slots.data(), slots, size);
  values.phone = phone;
  const bool saved = form_.SaveSettings(values);
  Touch(0);
  for (const std::string& peer : steering_) {
    sd_bus_message* signal = NewSignal("Phone");
    if (!signal) break;
    sd_bus_message_set_destination(signal, peer.c_str());
    sd_bus_message_append(signal, "s", BusText(form_.Shown().PhoneCode).c_str());
    Emit(signal);
  }
  return sd_bus_reply_method_return(call, "b", static_cast<int>(saved));
}

int BusService::SaveSchedule(sd_bus_message* call) {
  const char* name = nullptr;
  if (sd_bus_message_read(call, "s", &name) <= 0) return -EINVAL;
  const ScheduleSection* section = SectionNamed(name);
  if (!section || sd_bus_message_enter_container(call, SD_BUS_TYPE_ARRAY, "(ssss)") < 0) {
    return -EINVAL;
  }
  ScheduleEntries entries;
  for (ScheduleEntry& entry : entries) {
    const char* texts[4] = {};
    if (sd_bus_message_read(call, "(ssss)", &texts[0], &texts[1], &texts[2], &texts[3]) <= 0) {
      return -EINVAL;
    }
    for (const char* text : texts) {
      if (std::strlen(text) > kLongestText) return -EINVAL;
    }
    entry = {texts[0], texts[1], texts[2], texts[3]};
  }
  if (sd_bus_message_exit_container(call) < 0) return -EINVAL;
  form_.SaveSchedule(*section, entries);
  return sd_bus_reply_method_return(call, "");
}

int BusService::ClearLog(sd_bus_message* call) {
  const bool cleared = form_.Files().Remove(form_.PathOf(Journal::kLog));
  return sd_bus_reply_method_return(call, "b", static_cast<int>(cleared));
}

int BusService::ClearReport(sd_bus_message* call) {
  ShutdownReport(form_.Files(), form_.PathOf(Journal::kReport)).Clear();
  return sd_bus_reply_method_return(call, "");
}

}  // namespace orvane
