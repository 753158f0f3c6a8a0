#include "ui/chart_axes.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

using std::chrono::seconds;

constexpr std::int64_t kDay = 86400;
constexpr double kLabelPitch = 52;  // the widest label and a space
constexpr std::int64_t kTimeSteps[] = {60,    300,   600,   1800, 3600,     7200,
                                       10800, 21600, 43200, kDay, 2 * kDay, 7 * kDay};
constexpr int kMonthSteps[] = {1, 2, 3, 6, 12, 24};
constexpr std::int64_t kMonth = 30 * kDay;
constexpr int kMostSteps = 4;

sys_seconds TimeOfLocal(const QDateTime& local) {
  return sys_seconds(seconds(local.toSecsSinceEpoch()));
}

std::vector<TimeTick> MonthTicks(const TimeAxis& axis, int months) {
  std::vector<TimeTick> ticks;
  const QDate first = QDateTime::fromSecsSinceEpoch(axis.from.time_since_epoch().count()).date();
  for (QDate month(first.year(), 1, 1);; month = month.addMonths(months)) {
    const sys_seconds time = TimeOfLocal(month.startOfDay());
    if (time > axis.to) return ticks;
    if (time >= axis.from) ticks.push_back({time, month.toString("yyyy-MM")});
  }
}

}  // namespace

double TimeAxis::XOf(sys_seconds time) const {
  return left + width * static_cast<double>((time - from).count()) /
                    static_cast<double>((to - from).count());
}

sys_seconds TimeAxis::TimeAt(double x) const {
  const double part = std::clamp((x - left) / width, 0.0, 1.0);
  return from + seconds(std::llround(part * static_cast<double>((to - from).count())));
}

std::vector<TimeTick> TicksOf(const TimeAxis& axis) {
  const auto fits = [&](std::int64_t step) {
    return axis.width * static_cast<double>(step) /
               static_cast<double>((axis.to - axis.from).count()) >=
           kLabelPitch;
  };
  const auto* step = std::find_if(std::begin(kTimeSteps), std::end(kTimeSteps), fits);
  if (step == std::end(kTimeSteps)) {
    const auto* months = std::find_if(std::begin(kMonthSteps), std::end(kMonthSteps) - 1,
                                      [&](int count) { return fits(count * kMonth); });
    return MonthTicks(axis, *months);
  }
  // Counted by the local clock, which leaps twice a year.
  std::vector<TimeTick> ticks;
  const QDateTime from = QDateTime::fromSecsSinceEpoch(axis.from.time_since_epoch().count());
  const std::int64_t begin = from.toSecsSinceEpoch() + from.offsetFromUtc();
  for (std::int64_t at = begin / *step * *step;; at += *step) {
    const QDateTime wall = QDateTime::fromSecsSinceEpoch(at, Qt::UTC);
    const sys_seconds time = TimeOfLocal(QDateTime(wall.date(), wall.time()));
    if (time > axis.to) return ticks;
    if (time < axis.from) continue;
    ticks.push_back({time, wall.toString(at % kDay == 0 ? "MM-dd" : "HH:mm")});
  }
}

QString ValueScale::Label(double value) const {
  return QString::number(value, 'f', step < 1 ? 1 : 0);
}

ValueScale ScaleOf(double low, double high, double least) {
  const double spare = std::max(0.0, least - (high - low)) / 2;
  low -= spare;
  high += spare;
  double step = 0.1;
  for (int i = 0; (high - low) / step > kMostSteps; ++i) step *= i % 3 == 1 ? 2.5 : 2;
  return {std::floor(low / step + 1e-6) * step, std::ceil(high / step - 1e-6) * step, step};
}

}  // namespace orvane
