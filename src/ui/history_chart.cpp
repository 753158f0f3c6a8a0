#include "ui/history_chart.h"

#include <QDateTime>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStringList>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/look.h"
#include "ui/words.h"

namespace orvane {

using std::chrono::seconds;

namespace {

constexpr int kLeft = 54;
constexpr int kRight = 12;
constexpr int kTop = 6;
constexpr int kBottom = 22;
constexpr int kBetween = 18;  // room for a lane's name
constexpr int kFontSize = 12;

constexpr seconds kShortest{600};
constexpr seconds kLongest{10LL * 366 * 86400};
// Up to here the minutes are drawn, beyond it the hours.
constexpr seconds kMinutesUpTo{40 * 86400};

struct Kind {
  Words words;
  QColor colour;
};
constexpr PerEpisodeKind<Kind> kKinds = {
    std::array<Kind, kEpisodeKinds>{Kind{{"市电中断", "Mains failure"}, QColor(214, 64, 48, 90)},
                                    Kind{{"电池低", "Battery low"}, QColor(230, 140, 20, 110)},
                                    Kind{{"UPS故障", "UPS fault"}, QColor(150, 40, 160, 100)},
                                    Kind{{"旁路", "Bypass"}, QColor(40, 120, 200, 80)},
                                    Kind{{"过载", "Overload"}, QColor(200, 160, 0, 100)},
                                    Kind{{"连接中断", "Link lost"}, QColor(120, 128, 138, 90)},
                                    Kind{{"自检", "Self-test"}, QColor(30, 150, 110, 90)},
                                    Kind{{"关机", "Way down"}, QColor(40, 40, 60, 130)}}};

QColor CurveColour(Gauge gauge) {
  constexpr PerGauge<QColor> kColours = {std::array{QColor(38, 84, 186), QColor(24, 140, 84),
                                                    QColor(176, 94, 16), QColor(20, 136, 150),
                                                    QColor(130, 70, 170), QColor(196, 60, 70)}};
  return kColours[gauge];
}

QString Figure(double value) {
  return QString::number(value, 'f', std::abs(value - std::round(value)) < 0.05 ? 0 : 1);
}

}  // namespace

// One of the curves' axes, from the top down. Limits that are equal follow the values.
struct HistoryChart::Lane {
  Words name;
  std::vector<Gauge> gauges;
  double low, high;
  double height;  // by comparison
};

struct HistoryChart::Bin {
  double least = 0, sum = 0, most = 0;
  double readings = 0;
};

QString NameOf(const State& state, EpisodeKind kind) {
  return Pick(state, kKinds[kind].words);
}

QString TimeOf(sys_seconds time) {
  return QDateTime::fromSecsSinceEpoch(time.time_since_epoch().count())
      .toString("yyyy-MM-dd HH:mm");
}

HistoryChart::HistoryChart(const State& state, HistorySource& source, const Clock& clock,
                           QWidget* parent)
    : QWidget(parent), state_(state), source_(source), clock_(clock) {
  setObjectName("chart");
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(520, 360);
  setAccessibleName(Pick(state, Words{"历史曲线", "Curves of the history"}));
}

void HistoryChart::ShowLast(seconds length) {
  const sys_seconds now = clock_.SystemSeconds();
  live_ = true;
  Move(now - length, now);
}

void HistoryChart::ShowAround(sys_seconds begin, sys_seconds end) {
  const seconds margin = std::max<seconds>(seconds(1800), (end - begin) / 2);
  live_ = false;
  Move(begin - margin, end + margin);
}

void HistoryChart::Follow() {
  const sys_seconds now = clock_.SystemSeconds();
  // A clock that was set back leaves the view where it is.
  if (live_ && now > to_) {
    Move(from_ + (now - to_), now);
  } else {
    Read();
  }
}

void HistoryChart::Move(sys_seconds from, sys_seconds to) {
  from_ = from;
  to_ = to;
  Read();
}

void HistoryChart::Read() {
  step_ = to_ - from_ <= kMinutesUpTo ? Step::kMinute : Step::kHour;
  const seconds width = step_ == Step::kMinute ? seconds(60) : seconds(3600);
  samples_ = source_.Samples(step_, from_ - width, to_ + width);
  episodes_ = source_.Episodes(from_, to_);
  Q_EMIT Moved();
  update();
}

void HistoryChart::Zoom(double factor, double at) {
  const sys_seconds centre = TimeAt(at);
  const auto scaled = [&](seconds part) {
    return seconds(std::llround(static_cast<double>(part.count()) * factor));
  };
  const seconds length = scaled(to_ - from_);
  if (length < kShortest || length > kLongest) return;
  const sys_seconds now = clock_.SystemSeconds();
  if (live_) {
    Move(now - length, now);
  } else {
    const sys_seconds from = centre - scaled(centre - from_);
    Move(from, from + length);
  }
}

QRectF HistoryChart::Plot() const {
  return QRectF(kLeft, kTop, std::max(1, width() - kLeft - kRight), height() - kTop - kBottom);
}

double HistoryChart::XOf(sys_seconds time) const {
  const QRectF plot = Plot();
  return plot.left() + plot.width() * static_cast<double>((time - from_).count()) /
                           static_cast<double>(std::max<std::int64_t>(1, (to_ - from_).count()));
}

sys_seconds HistoryChart::TimeAt(double x) const {
  const QRectF plot = Plot();
  const double part = std::clamp((x - plot.left()) / plot.width(), 0.0, 1.0);
  return from_ + seconds(std::llround(part * static_cast<double>((to_ - from_).count())));
}

// The samples by columns of the screen's own pixels; a column without any stays empty.
std::vector<HistoryChart::Bin> HistoryChart::BinsOf(Gauge gauge, double ratio) const {
  const QRectF plot = Plot();
  const int columns = std::max(1, static_cast<int>(plot.width() * ratio));
  std::vector<Bin> bins(static_cast<std::size_t>(columns));
  const double scale =
      columns / static_cast<double>(std::max<std::int64_t>(1, (to_ - from_).count()));
  const double width = step_ == Step::kMinute ? 60 : 3600;
  for (const Sample& sample : samples_) {
    const auto offset = static_cast<double>((sample.begin - from_).count());
    const int first = std::max(0, static_cast<int>(std::floor(offset * scale)));
    const int last = std::min(columns - 1, static_cast<int>((offset + width) * scale));
    const Spread& spread = sample.values[gauge];
    for (int column = first; column <= last; ++column) {
      Bin& bin = bins[static_cast<std::size_t>(column)];
      const auto least = static_cast<double>(spread.least) / 100;
      const auto most = static_cast<double>(spread.most) / 100;
      bin.least = bin.readings > 0 ? std::min(bin.least, least) : least;
      bin.most = bin.readings > 0 ? std::max(bin.most, most) : most;
      bin.sum += static_cast<double>(spread.sum) / 100;
      bin.readings += static_cast<double>(sample.readings);
    }
  }
  return bins;
}

void HistoryChart::DrawCurve(QPainter& painter, const std::vector<Bin>& bins, const QRectF& place,
                             double low, double high, const QColor& colour) const {
  const double ratio = devicePixelRatioF();
  const auto y_of = [&](double value) {
    return place.bottom() - place.height() * (value - low) / (high - low);
  };
  QColor band = colour;
  band.setAlpha(70);
  QVector<QLineF> bands, means;
  std::optional<QPointF> before;
  for (std::size_t column = 0; column < bins.size(); ++column) {
    const Bin& bin = bins[column];
    if (bin.readings <= 0) {
      before.reset();
      continue;
    }
    const double x = place.left() + (static_cast<double>(column) + 0.5) / ratio;
    const QPointF mean(x, y_of(bin.sum / bin.readings));
    bands.append({x, y_of(bin.least), x, y_of(bin.most)});
    // A lone column is still to be seen.
    means.append({before.value_or(mean - QPointF(0.5 / ratio, 0)), mean});
    before = mean;
  }
  painter.setPen(QPen(band, 1 / ratio));
  painter.drawLines(bands);
  painter.setPen(QPen(colour, 1));
  painter.drawLines(means);
}

void HistoryChart::DrawLane(QPainter& painter, const Lane& lane, const QRectF& place) const {
  std::vector<std::vector<Bin>> curves;
  double low = lane.low;
  double high = lane.high;
  const bool follows = low >= high;
  bool found = false;
  for (const Gauge gauge : lane.gauges) {
    curves.push_back(BinsOf(gauge, devicePixelRatioF()));
    for (const Bin& bin : curves.back()) {
      if (!follows || bin.readings <= 0) continue;
      low = found ? std::min(low, bin.least) : bin.least;
      high = found ? std::max(high, bin.most) : bin.most;
      found = true;
    }
  }
  if (follows) {
    const double margin = std::max(1.0, (high - low) * 0.08);
    low = std::floor(low - margin);
    high = std::ceil(high + margin);
  }
  QColor line = palette().color(QPalette::WindowText);
  painter.setPen(line);
  double x = place.left();
  painter.drawText(QPointF(x, place.top() - 4), Pick(state_, lane.name));
  x += painter.fontMetrics().horizontalAdvance(Pick(state_, lane.name)) + 14;
  if (lane.gauges.size() > 1) {
    for (const Gauge gauge : lane.gauges) {
      const QString name = gauge == Gauge::kInput ? Pick(state_, Words{"输入", "Input"})
                                                  : Pick(state_, Words{"输出", "Output"});
      painter.fillRect(QRectF(x, place.top() - 9, 12, 3), CurveColour(gauge));
      painter.drawText(QPointF(x + 16, place.top() - 4), name);
      x += 16 + painter.fontMetrics().horizontalAdvance(name) + 12;
    }
  }
  line.setAlpha(60);
  for (const double part : {0.0, 0.5, 1.0}) {
    const double y = place.bottom() - place.height() * part;
    painter.setPen(line);
    painter.drawLine(QPointF(place.left(), y), QPointF(place.right(), y));
    if (follows && !found) continue;
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRectF(0, y - 8, kLeft - 6, 16), Qt::AlignRight | Qt::AlignVCenter,
                     Figure(low + (high - low) * part));
  }
  painter.setClipRect(place.adjusted(0, -1, 1, 1));
  for (std::size_t i = 0; i < curves.size(); ++i) {
    DrawCurve(painter, curves[i], place, low, high, CurveColour(lane.gauges[i]));
  }
  painter.setClipping(false);
}

