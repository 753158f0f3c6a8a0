// The engine of this process, offered on the system bus.
#pragma once

#include <chrono>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "frame/main_form.h"
#include "platform/forms.h"
#include "platform/linux/bus_connection.h"

struct sd_bus_message;
struct sd_bus_slot;

namespace orvane {

class BusService {
 public:
  // Has `work` run by the event loop when the running handler is over.
  using Post = std::function<void(std::function<void()> work)>;
  using Report = std::function<void(const std::string&)>;

  // All of them outlive this object, which observes the panel of `form`.
  BusService(MainForm& form, BusConnection& connection, Post post, Report report);
  ~BusService();
  BusService(const BusService&) = delete;
  BusService& operator=(const BusService&) = delete;

  // Offers the engine where it is not offered: at the start, and when the bus has gone and come
  // back. To be called now and then.
  void Keep();

  // What the engine tells its windows.
  void TellForm(const char* verb, Form form);
  void TellBox(std::string_view text, std::string_view title);
  void TellNotification(Notice notice, const Notification* notification);

  // Has every window that is attached run the companion, and waits until all have reported or gone,
  // for at most `limit`. `meanwhile` runs ten times a second. True when nobody is left.
  bool SaveApplications(std::chrono::milliseconds limit, const std::function<void()>& meanwhile);

  bool GoingDown() const { return form_.GoingDown(); }

  // The methods, as the bus calls them. Each returns what its reply carries, or an error's number.
  int Attach(sd_bus_message* call);
  int Detach(sd_bus_message* call);
  int Saved(sd_bus_message* call);
  int OpenJournal(sd_bus_message* call);
  int TellSchedule(sd_bus_message* call);
  int TellSamples(sd_bus_message* call);
  int TellEpisodes(sd_bus_message* call);
  int TellFirst(sd_bus_message* call);
  int TellPhone(sd_bus_message* call);
  int Check(sd_bus_message* call);
  int ToggleBeeper(sd_bus_message* call);
  int TestFor10Seconds(sd_bus_message* call);
  int TestToLow(sd_bus_message* call);
  int CancelTest(sd_bus_message* call);
  int GoDown(sd_bus_message* call);
  int SaveSettings(sd_bus_message* call);
  int SaveSchedule(sd_bus_message* call);
  int ClearLog(sd_bus_message* call);
  int ClearReport(sd_bus_message* call);

 private:
  struct Field {
    std::function<void(sd_bus_message*)> append;
    bool changed = false;
  };

  void Touch(std::size_t field);
  void TellChanges();
  void CatchUp(const char* peer);
  // For all windows, or for the one called `peer`.
  sd_bus_message* NewSignal(const char* name, const char* peer = nullptr) const;
  void Emit(sd_bus_message* signal);
  void SendForm(const char* verb, Form form, const char* peer);
  void Leave(const char* peer);
  int Order(sd_bus_message* call, void (MainForm::*command)());

  MainForm& form_;
  BusConnection& connection_;
  Post post_;
  Report report_;
  Bus* bus_ = nullptr;  // the connection on which the engine is offered
  sd_bus_slot* see_ = nullptr;
  sd_bus_slot* steer_ = nullptr;
  std::string told_;  // the trouble that was reported last
  std::vector<Field> fields_;
  bool telling_ = false;            // TellChanges is posted
  std::set<std::string> attached_;  // the windows, by their names on the bus
  std::set<std::string> saving_;    // of them those whose companion runs
  std::set<std::string> steering_;  // programs that the bus has let steer
};

}  // namespace orvane
