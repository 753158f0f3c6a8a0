#include "simulate/ups_model.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace orvane {
namespace {

constexpr double kFull = 100;
// The figure of the status reply that tells the level: its ends stand for empty and full.
constexpr double kEmptyFigure = 1.72;
constexpr double kFullFigure = 2.27;
// What the UPS itself takes, in percent of the full load.
constexpr double kOwnLoad = 5;
// A battery gives less the faster it is emptied.
constexpr double kDischargeExponent = 1.2;
// Replies that may be under way; a UPS asked faster than it can speak leaves out the rest.
constexpr std::size_t kMostPieces = 64;

// The number in exactly `width` characters with `decimals` behind the point, whatever the locale;
// noughts in front. Cut to what fits.
std::string Field(double value, std::size_t width, int decimals) {
  const double step = std::pow(10, -decimals);
  const double whole_digits =
      static_cast<double>(width) - (decimals > 0 ? 1 : 0) - static_cast<double>(decimals);
  const double highest = std::pow(10, whole_digits) - step;
  const double lowest = -(std::pow(10, whole_digits - 1) - step);
  value = std::clamp(value, lowest, highest);
  if (std::abs(value) < step / 2) value = 0;  // no "-0.0"
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::fixed, decimals);
  std::string text(digits.data(), end.ptr);
  if (text.size() < width) text.insert(text.starts_with('-') ? 1 : 0, width - text.size(), '0');
  return text;
}

char Bit(bool set) {
  return set ? '1' : '0';
}

}  // namespace

void UpsModel::Advance(Moment now) {
  while (now_ < now) {
    const Moment end = std::min(now, NextChange().value_or(now));
    level_ = std::clamp(level_ + Rate() * static_cast<double>((end - now_).count()), 0.0, kFull);
    now_ = end;
    Change();
  }
}

void UpsModel::Receive(std::string_view bytes) {
  reader_.Put(bytes);
  while (const auto command = reader_.Take()) {
    if (OnTrace) OnTrace(Trace::kCommand, *command);
    Obey(*command);
  }
}

std::string UpsModel::Take() {
  std::string said;
  while (!pieces_.empty() && pieces_.front().due <= now_) {
    said += pieces_.front().bytes;
    pieces_.pop_front();
  }
  return said;
}

std::optional<Moment> UpsModel::Next() const {
  std::optional<Moment> next = NextChange();
  if (!pieces_.empty() && (!next || pieces_.front().due < *next)) next = pieces_.front().due;
  return next;
}

void UpsModel::Mains(bool on) {
  if (on == mains_) return;
  mains_ = on;
  if (on) {
    if (!output_on_) SwitchOn();
    return;
  }
  failed_at_volts_ = mains_volts_;
  EndTest("ended by the mains failure");
  Change();
}

void UpsModel::Battery(double percent) {
  level_ = std::clamp(percent, 0.0, kFull);
  Change();
  // Between the two limits a level that was set, not reached, counts as good.
  if (level_ > kLowPercent) low_ = false;
}

void UpsModel::Bypass(bool on) {
  bypass_ = on;
  if (on) EndTest("ended by the bypass");
}

void UpsModel::Mute(bool on) {
  mute_ = on;
  if (on) pieces_.clear();
}

std::string UpsModel::StatusReply() const {
  const double input = mains_ ? mains_volts_ : 0;
  const double cell = kEmptyFigure + (kFullFigure - kEmptyFigure) * level_ / kFull;
  const int cells = dialect_->cells;
  std::string reply = "(";
  for (const std::string& field :
       {Field(input, 5, 1), Field(failed_at_volts_, 5, 1),
        Field(bypass_ ? input : output_volts_, 5, 1), Field(load_, 3, 0), Field(frequency_, 4, 1),
        cells > 1 ? Field(cell * cells, 4, 1) : Field(cell, 4, 2),
        dialect_->thermometer ? Field(temperature_, 4, 1) : "--.-"}) {
    reply += field;
    reply += ' ';
  }
  for (const bool bit : {!mains_, low_, bypass_, fault_, !dialect_->on_line, Testing(),
                         shutdown_due_.has_value(), beeper_}) {
    reply += Bit(bit);
  }
  return reply + '\r';
}

