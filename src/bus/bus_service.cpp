#include "bus/bus_service.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

#include "app/panel_fields.h"
#include "bus/fields.h"
#include "bus/history_rows.h"
#include "bus/interface.h"
#include "bus/names.h"
#include "platform/linux/file.h"
#include "records/shutdown_report.h"

namespace orvane {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kMeanwhile{100};

// How long a text of the settings or the schedule may be, in bytes.
constexpr std::size_t kLongestText = 1023;

constexpr const char* kRefused = "org.orvane.Orvane1.Error.GoingDown";

template <int (BusService::*kMethod)(sd_bus_message*)>
int Serve(sd_bus_message* call, void* service, sd_bus_error*) {
  return (static_cast<BusService*>(service)->*kMethod)(call);
}

// The same for an order, of which none is taken any more while the computer goes down.
template <int (BusService::*kMethod)(sd_bus_message*)>
int Obey(sd_bus_message* call, void* service, sd_bus_error* error) {
  if (static_cast<BusService*>(service)->GoingDown()) {
    return sd_bus_reply_method_errorf(call, kRefused, "The computer goes down.");
  }
  return Serve<kMethod>(call, service, error);
}

#define ORVANE_METHOD(member, takes, gives, method) \
  SD_BUS_METHOD(member, takes, gives, Serve<&BusService::method>, SD_BUS_VTABLE_UNPRIVILEGED)
#define ORVANE_ORDER(member, takes, gives, method) \
  SD_BUS_METHOD(member, takes, gives, Obey<&BusService::method>, SD_BUS_VTABLE_UNPRIVILEGED)

// Who may call what is the bus's to decide.
const sd_bus_vtable kSeeTable[] = {
    SD_BUS_VTABLE_START(0),
    ORVANE_METHOD("Attach", "", "a{sv}", Attach),
    ORVANE_METHOD("Detach", "", "", Detach),
    ORVANE_METHOD("Saved", "", "", Saved),
    ORVANE_METHOD("Journal", "s", "h", OpenJournal),
    ORVANE_METHOD("Schedule", "s", "a(ssss)", TellSchedule),
    ORVANE_METHOD("Samples", "bxx", "h", TellSamples),
    ORVANE_METHOD("Episodes", "xx", "h", TellEpisodes),
    ORVANE_METHOD("FirstSample", "", "bx", TellFirst),
    SD_BUS_SIGNAL("Changed", "a{sv}", 0),
    SD_BUS_SIGNAL("Phone", "s", 0),
    SD_BUS_SIGNAL("Form", "ss", 0),
    SD_BUS_SIGNAL("Box", "ss", 0),
    SD_BUS_SIGNAL("Notification", "ubssbb", 0),
    SD_BUS_SIGNAL("SaveApplications", "", 0),
    SD_BUS_VTABLE_END,
};

const sd_bus_vtable kSteerTable[] = {
    SD_BUS_VTABLE_START(0),
    ORVANE_METHOD("Phone", "", "s", TellPhone),
    ORVANE_METHOD("Check", "", "", Check),
    ORVANE_ORDER("ToggleBeeper", "", "", ToggleBeeper),
    ORVANE_ORDER("TestFor10Seconds", "", "", TestFor10Seconds),
    ORVANE_ORDER("TestToLow", "", "", TestToLow),
    ORVANE_ORDER("CancelTest", "", "", CancelTest),
    ORVANE_ORDER("Shutdown", "", "", GoDown),
    ORVANE_ORDER("SaveSettings", "ans", "b", SaveSettings),
    ORVANE_ORDER("SaveSchedule", "sa(ssss)", "", SaveSchedule),
    ORVANE_ORDER("ClearLog", "", "b", ClearLog),
    ORVANE_ORDER("ClearReport", "", "", ClearReport),
    SD_BUS_VTABLE_END,
};

#undef ORVANE_METHOD
#undef ORVANE_ORDER

void AppendState(sd_bus_message* message, const State& state) {
  const auto& slots = state.Settings;
  sd_bus_message_open_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv");
  sd_bus_message_append(message, "s", "settings");
  sd_bus_message_open_container(message, SD_BUS_TYPE_VARIANT, "an");
  sd_bus_message_append_array(message, 'n', slots.data(), sizeof slots);
  sd_bus_message_close_container(message);
  sd_bus_message_close_container(message);
  sd_bus_message_append(message, "{sv}", "countdown", "i", state.ShutdownCountdown);
}

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

BusService::BusService(MainForm& form, BusConnection& connection, Post post, Report report)
    : form_(form), connection_(connection), post_(std::move(post)), report_(std::move(report)) {
  ForEachField(form_.Fields(), [this](const std::string& name, auto& field) {
    const std::size_t index = fields_.size();
    fields_.push_back(
        {[name, &field](sd_bus_message* message) { AppendField(message, name, field); }});
    field.Observer = [this, index] { Touch(index); };
  });
  const std::size_t check = fields_.size();
  fields_.push_back(
      {[this](sd_bus_message* message) { AppendRows(message, form_.Check().Rows()); }});
  form_.Check().Observer = [this, check] { Touch(check); };
}

BusService::~BusService() {
  ForEachField(form_.Fields(), [](const std::string&, auto& field) { field.Observer = nullptr; });
  form_.Check().Observer = nullptr;
  sd_bus_slot_unref(see_);
  sd_bus_slot_unref(steer_);
}

void BusService::Keep() {
  if (bus_ && bus_->Descriptor() >= 0) return;
  bus_ = nullptr;
  attached_.clear();
  saving_.clear();
  steering_.clear();
  form_.Watched(false);
  see_ = sd_bus_slot_unref(see_);
  steer_ = sd_bus_slot_unref(steer_);
  std::string error;
  Bus* bus = connection_.Get(error);
  if (!bus) {
    const std::string line = "no window can attach: no system bus (" + error + ")";
    if (std::exchange(told_, line) != line) report_(line);
    return;
  }
  sd_bus_add_object_vtable(bus->Handle(), &see_, kBusPath, kSeeInterface, kSeeTable, this);
  sd_bus_add_object_vtable(bus->Handle(), &steer_, kBusPath, kSteerInterface, kSteerTable, this);
  bus->Match(
      "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
      "member='NameOwnerChanged',arg2=''",
      [this](sd_bus_message* message) {
        const char* name = nullptr;
        if (sd_bus_message_read(message, "s", &name) > 0) Leave(name);
      });
  bus->Send(
      kBusDriver, "RequestName",
      [](sd_bus_message* message) {
        constexpr std::uint32_t kDoNotQueue = 4;
        sd_bus_message_append(message, "su", kBusName, kDoNotQueue);
      },
      [this](const BusCall& call) {
        std::uint32_t result = 0;
        constexpr std::uint32_t kOwner = 1;
        if (call.answer) sd_bus_message_read(call.answer, "u", &result);
        std::string line;
        if (!call.answer) {
          line = std::string("no window can attach: the bus refuses the name ") + kBusName + " (" +
                 call.error + ")";
        } else if (result != kOwner) {
          line = std::string("no window can attach: somebody else has the name ") + kBusName;
        }
        if (std::exchange(told_, line) != line && !line.empty()) report_(line);
      });
  bus_ = bus;
}

void BusService::Touch(std::size_t field) {
  fields_[field].changed = true;
  if (attached_.empty() || std::exchange(telling_, true)) return;
  post_([this] { TellChanges(); });
}

void BusService::TellChanges() {
  telling_ = false;
  sd_bus_message* signal = attached_.empty() ? nullptr : NewSignal("Changed");
  if (signal) {
    sd_bus_message_open_container(signal, SD_BUS_TYPE_ARRAY, "{sv}");
    AppendState(signal, form_.Shown());
  }
  for (Field& field : fields_) {
    if (std::exchange(field.changed, false) && signal) field.append(signal);
  }
  if (!signal) return;
  sd_bus_message_close_container(signal);
  Emit(signal);
}

sd_bus_message* BusService::NewSignal(const char* name, const char* peer) const {
  sd_bus_message* signal = nullptr;
  if (!bus_ || bus_->Descriptor() < 0) return nullptr;
  sd_bus_message_new_signal(bus_->Handle(), &signal, kBusPath, kSeeInterface, name);
  if (signal && peer) sd_bus_message_set_destination(signal, peer);
  return signal;
}

void BusService::Emit(sd_bus_message* signal) {
  if (!signal) return;
  sd_bus_send(bus_->Handle(), signal, nullptr);
  sd_bus_message_unref(signal);
  if (bus_->OnSend) bus_->OnSend();
}

void BusService::TellForm(const char* verb, Form form) {
  SendForm(verb, form, nullptr);
}

void BusService::SendForm(const char* verb, Form form, const char* peer) {
  sd_bus_message* signal = NewSignal("Form", peer);
  if (signal) sd_bus_message_append(signal, "ss", verb, NameOf(form));
  Emit(signal);
}

void BusService::TellBox(std::string_view text, std::string_view title) {
  sd_bus_message* signal = NewSignal("Box");
  if (signal) {
    sd_bus_message_append(signal, "ss", BusText(text).c_str(), BusText(title).c_str());
  }
  Emit(signal);
}

void BusService::TellNotification(Notice notice, const Notification* notification) {
  if (attached_.empty()) return;
  sd_bus_message* signal = NewSignal("Notification");
  const Notification none;
  const Notification& shown = notification ? *notification : none;
  if (signal) {
    sd_bus_message_append(signal, "ubssbb", static_cast<std::uint32_t>(notice),
                          static_cast<int>(notification != nullptr), BusText(shown.title).c_str(),
                          BusText(shown.body).c_str(), static_cast<int>(shown.urgent),
                          static_cast<int>(shown.stays));
  }
  Emit(signal);
}

bool BusService::SaveApplications(milliseconds limit, const std::function<void()>& meanwhile) {
  if (!bus_ || attached_.empty()) return true;
  // The last of what the panel shows, before the windows are busy.
  TellChanges();
  saving_ = attached_;
  Emit(NewSignal("SaveApplications"));
  const auto end = steady_clock::now() + limit;
  while (!saving_.empty() && bus_->Descriptor() >= 0 && steady_clock::now() < end) {
    const auto next = std::min(end, steady_clock::now() + kMeanwhile);
    if (!bus_->Wait([this] { return saving_.empty(); }, next) && bus_->Descriptor() < 0) break;
    meanwhile();
  }
  return saving_.empty();
}

void BusService::Leave(const char* peer) {
  attached_.erase(peer);
  saving_.erase(peer);
  steering_.erase(peer);
  form_.Watched(!attached_.empty());
}

// What the other windows were told before this one came, and what still holds.
void BusService::CatchUp(const char* peer) {
  if (form_.Alert().Showing()) SendForm("Show", Form::kAlert, peer);
  if (!GoingDown()) return;
  SendForm("Hide", Form::kMain, peer);
  if (saving_.empty()) return;
  saving_.insert(peer);
  Emit(NewSignal("SaveApplications", peer));
}

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
