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

#include "ui/episode_looks.h"
#include "ui/look.h"
#include "ui/words.h"

namespace orvane {

using std::chrono::seconds;

// One of the value axes.
struct HistoryChart::Lane {
  Words name;
  Gauge gauge;
  std::optional<Gauge> second;
  // Both stand on the axis whatever the values are.
  std::optional<double> low, high;
  double least;   // between the ends
  double height;  // by comparison
};

namespace {

constexpr int kLeft = 54;
constexpr int kRight = 16;
constexpr int kTop = 4;
constexpr int kBottom = 24;
constexpr int kBetween = 20;  // room for a lane's name
constexpr int kFontSize = 12;
constexpr double kGridStrength = 0.16;  // of the text's

constexpr seconds kShortest{600};
constexpr seconds kLongest{10LL * 366 * 86400};
// Of a time further back there are hours only.
constexpr std::chrono::minutes kMinutesBack{kKeptMinutes};
constexpr double kZoomStep = 0.8;
constexpr int kWheelStep = QWheelEvent::DefaultDeltasPerStep;

constexpr PerGauge<Words> kNames = {{{{"输入", "Input"},
                                      {"输出", "Output"},
                                      {"负载", "Load"},
                                      {"电量", "Charge"},
                                      {"频率", "Frequency"},
                                      {"温度", "Temperature"}}}};
constexpr PerGauge<const char*> kUnits = {{{"V", "V", "%", "%", "Hz", "°C"}}};

// Not transparent: that is drawn at a tenth of the speed.
QColor GridColour(const QPalette& palette) {
  const QColor text = palette.color(QPalette::Text);
  const QColor ground = palette.color(QPalette::Base);
  const auto mixed = [](float a, float b) {
    return static_cast<float>(a * kGridStrength + b * (1 - kGridStrength));
  };
  return QColor::fromRgbF(mixed(text.redF(), ground.redF()), mixed(text.greenF(), ground.greenF()),
                          mixed(text.blueF(), ground.blueF()));
}

QString Range(const Spread& spread, std::int64_t readings) {
  const auto text = [](double hundredths) { return QString::number(hundredths / 100, 'f', 1); };
  return QString("%1 (%2 – %3)")
      .arg(text(static_cast<double>(spread.sum) / static_cast<double>(readings)),
           text(static_cast<double>(spread.least)), text(static_cast<double>(spread.most)));
}

}  // namespace

QString TimeOf(sys_seconds time) {
  return QDateTime::fromSecsSinceEpoch(time.time_since_epoch().count())
      .toString("yyyy-MM-dd HH:mm");
}

HistoryChart::HistoryChart(const State& state, HistorySource& source, const Clock& clock,
                           QWidget* parent)
    : QWidget(parent), state_(state), source_(source), clock_(clock) {
  setObjectName("chart");
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(520, 380);
  setAccessibleName(Pick(state, Words{"历史曲线", "Curves of the history"}));
}

void HistoryChart::ShowLast(seconds length) {
  Show(clock_.SystemSeconds(), length);
}

void HistoryChart::ShowAround(sys_seconds begin, sys_seconds end) {
  const seconds margin = std::max<seconds>(seconds(1800), (end - begin) / 2);
  Show(end + margin, end - begin + 2 * margin);
}

void HistoryChart::Show(sys_seconds to, seconds length) {
  const sys_seconds now = clock_.SystemSeconds();
  live_ = to >= now;
  to_ = std::min(to, now);
  from_ = to_ - std::clamp(length, kShortest, kLongest);
  samples_.clear();
  Read();
}

// A clock that was set back leaves the view where it is.
void HistoryChart::Follow() {
  const sys_seconds now = clock_.SystemSeconds();
  if (live_ && now > to_) {
    from_ += now - to_;
    to_ = now;
  }
  Read();
}

// From the last sample on: it may have grown.
void HistoryChart::Read() {
  const Step step = from_ >= clock_.SystemSeconds() - kMinutesBack ? Step::kMinute : Step::kHour;
  if (step != step_) samples_.clear();
  step_ = step;
  const seconds width = SampleWidth();
  const sys_seconds begin = samples_.empty() ? from_ - width : samples_.back().begin;
  if (!samples_.empty()) samples_.pop_back();
  std::vector<Sample> more = source_.Samples(step_, begin, to_ + width);
  const auto first = std::find_if(samples_.begin(), samples_.end(), [&](const Sample& sample) {
    return sample.begin >= from_ - width;
  });
  samples_.erase(samples_.begin(), first);
  if (samples_.empty()) {
    samples_ = std::move(more);
  } else {
    samples_.insert(samples_.end(), more.begin(), more.end());
  }
  episodes_ = source_.Episodes(from_, to_);
  columns_for_ = 0;
  Q_EMIT Moved();
  update();
}

seconds HistoryChart::SampleWidth() const {
  return step_ == Step::kMinute ? seconds(60) : seconds(3600);
}

// Round the place of the pointer; while the present is in view, it stays there.
void HistoryChart::Zoom(double factor, double at) {
  const auto scaled = [&](seconds part) {
    return seconds(std::llround(static_cast<double>(part.count()) * factor));
  };
  const seconds length = scaled(to_ - from_);
  if (length < kShortest || length > kLongest) return;
  const sys_seconds centre = Axis().TimeAt(at);
  Show(live_ ? clock_.SystemSeconds() : centre + scaled(to_ - centre), length);
}

QRectF HistoryChart::Plot() const {
  return QRectF(kLeft, kTop, std::max(1, width() - kLeft - kRight),
                std::max(1, height() - kTop - kBottom));
}

TimeAxis HistoryChart::Axis() const {
  return {from_, to_, Plot().left(), Plot().width()};
}

QImage HistoryChart::Picture() {
  const double ratio = devicePixelRatioF();
  QImage picture(size() * ratio, QImage::Format_RGB32);
  picture.setDevicePixelRatio(ratio);
  QPainter painter(&picture);
  Draw(painter);
  return picture;
}

void HistoryChart::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  Draw(painter);
  if (!hasFocus()) return;
  painter.setPen(palette().color(QPalette::Highlight));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void HistoryChart::Draw(QPainter& painter) {
  static constexpr Lane kLanes[] = {
      {{"电压 (V)", "Voltage (V)"}, Gauge::kInput, Gauge::kOutput, {}, {}, 8, 2},
      {{"负载 (%)", "Load (%)"}, Gauge::kLoad, {}, 0, 100, 0, 1},
      {{"电量 (%)", "Charge (%)"}, Gauge::kBattery, {}, 0, 100, 0, 1},
      {{"温度 (°C)", "Temperature (°C)"}, Gauge::kTemperature, {}, {}, {}, 4, 1},
      {{"频率 (Hz)", "Frequency (Hz)"}, Gauge::kFrequency, {}, {}, {}, 1, 1},
  };
  constexpr double kShares = 6;
  painter.setFont(look::Face(kFontSize));
  painter.fillRect(rect(), palette().color(QPalette::Base));
  const QRectF plot = Plot();
  DrawStripes(painter);
  DrawTimes(painter);
  const double share =
      (plot.height() - kBetween * static_cast<double>(std::size(kLanes))) / kShares;
  const double ratio = painter.device()->devicePixelRatioF();
  if (columns_for_ != plot.width() * ratio) {
    columns_for_ = plot.width() * ratio;
    columns_ = ColumnsOf(samples_, SampleWidth(), Axis(), ratio);
  }
  double top = plot.top();
  for (const Lane& lane : kLanes) {
    top += kBetween;
    DrawLane(painter, lane, QRectF(plot.left(), top, plot.width(), share * lane.height));
    top += share * lane.height;
  }
  if (!samples_.empty()) return;
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(plot, Qt::AlignCenter | Qt::TextWordWrap,
                   Pick(state_, Words{"此时段没有数据；第一分钟结束后开始显示。",
                                      "Nothing was measured in this time. The first values show "
                                      "after a minute."}));
}

void HistoryChart::DrawTimes(QPainter& painter) const {
  constexpr double kHalf = 40;
  const QRectF plot = Plot();
  const TimeAxis axis = Axis();
  for (const TimeTick& tick : TicksOf(axis)) {
    const double x = axis.XOf(tick.time);
    painter.setPen(GridColour(palette()));
    painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    painter.setPen(palette().color(QPalette::Text));
    const double room = std::min(kHalf, std::min(x, width() - x));
    const double half = painter.fontMetrics().horizontalAdvance(tick.label) / 2.0;
    if (room < half) continue;
    painter.drawText(QRectF(x - kHalf, plot.bottom() + 4, 2 * kHalf, 16), Qt::AlignCenter,
                     tick.label);
  }
}

// A strip of them, drawn again and again from the top down: hundreds cost no more than one.
void HistoryChart::DrawStripes(QPainter& painter) const {
  if (episodes_.empty()) return;
  constexpr int kRows = 32;
  const QRectF plot = Plot();
  const double ratio = painter.device()->devicePixelRatioF();
  TimeAxis axis = Axis();
  axis.left = 0;
  axis.width = std::round(plot.width() * ratio);
  QImage strip(static_cast<int>(axis.width), kRows, QImage::Format_RGB32);
  strip.fill(palette().color(QPalette::Base));
  QPainter stripes(&strip);
  for (const Episode& episode : episodes_) {
    const sys_seconds end =
        episode.ending == Ending::kNotYet ? clock_.SystemSeconds() : episode.end;
    const double left = std::max(0.0, std::floor(axis.XOf(episode.begin)));
    const double right = std::min(axis.width, axis.XOf(end));
    // A short one is still to be seen.
    stripes.fillRect(QRectF(left, 0, std::max(1.0, right - left), kRows), ColourOf(episode.kind));
  }
  stripes.end();
  strip.setDevicePixelRatio(ratio);
  painter.setClipRect(plot);
  for (double y = plot.top(); y < plot.bottom(); y += kRows / ratio) {
    painter.drawImage(QPointF(plot.left(), y), strip);
  }
  painter.setClipping(false);
}

void HistoryChart::DrawLaneName(QPainter& painter, const Lane& lane, QPointF at) const {
  const QFontMetrics metrics = painter.fontMetrics();
  const auto write = [&](const QString& text) {
    painter.drawText(at, text);
    at.rx() += metrics.horizontalAdvance(text) + 12;
  };
  painter.setPen(palette().color(QPalette::Text));
  write(Pick(state_, lane.name));
  if (!lane.second) return;
  for (const Gauge gauge : {lane.gauge, *lane.second}) {
    painter.fillRect(QRectF(at.x(), at.y() - 6, 12, 3), CurveColour(gauge));
    at.rx() += 16;
    write(Pick(state_, kNames[gauge]));
  }
}

void HistoryChart::DrawLane(QPainter& painter, const Lane& lane, const QRectF& place) const {
  std::vector<Gauge> gauges{lane.gauge};
  if (lane.second) gauges.push_back(*lane.second);
  std::optional<double> low = lane.low;
  std::optional<double> high = lane.high;
  for (const Gauge gauge : gauges) {
    for (const Column& column : columns_[gauge]) {
      if (column.readings <= 0) continue;
      low = std::min(low.value_or(column.least / 100), column.least / 100);
      high = std::max(high.value_or(column.most / 100), column.most / 100);
    }
  }
  const ValueScale scale = ScaleOf(low.value_or(0), high.value_or(0), lane.least);
  DrawLaneName(painter, lane, place.topLeft() - QPointF(0, 5));
  const double steps = std::round((scale.high - scale.low) / scale.step);
  // Where labels would touch, every second one.
  const int stride = place.height() / steps < 14 ? 2 : 1;
  for (int i = 0; i <= static_cast<int>(steps); i += stride) {
    const double y = place.bottom() - place.height() * i / steps;
    painter.setPen(GridColour(palette()));
    painter.drawLine(QPointF(place.left(), y), QPointF(place.right(), y));
    if (!low) continue;
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRectF(0, y - 8, kLeft - 6, 16), Qt::AlignRight | Qt::AlignVCenter,
                     scale.Label(scale.low + scale.step * i));
  }
  painter.setClipRect(place.adjusted(0, -1, 1, 1));
  for (const Gauge gauge : gauges) {
    DrawCurve(painter, columns_[gauge], place, scale, CurveColour(gauge),
              painter.device()->devicePixelRatioF());
  }
  painter.setClipping(false);
}

