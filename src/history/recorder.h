// Watches the panel and keeps what it sees: readings as minutes, states as episodes.
#pragma once

#include <string>
#include <vector>

#include "app/panel.h"
#include "app/state.h"
#include "history/history.h"
#include "platform/clock.h"

namespace orvane {

// An episode that lasts, and the readings of the load in it.
struct OpenEpisode {
  Episode episode;
  std::int64_t load_sum = 0, load_readings = 0;
};

class Recorder {
 public:
  // Keeps nothing until it has a store.
  Recorder(const State& state, const Panel& panel, const Clock& clock)
      : state_(state), panel_(panel), clock_(clock) {}

  // `store` outlives this object and is not used before the first look.
  void KeepIn(HistoryStore& store) { store_ = &store; }

  // To be called about once a second. Takes a reading when a poll has been answered since the last
  // look.
  void Look();

  // The UPS has got the command for a self-test; ordered once more, it goes on. Of a UPS that does
  // not tell when it tests itself, it lasts `at_most` this long, and not beyond a mains failure, a
  // low battery and the bypass.
  void BeginSelfTest(std::chrono::seconds at_most);
  // The UPS has got the command to end it.
  void EndSelfTest();

  // The way down begins: what lasts ends with it.
  void BeginWayDown();

  // The program ends, or the main form is loaded anew.
  void End();

 private:
  void Start();
  void TakeReading(sys_seconds now);
  void FollowStates(sys_seconds now);
  void FollowSelfTest(sys_seconds now);
  void Follow(EpisodeKind kind, bool lasts, sys_seconds now);
  void Begin(EpisodeKind kind, sys_seconds now);
  void Close(EpisodeKind kind, sys_seconds end, Ending ending);
  void CloseAll(sys_seconds end, Ending ending);
  void CloseMinute();
  void Write();

  const State& state_;
  const Panel& panel_;
  const Clock& clock_;
  HistoryStore* store_ = nullptr;
  bool started_ = false;
  std::int64_t last_id_ = 0;
  std::int32_t answered_ = 0;  // PollsAnswered at the last look
  std::optional<sys_seconds> last_look_;
  bool linked_once_ = false;      // since the form was loaded
  std::optional<Sample> minute_;  // the one that is being collected
  sys_seconds self_test_end_;     // at the latest, of one that the UPS does not tell
  bool self_test_told_ = false;   // the UPS has told of the one that lasts
  PerEpisodeKind<std::optional<OpenEpisode>> open_;
  // What the store has not taken yet.
  std::vector<Sample> minutes_;
  std::vector<Episode> episodes_;
  bool due_ = false;
};

}  // namespace orvane
