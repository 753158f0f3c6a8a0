// A UPS as it looks from the far end of its serial line: mains, battery, load and faults that an
// order sets, and the commands and replies of the line. It knows no clock; time comes by Advance.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "simulate/device.h"
#include "simulate/orders.h"
#include "simulate/ups_dialect.h"

namespace orvane {

class UpsModel : public Device {
 public:
  // The battery is low from kLowPercent down, and no longer low from kRecoveredPercent up.
  static constexpr double kLowPercent = 20;
  static constexpr double kRecoveredPercent = 25;
  // A full battery carries the full load this long, and is charged from empty in this time.
  static constexpr Moment kFullLoadTime = std::chrono::minutes(8);
  static constexpr Moment kChargeTime = std::chrono::hours(5);
  static constexpr Moment kShortTest = std::chrono::seconds(10);
  // Of a reply in pieces, from the start of one piece to that of the next.
  static constexpr Moment kSplitPause = std::chrono::milliseconds(200);

  void Advance(Moment now) override;
  void Receive(std::string_view bytes) override;
  std::string Take() override;
  std::optional<Moment> Next() const override;

  // The dialect that it speaks from now on.
  void Speak(const UpsDialect& dialect) { dialect_ = &dialect; }

  // What the world does to the UPS, at the moment of the last Advance. Figures beyond what a reply
  // can hold are cut to it.
  void Mains(bool on);
  void MainsVoltage(double volts) { mains_volts_ = volts; }
  void OutputVoltage(double volts) { output_volts_ = volts; }
  void Frequency(double hertz) { frequency_ = hertz; }
  void Load(double percent) { load_ = percent; }
  void Temperature(double celsius) { temperature_ = celsius; }
  void Battery(double percent);
  void Bypass(bool on);
  void Fault(bool on) { fault_ = on; }

  // What befalls the line. A mute UPS still hears. Noise goes in turn in front of a reply, into it,
  // and spares one; no byte of it is a digit, but digits behind it slide into other columns. Split
  // replies come in pieces, kSplitPause apart.
  void Mute(bool on);
  void Noise(bool on) { noise_ = on; }
  void Split(bool on) { split_ = on; }

  bool Testing() const { return test_ != Test::kNone; }

  // The replies to "Q1" and "MD" as they stand at this moment, with their line ends.
  std::string StatusReply() const;
  static std::string InformationReply();

 private:
  enum class Test { kNone, kShort, kToLow };

  struct Piece {
    Moment due;
    std::string bytes;
  };

  void Obey(std::string_view command);
  void BeginTest(Test test);
  void EndTest(std::string_view how);
  void AskShutdown(std::string_view delay);
  void SwitchOnWord();
  void SwitchOn();
  void SwitchOff(std::string_view why);
  void Say(std::string reply);
  void Spoil(std::string& reply);
  std::string Garbage();
  unsigned Random(unsigned below);

  bool OnBattery() const { return output_on_ && (!mains_ || Testing()); }
  // Percent of the battery per millisecond; below 0 while it gives.
  double Rate() const;
  // The level at which something happens, in the direction in which the battery goes.
  double Mark() const;
  std::optional<Moment> NextChange() const;
  void Change();
  void Note(std::string_view text) const;

  const UpsDialect* dialect_ = &kUpsDialects[0];
  Moment now_{0};
  LineReader reader_{'\r'};

  bool mains_ = true;
  double mains_volts_ = 230;
  double output_volts_ = 230;
  double failed_at_volts_ = 230;  // mains voltage just before it last failed
  double frequency_ = 50;
  double load_ = 35;
  double temperature_ = 25;
  bool bypass_ = false;
  bool fault_ = false;
  double level_ = 100;
  bool low_ = false;

  bool output_on_ = true;
  bool beeper_ = true;
  Test test_ = Test::kNone;
  Moment test_end_{0};  // of the short test
  std::optional<Moment> shutdown_due_;

  bool mute_ = false;
  bool noise_ = false;
  bool split_ = false;
  unsigned replies_in_noise_ = 0;
  std::uint32_t random_ = 1;
  std::deque<Piece> pieces_;  // said, but not all of it is due
};

// The orders of a person who plays the world round the UPS.
void AddUpsOrders(OrderTable& orders, UpsModel& ups);

}  // namespace orvane
