#include "bus/bus_service.h"

#include <systemd/sd-bus.h>

#include <utility>

#include "app/panel_fields.h"
#include "bus/fields.h"
#include "bus/interface.h"
#include "bus/names.h"

namespace orvane {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kMeanwhile{100};

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

}  // namespace orvane