void HistoryChart::wheelEvent(QWheelEvent* event) {
  const QPoint turn = event->angleDelta();
  const bool sideways = event->modifiers() & Qt::ShiftModifier || turn.y() == 0;
  if (sideways) {
    const int by = turn.x() ? turn.x() : turn.y();
    Show(to_ - (to_ - from_) * by / (8 * kWheelStep), to_ - from_);
  } else {
    const double steps = static_cast<double>(turn.y()) / kWheelStep;
    Zoom(std::pow(kZoomStep, steps), event->position().x());
  }
  event->accept();
}

void HistoryChart::keyPressEvent(QKeyEvent* event) {
  const seconds length = to_ - from_;
  const double centre = Plot().center().x();
  switch (event->key()) {
    case Qt::Key_Left:
      return Show(to_ - length / 8, length);
    case Qt::Key_Right:
      return Show(to_ + length / 8, length);
    case Qt::Key_PageUp:
      return Show(to_ - length, length);
    case Qt::Key_PageDown:
      return Show(to_ + length, length);
    case Qt::Key_Home:
      if (const auto first = source_.First()) Show(*first + length, length);
      return;
    case Qt::Key_End:
      return ShowLast(length);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
    case Qt::Key_Up:
      return Zoom(kZoomStep, centre);
    case Qt::Key_Minus:
    case Qt::Key_Down:
      return Zoom(1 / kZoomStep, centre);
    default:
      QWidget::keyPressEvent(event);
  }
}

QString HistoryChart::TextAt(double x) const {
  const sys_seconds time = Axis().TimeAt(x);
  // As far as a stripe of the least width reaches.
  const seconds reach = Axis().TimeAt(x + 1) - time;
  QStringList lines{TimeOf(time)};
  for (const Episode& episode : episodes_) {
    const bool over = episode.ending != Ending::kNotYet && episode.end + reach < time;
    if (episode.begin - reach <= time && !over) lines += NameOf(state_, episode.kind);
  }
  const auto after = std::find_if(samples_.begin(), samples_.end(),
                                  [&](const Sample& sample) { return sample.begin > time; });
  if (after == samples_.begin() || time - std::prev(after)->begin >= SampleWidth() + reach) {
    return lines.join('\n');
  }
  const Sample& sample = *std::prev(after);
  for (const Gauge gauge : kGauges) {
    lines += QString("%1 %2 %3")
                 .arg(Pick(state_, kNames[gauge]), Range(sample.values[gauge], sample.readings),
                      kUnits[gauge]);
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