std::string UpsModel::InformationReply() {
  // Model, rated watts, version, rated volts, rated hertz, batteries, volts of each, their
  // capacity, lines.
  return "UPS Simulator,700,1.0,230,50.0,8,12,7.2,1\r";
}

void UpsModel::Obey(std::string_view command) {
  if (command == "C") return SwitchOnWord();
  if (!output_on_) return;
  if (command == "Q1") return Say(StatusReply());
  if (command == "MD" && dialect_->information) return Say(InformationReply());
  if (command == "F" && !dialect_->rating.empty()) return Say(std::string(dialect_->rating) + '\r');
  if (command == "I" && !dialect_->label.empty()) return Say(std::string(dialect_->label) + '\r');
  if (command == "T") return BeginTest(Test::kShort);
  if (command == "TL") return BeginTest(Test::kToLow);
  if (command == "CT") return EndTest("cancelled");
  if (command == "Q") {
    beeper_ = !beeper_;
    Note(beeper_ ? "beeper on" : "beeper off");
  }
  if (command.starts_with('S')) return AskShutdown(command.substr(1));
  if (dialect_->echo && command != "Q") Say(std::string(command) + '\r');
}

void UpsModel::BeginTest(Test test) {
  if (!mains_ || bypass_ || Testing()) return;
  test_ = test;
  test_end_ = now_ + kShortTest;
  Note(test == Test::kShort ? "self-test of 10 s begins" : "self-test until battery low begins");
  Change();
}

void UpsModel::EndTest(std::string_view how) {
  if (!Testing()) return;
  test_ = Test::kNone;
  Note("self-test " + std::string(how));
}

// `delay` is ".5" or whole minutes from "01" to "10"; a new one takes the place of a pending one.
void UpsModel::AskShutdown(std::string_view delay) {
  int minutes = 0;
  const auto [rest, error] = std::from_chars(delay.data(), delay.data() + delay.size(), minutes);
  const bool whole = delay.size() == 2 && error == std::errc() &&
                     rest == delay.data() + delay.size() && minutes >= 1 && minutes <= 10;
  if (!whole && delay != ".5") return;
  const std::chrono::seconds wait(whole ? minutes * 60 : 30);
  shutdown_due_ = now_ + wait;
  Note("shutdown in " + std::to_string(wait.count()) + " s");
}

void UpsModel::SwitchOnWord() {
  if (output_on_) {
    if (shutdown_due_) Note("shutdown cancelled");
    shutdown_due_.reset();
  } else if (mains_ || !low_) {
    SwitchOn();
  }
}

void UpsModel::SwitchOn() {
  output_on_ = true;
  Note("output on");
}

void UpsModel::SwitchOff(std::string_view why) {
  EndTest("ended by the shutdown");
  shutdown_due_.reset();
  output_on_ = false;
  pieces_.clear();
  Note("output off: " + std::string(why));
}

void UpsModel::Say(std::string reply) {
  if (mute_ || pieces_.size() >= kMostPieces) return;
  if (noise_) Spoil(reply);
  if (OnTrace) OnTrace(Trace::kReply, std::string_view(reply).substr(0, reply.find_last_of('\r')));
  // The last byte of a status reply, the one that makes it whole, is a piece of its own.
  constexpr std::array<std::size_t, 4> kCuts{1, 9, 20, 16};
  Moment due = pieces_.empty() ? now_ : std::max(now_, pieces_.back().due);
  if (split_) {
    for (const std::size_t cut : kCuts) {
      if (reply.size() <= cut) break;
      pieces_.push_back({due, reply.substr(0, cut)});
      reply.erase(0, cut);
      due += kSplitPause;
    }
  }
  pieces_.push_back({due, std::move(reply)});
}

void UpsModel::Spoil(std::string& reply) {
  switch (replies_in_noise_++ % 3) {
    case 0:
      reply.insert(0, Garbage());
      break;
    case 1:
      reply.insert(Random(static_cast<unsigned>(reply.size())), Garbage());
      break;
    default:
      break;
  }
}