void HistoryChart::DrawTimes(QPainter& painter, const QRectF& plot) const {
  constexpr std::int64_t kDay = 86400;
  constexpr std::int64_t kSteps[] = {
      60,       300,      600,       1800,      3600,      10800,      21600,      43200,     kDay,
      2 * kDay, 7 * kDay, 14 * kDay, 30 * kDay, 61 * kDay, 122 * kDay, 365 * kDay, 730 * kDay};
  const std::int64_t length = (to_ - from_).count();
  std::int64_t step = std::end(kSteps)[-1];
  for (const std::int64_t candidate : kSteps) {
    if (plot.width() * static_cast<double>(candidate) / static_cast<double>(length) >= 86) {
      step = candidate;
      break;
    }
  }
  const char* form = step < kDay ? (length > kDay ? "MM-dd HH:mm" : "HH:mm") : "yyyy-MM-dd";
  const std::int64_t begin = from_.time_since_epoch().count();
  const int offset = QDateTime::fromSecsSinceEpoch(begin).offsetFromUtc();
  std::int64_t tick = (begin + offset) / step * step - offset;
  QColor line = palette().color(QPalette::WindowText);
  for (; tick <= begin + length; tick += step) {
    if (tick < begin) continue;
    const double x = XOf(sys_seconds(seconds(tick)));
    line.setAlpha(36);
    painter.setPen(line);
    painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    painter.setPen(palette().color(QPalette::WindowText));
    const double left = std::clamp(x - 43, 0.0, width() - 86.0);
    painter.drawText(QRectF(left, plot.bottom() + 4, 86, 16), Qt::AlignCenter,
                     QDateTime::fromSecsSinceEpoch(tick).toString(form));
  }
}

