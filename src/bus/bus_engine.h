// The engine of the service, as an attached window has it: a mirror of its panel and settings, and
// its commands, over the system bus.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/seams.h"
#include "bus/fields.h"
#include "check/protection_view.h"
#include "frame/engine.h"
#include "platform/linux/bus_connection.h"

namespace orvane {

class BusEngine : public Engine {
 public:
  using Post = std::function<void(std::function<void()> work)>;

  // `post` has work run by the event loop when the running handler is over. All outlive this
  // object.
  BusEngine(BusConnection& connection, const Seams& seams, Post post);

  // Attaches, and from then on again whenever the service is there. Until it is, and when it has
  // gone, the panel says that protection is off.
  void Start();

  // The window goes: nothing happens after it.
  void Stop();

  bool Started() const { return started_; }

  // Looks whether the bus is still there; to be called every few seconds.
  void Keep();

  // Engine.
  const State& Shown() const override { return state_; }
  Panel& Fields() override { return panel_; }
  AlertForm& Alert() override { return alert_; }
  ProtectionView& Check() override { return check_; }
  bool GoingDown() const override { return going_down_; }
  bool MaySteer() const override { return may_steer_; }
  Disk& Files() override { return files_; }
  std::string PathOf(Journal journal) const override;
  HistorySource& History() override { return history_; }
  ScheduleEntries Schedule(const ScheduleSection& section) override;
  void SaveSchedule(const ScheduleSection& section, const ScheduleEntries& entries) override;
  bool SaveSettings(const SettingsValues& values) override;
  void ToggleBeeper() override { Order("ToggleBeeper"); }
  void TestFor10Seconds() override { Order("TestFor10Seconds"); }
  void TestToLow() override { Order("TestToLow"); }
  void CancelTest() override { Order("CancelTest"); }
  void AskForShutdown() override;

 private:
  // The journals of the service. They are read as they stand at that moment; what a window does to
  // them, the service is asked to do.
  struct JournalFiles : Disk {
    explicit JournalFiles(BusEngine& engine) : engine_(engine) {}
    std::optional<std::string> Read(const std::string& path) const override;
    bool Exists(const std::string& path) const override { return Read(path).has_value(); }
    bool Replace(const std::string& path, std::string_view content) override;
    bool Append(const std::string&, std::string_view) override { return false; }
    bool AppendUnsettled(const std::string&, std::string_view) override { return false; }
    bool Settle(const std::string&) override { return false; }
    bool Remove(const std::string& path) override;
    BusEngine& engine_;
  };

  struct ServiceHistory : HistorySource {
    explicit ServiceHistory(BusEngine& engine) : engine_(engine) {}
    std::vector<Sample> Samples(Step step, sys_seconds from, sys_seconds to) override;
    std::vector<Episode> Episodes(sys_seconds from, sys_seconds to) override;
    std::optional<sys_seconds> First() override;
    BusEngine& engine_;
  };

  // The rows of the service, with those of this window's session in their places.
  struct SharedCheck : ProtectionView {
    explicit SharedCheck(BusEngine& engine)
        : ProtectionView(engine.state_, engine.panel_, engine.seams_), engine_(engine) {}
    void Ask() override;
    void Judge() override;
    BusEngine& engine_;
    std::vector<CheckRow> told;  // by the service
  };

  void Listen(Bus& bus);
  void AttachNow();
  void TakePhone(sd_bus_message* message);
  void Lose();
  void MaySteer(bool may);
  void TakeForm(const std::string& verb, const std::string& form);
  void TakeNotification(sd_bus_message* signal);
  void SaveApplications();
  void Order(const char* command);
  std::shared_ptr<BusCall> Ask(const BusObject& object, const char* member,
                               const Bus::Fill& fill = {});
  std::optional<std::string> ReadFile(const char* member, const Bus::Fill& fill);
  void TellFailure(const BusCall& call);

  BusConnection& connection_;
  Seams seams_;
  Post post_;
  State state_;
  Panel panel_;
  AlertForm alert_;
  JournalFiles files_{*this};
  ServiceHistory history_{*this};
  SharedCheck check_{*this};
  FieldReaders readers_;
  Bus* bus_ = nullptr;
  bool started_ = false;
  bool may_steer_ = false;
  bool going_down_ = false;
  std::shared_ptr<char> alive_ = std::make_shared<char>();  // what is posted runs while it lives
};

}  // namespace orvane
