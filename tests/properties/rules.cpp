#include "properties/rules.h"

#include <cstdio>

namespace orvane::test {
namespace {

constexpr Moment kModemPatience{50000};
constexpr int kMostAttempts = 4;

template <class... Values>
std::string Print(const char* form, Values... values) {
  char text[64];
  std::snprintf(text, sizeof text, form, values...);
  return text;
}

}  // namespace

std::string Wishes::ShutdownCommand() const {
  return shutdown_minutes == 0 ? "S.5" : Print("S%02d", shutdown_minutes);
}

bool Wishes::Dials(int fault) const {
  const int digit[] = {dial_conditions / 100, dial_conditions / 10 % 10, dial_conditions % 10};
  return digit[fault - 1] == 1;
}

void Shown::Reply(const Bits& bits, int language) {
  bits_ = bits;
  language_ = language;
  known_ = true;
}

bool Shown::Normal(int fault, int language) const {
  const bool set[] = {bits_.mains, bits_.battery, bits_.ups};
  return known_ && language == language_ && !set[fault - 1];
}

void Ticks::Start(Moment now) {
  if (!next_) next_ = now + period_;
}

void Ticks::Jump(Moment to) {
  if (next_ && *next_ < to) next_ = to;
}

bool Ticks::Take(Moment now) {
  if (next_ != now) return false;
  *next_ += period_;
  return true;
}

void CountRule::Reply(Moment now, const Bits& bits) {
  if (!bits.mains) {
    ticks.Stop();
    begun_ = false;
  }
  if (bits.mains || bits.battery || bits.ups) ticks.Start(now);
}

bool CountRule::Tick(const Shown& shown, const Wishes& wishes) {
  if (!begun_) left_ = wishes.delay;
  begun_ = true;
  if (!shown.Normal(1, wishes.language)) {
    const bool shorten = !shown.Normal(2, wishes.language) && left_ > wishes.low;
    left_ = shorten ? wishes.low : left_ - 1;
  }
  return left_ <= 0;
}

bool Episode::Begins(bool set) {
  const bool begins = set && seen_clear_;
  seen_clear_ = !set;
  return begins;
}

std::string CallRule::Sent(const std::string& text, bool begins, Moment now) {
  if (text == "ATH\r") {
    if (hung_up_) return "a line is hung up that no call holds";
    hung_up_ = true;
    return {};
  }
  if (!text.starts_with("ATDT") || !text.ends_with(";\r")) return "no command of the dialler";
  if (begins) {
    if (attempts_ > 0 && !hung_up_ && now - last_dial_ < kModemPatience) return "two runs at once";
    attempts_ = 0;
  } else if (!hung_up_) {
    return "a second call on a line that is held";
  }
  hung_up_ = false;
  last_dial_ = now;
  return ++attempts_ > kMostAttempts ? "a fifth attempt" : "";
}

bool Appointment::Due(const LocalTime& now) const {
  using namespace std::chrono;
  const year_month_day today = year{now.year} / now.month / now.day;
  const bool day = weekday == 0 ? today == year{at.year} / at.month / at.day
                                : std::chrono::weekday{today}.iso_encoding() == unsigned(weekday);
  return day && at.hour == now.hour && at.minute == now.minute;
}

std::string LogLine(const LocalTime& now, std::string_view message) {
  return Print("\"\n%04d-%02d-%02d %d:%02d:%02d ", now.year, now.month, now.day, now.hour,
               now.minute, now.second) +
         std::string(message) + "\"\r\n";
}

std::string Record(const LocalTime& now, int code) {
  return Print("\"\n%04d-%02d-%02d %02d %d\"\r\n", now.year, now.month, now.day, now.hour, code);
}

}  // namespace orvane::test