std::string UpsModel::Garbage() {
  std::string garbage(1 + Random(8), '\0');
  for (char& byte : garbage) {
    do {
      byte = static_cast<char>(Random(256));
    } while ((byte >= '0' && byte <= '9') || byte == '(');
  }
  return garbage;
}

// The same bytes in every run, so that a trial can be repeated.
unsigned UpsModel::Random(unsigned below) {
  random_ = random_ * 1664525 + 1013904223;
  return (random_ >> 8) % below;
}

double UpsModel::Rate() const {
  if (OnBattery()) {
    const double load = std::max(bypass_ ? 0 : load_, kOwnLoad) / 100;
    return -kFull * std::pow(load, kDischargeExponent) / static_cast<double>(kFullLoadTime.count());
  }
  return mains_ && level_ < kFull ? kFull / static_cast<double>(kChargeTime.count()) : 0;
}

double UpsModel::Mark() const {
  if (OnBattery()) return !low_ && level_ > kLowPercent ? kLowPercent : 0;
  return low_ && level_ < kRecoveredPercent ? kRecoveredPercent : kFull;
}

std::optional<Moment> UpsModel::NextChange() const {
  std::optional<Moment> next = shutdown_due_;
  const auto consider = [&next](Moment moment) {
    if (!next || moment < *next) next = moment;
  };
  if (test_ == Test::kShort) consider(test_end_);
  if (const double rate = Rate(); rate != 0 && level_ != Mark()) {
    const double wait = std::ceil((Mark() - level_) / rate);
    consider(now_ + Moment(std::max(1LL, static_cast<long long>(wait))));
  }
  return next;
}

// Whatever the moment has brought.
void UpsModel::Change() {
  if (!low_ && level_ <= kLowPercent) {
    low_ = true;
    Note("battery low");
  } else if (low_ && level_ >= kRecoveredPercent) {
    low_ = false;
    Note("battery no longer low");
  }
  if (test_ == Test::kShort && now_ >= test_end_) EndTest("over");
  if (test_ == Test::kToLow && low_) EndTest("over, battery low");
  if (shutdown_due_ && now_ >= *shutdown_due_) SwitchOff("shutdown");
  if (output_on_ && !mains_ && level_ <= 0) SwitchOff("battery empty");
}

void UpsModel::Note(std::string_view text) const {
  if (OnTrace) OnTrace(Trace::kEvent, text);
}

void AddUpsOrders(OrderTable& orders, UpsModel& ups) {
  const auto add_switch = [&](const char* name, const char* help, void (UpsModel::*set)(bool)) {
    orders.AddSwitch(name, help, [&ups, set](bool on) { (ups.*set)(on); });
  };
  const auto add_number = [&](const char* name, double low, double high, const char* help,
                              void (UpsModel::*set)(double)) {
    orders.AddNumber(name, low, high, help, [&ups, set](double value) { (ups.*set)(value); });
  };
  add_switch("mains", "the mains is there or fails", &UpsModel::Mains);
  add_number("battery", 0, 100, "charge of the battery, percent; low from 20 down",
             &UpsModel::Battery);
  add_number("load", 0, 999, "load, percent; from 100 up it is too much", &UpsModel::Load);
  add_number("temperature", -9.9, 99.9, "temperature, degrees Celsius", &UpsModel::Temperature);
  add_number("input", 0, 999.9, "voltage of the mains while it is there", &UpsModel::MainsVoltage);
  add_number("output", 0, 999.9, "voltage of the output", &UpsModel::OutputVoltage);
  add_number("frequency", 0, 99.9, "frequency, hertz", &UpsModel::Frequency);
  add_switch("bypass", "the mains goes past the UPS to the load", &UpsModel::Bypass);
  add_switch("fault", "the UPS itself has failed", &UpsModel::Fault);
  add_switch("mute", "no more replies", &UpsModel::Mute);
  orders.Add("unmute", "replies again", [&ups] { ups.Mute(false); });
  add_switch("noise", "garbage in two replies of three", &UpsModel::Noise);
  add_switch("split", "replies in pieces, with pauses", &UpsModel::Split);
}

}  // namespace orvane