void HistoryChart::DrawStripes(QPainter& painter, const QRectF& plot) const {
  for (const Episode& episode : episodes_) {
    const sys_seconds end =
        episode.ending == Ending::kNotYet ? clock_.SystemSeconds() : episode.end;
    const double left = std::max(plot.left(), XOf(episode.begin));
    const double right = std::min(plot.right(), XOf(end));
    painter.fillRect(QRectF(left, plot.top(), std::max(1.0, right - left), plot.height()),
                     kKinds[episode.kind].colour);
  }
}

void HistoryChart::paintEvent(QPaintEvent*) {
  const Lane lanes[] = {
      {{"电压 (V)", "Voltage (V)"}, {Gauge::kInput, Gauge::kOutput}, 0, 0, 2},
      {{"负载 (%)", "Load (%)"}, {Gauge::kLoad}, 0, 100, 1},
      {{"电池 (%)", "Charge (%)"}, {Gauge::kBattery}, 0, 100, 1},
      {{"温度 (°C)", "Temperature (°C)"}, {Gauge::kTemperature}, 0, 0, 1},
      {{"频率 (Hz)", "Frequency (Hz)"}, {Gauge::kFrequency}, 0, 0, 1},
  };
  QPainter painter(this);
  painter.setFont(look::Face(kFontSize));
  painter.fillRect(rect(), palette().color(QPalette::Base));
  const QRectF plot = Plot();
  DrawTimes(painter, plot);
  DrawStripes(painter, plot);
  constexpr double kShares = 6;
  const double share = (plot.height() - kBetween * 5) / kShares;
  double top = plot.top();
  for (const Lane& lane : lanes) {
    top += kBetween;
    DrawLane(painter, lane, QRectF(plot.left(), top, plot.width(), share * lane.height));
    top += share * lane.height;
  }
  if (samples_.empty()) {
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(plot, Qt::AlignCenter,
                     Pick(state_, Words{"此时段没有数据；第一分钟结束后开始显示。",
                                        "Nothing was measured in this time. The first values show "
                                        "after a minute."}));
  }
  if (hasFocus()) {
    painter.setPen(look::kAccent);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
}

void HistoryChart::wheelEvent(QWheelEvent* event) {
  const int turn = event->angleDelta().y() ? event->angleDelta().y() : event->angleDelta().x();
  if (turn == 0) return;
  if (event->modifiers() & Qt::ShiftModifier || event->angleDelta().y() == 0) {
    QKeyEvent key(QEvent::KeyPress, turn > 0 ? Qt::Key_Left : Qt::Key_Right, Qt::NoModifier);
    keyPressEvent(&key);
  } else {
    Zoom(turn > 0 ? 0.8 : 1.25, event->position().x());
  }
  event->accept();
}

void HistoryChart::keyPressEvent(QKeyEvent* event) {
  const seconds length = to_ - from_;
  const sys_seconds now = clock_.SystemSeconds();
  const auto walk = [&](seconds step) {
    const sys_seconds to = std::min(to_ + step, std::max(now, to_));
    live_ = to >= now;
    Move(to - length, to);
  };
  switch (event->key()) {
    case Qt::Key_Left:
      return walk(-length / 8);
    case Qt::Key_Right:
      return walk(length / 8);
    case Qt::Key_PageUp:
      return walk(-length);
    case Qt::Key_PageDown:
      return walk(length);
    case Qt::Key_End:
      return ShowLast(length);
    case Qt::Key_Plus:
    case Qt::Key_Up:
      return Zoom(0.8, Plot().center().x());
    case Qt::Key_Minus:
    case Qt::Key_Down:
      return Zoom(1.25, Plot().center().x());
    default:
      QWidget::keyPressEvent(event);
  }
}

QString HistoryChart::TextAt(double x) const {
  const sys_seconds time = TimeAt(x);
  QStringList lines{TimeOf(time)};
  // As far as a stripe of the least width reaches.
  const seconds reach = TimeAt(x + 1) - time;
  for (const Episode& episode : episodes_) {
    const bool over = episode.ending != Ending::kNotYet && episode.end + reach < time;
    if (episode.begin - reach <= time && !over) lines += NameOf(state_, episode.kind);
  }
  return lines.join('\n');
}

bool HistoryChart::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  QToolTip::showText(help->globalPos(), TextAt(help->pos().x()), this);
  return true;
}

}  // namespace orvane
