#include "ui/history_window.h"

#include <QDateTime>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSaveFile>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "history/outages.h"
#include "ui/form_parts.h"
#include "ui/history_chart.h"
#include "ui/twips.h"
#include "ui/words.h"

namespace orvane {
namespace {

using std::chrono::seconds;

constexpr seconds kDay{86400};
constexpr int kFollowMs = 10000;
// The recorder may write a moment after what it writes of.
constexpr seconds kOverlap{60};

// In pixels of the design.
constexpr QSize kSize{880, 660};
constexpr double kColumn = 140;

constexpr Words kTitle = {"历史曲线", "History"};

struct SpanButton {
  const char* name;
  Words words;
  seconds length;
};
constexpr SpanButton kSpans[] = {{"hour", {"1小时", "1 hour"}, seconds(3600)},
                                 {"day", {"24小时", "24 hours"}, kDay},
                                 {"week", {"7天", "7 days"}, 7 * kDay},
                                 {"month", {"30天", "30 days"}, 30 * kDay},
                                 {"year", {"1年", "1 year"}, 366 * kDay}};

constexpr Words kEndings[] = {{"仍在继续", "still lasts"},
                              {"市电恢复", "mains back"},
                              {"未知", "not seen"},
                              {"已关机", "way down"}};

// Of one that lasts, or has been set back behind its begin, as far as it has come.
sys_seconds EndOf(const Episode& episode, sys_seconds now) {
  return std::max(episode.begin, episode.ending == Ending::kNotYet ? now : episode.end);
}

QString LengthText(seconds length) {
  const auto total = length.count();
  return QString("%1:%2:%3")
      .arg(total / 3600)
      .arg(total / 60 % 60, 2, 10, QChar(u'0'))
      .arg(total % 60, 2, 10, QChar(u'0'));
}

QString Percent(const std::optional<std::int64_t>& hundredths) {
  return hundredths ? QString::number(static_cast<double>(*hundredths) / 100, 'f', 0) + " %" : "–";
}

QString IsoTime(sys_seconds time) {
  const QDateTime local = QDateTime::fromSecsSinceEpoch(time.time_since_epoch().count());
  return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODate);
}

}  // namespace

HistoryWindow::HistoryWindow(const State& state, const Panel& panel, HistorySource& source,
                             const Clock& clock, Dialogs& dialogs)
    : FormDialog(kFormFlags | Qt::WindowMaximizeButtonHint),
      state_(state),
      panel_(panel),
      source_(source),
      clock_(clock),
      dialogs_(dialogs),
      chart_(new HistoryChart(state, source, clock, this)),
      outages_(new QTreeWidget(this)),
      sums_(new QLabel(this)),
      endurance_(new QLabel(this)) {
  setObjectName("history");
  setWindowTitle(Pick(state, kTitle));
  auto* column = new QVBoxLayout(this);
  auto* row = new QHBoxLayout;
  column->addLayout(row);
  AddSpans(row);
  column->addWidget(chart_, 3);
  sums_->setObjectName("sums");
  sums_->setWordWrap(true);
  endurance_->setObjectName("endurance");
  column->addWidget(sums_);
  column->addWidget(endurance_);
  outages_->setObjectName("outages");
  outages_->setAccessibleName(Pick(state, Words{"市电中断", "Mains failures"}));
  outages_->setRootIsDecorated(false);
  outages_->setUniformRowHeights(true);
  QStringList heads;
  for (const Words& head :
       {Words{"开始", "Begin"}, Words{"时长", "Length"}, Words{"最低电量", "Lowest charge"},
        Words{"结束方式", "How it ended"}}) {
    heads += Pick(state, head);
  }
  outages_->setHeaderLabels(heads);
  for (int head = 0; head + 1 < heads.size(); ++head) {
    outages_->setColumnWidth(head, qRound(kColumn * form_scale));
  }
  column->addWidget(outages_, 1);
  const auto go_there = [this](QTreeWidgetItem* item) {
    const Episode& outage = listed_[static_cast<std::size_t>(outages_->indexOfTopLevelItem(item))];
    chart_->ShowAround(outage.begin, EndOf(outage, clock_.SystemSeconds()));
  };
  connect(outages_, &QTreeWidget::itemClicked, this, go_there);
  connect(outages_, &QTreeWidget::itemActivated, this, go_there);
  connect(chart_, &HistoryChart::Moved, this, &HistoryWindow::ShowSums);
  auto* timer = new QTimer(this);
  timer->setObjectName("follow");
  connect(timer, &QTimer::timeout, this, &HistoryWindow::Follow);
  timer->start(kFollowMs);
  resize((kSize * form_scale).boundedTo(screen()->availableSize()));
  ReadOutages();
  chart_->ShowLast(kDay);
  chart_->setFocus();
}

void HistoryWindow::AddSpans(QBoxLayout* row) {
  const auto add = [&](const char* name, const Words& words, auto act) {
    auto* button = new QPushButton(Pick(state_, words), this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, act);
    row->addWidget(button);
    return button;
  };
  for (const SpanButton& span : kSpans) {
    QPushButton* button = add(span.name, span.words, [this, length = span.length] {
      chart_->ShowLast(length);
      MarkSpan();
    });
    button->setCheckable(true);
    spans_.push_back(button);
  }
  row->addStretch();
  add("save_as", {"另存为...", "Save as..."}, [this] { SaveAs(); });
}

// The button of the length that is shown stands in the desktop's accent.
void HistoryWindow::MarkSpan() {
  for (std::size_t i = 0; i < spans_.size(); ++i) {
    const bool shown = chart_->To() - chart_->From() == kSpans[i].length;
    spans_[i]->setChecked(shown);
    QPalette palette = this->palette();
    if (shown) {
      palette.setColor(QPalette::Button, palette.color(QPalette::Highlight));
      palette.setColor(QPalette::ButtonText, palette.color(QPalette::HighlightedText));
    }
    spans_[i]->setPalette(palette);
  }
}

void HistoryWindow::Follow() {
  if (isMinimized()) return;
  ReadOutages();
  chart_->Follow();
}

// What has begun or ended since the last look, and what lasts. After a clock that was set back,
// all of it.
void HistoryWindow::ReadOutages() {
  const sys_seconds now = clock_.SystemSeconds();
  if (!read_ || now < *read_) {
    read_ = sys_seconds{} + kOverlap;
    listed_.clear();
    outages_->clear();
  }
  const std::int64_t last_id = listed_.empty() ? 0 : listed_.front().id;
  std::vector<Episode> added;
  for (const Episode& episode : source_.Episodes(*read_ - kOverlap, sys_seconds::max())) {
    if (episode.kind != EpisodeKind::kMainsFailure) continue;
    if (episode.id > last_id) {
      added.push_back(episode);
      continue;
    }
    const auto listed = std::find_if(listed_.begin(), listed_.end(),
                                     [&](const Episode& one) { return one.id == episode.id; });
    if (listed == listed_.end()) continue;
    *listed = episode;
    const QStringList texts = Texts(episode);
    QTreeWidgetItem* item = outages_->topLevelItem(static_cast<int>(listed - listed_.begin()));
    for (int i = 0; i < texts.size(); ++i) item->setText(i, texts[i]);
  }
  std::sort(added.begin(), added.end(),
            [](const Episode& a, const Episode& b) { return a.id > b.id; });
  QList<QTreeWidgetItem*> items;
  for (const Episode& episode : added) items.append(new QTreeWidgetItem(Texts(episode)));
  listed_.insert(listed_.begin(), added.begin(), added.end());
  outages_->insertTopLevelItems(0, items);
  read_ = now;
}

QStringList HistoryWindow::Texts(const Episode& outage) const {
  const seconds length = EndOf(outage, clock_.SystemSeconds()) - outage.begin;
  return {TimeOf(outage.begin), LengthText(length), Percent(outage.lowest_battery),
          Pick(state_, kEndings[static_cast<std::size_t>(outage.ending)])};
}

void HistoryWindow::ShowSums() {
  MarkSpan();
  const sys_seconds now = clock_.SystemSeconds();
  const OutageSums sums = SumsOf(chart_->Episodes(), chart_->From(), chart_->To(), now);
  const bool known = !chart_->Samples().empty() || !chart_->Episodes().empty();
  sums_->setText(Pick(state_, Words{"%1 至 %2：中断 %3 次，共 %4，最长 %5，可用率 %6",
                                    "%1 to %2: outages %3, total %4, longest %5, availability "
                                    "%6"})
                     .arg(TimeOf(chart_->From()), TimeOf(chart_->To()))
                     .arg(sums.number)
                     .arg(LengthText(sums.total), LengthText(sums.longest))
                     .arg(known ? QString::number(sums.availability, 'f', 3) + " %" : "–"));
  const double load =
      QString::fromStdString(panel_.read_outs[Gauge::kLoad].Caption()).toDouble() * 100;
  const auto endurance = EnduranceAt(listed_, std::llround(load));
  endurance_->setVisible(endurance.has_value());
  if (!endurance) return;
  endurance_->setText(
      Pick(state_, Words{"按此负载，电池约可维持 %1 分钟（%2 至 %3，依据 %4 次放电）",
                         "The battery lasts about %1 min at this load (%2 to %3, "
                         "from %4 discharges)"})
          .arg(std::lround(endurance->minutes))
          .arg(std::lround(endurance->least))
          .arg(std::lround(endurance->most))
          .arg(endurance->discharges));
}

QString HistoryWindow::Csv() const {
  QString text = "begin,readings";
  for (const char* gauge : {"input", "output", "load", "battery", "frequency", "temperature"}) {
    for (const char* part : {"min", "mean", "max"}) text += QString(",%1_%2").arg(gauge, part);
  }
  text += "\r\n";
  for (const Sample& sample : chart_->Samples()) {
    if (sample.begin < chart_->From() || sample.begin >= chart_->To()) continue;
    text += IsoTime(sample.begin) + ',' + QString::number(sample.readings);
    for (const Spread& spread : sample.values) {
      const auto readings = static_cast<double>(sample.readings);
      for (const double value :
           {static_cast<double>(spread.least), static_cast<double>(spread.sum) / readings,
            static_cast<double>(spread.most)}) {
        text += ',' + QString::number(value / 100, 'f', 2);
      }
    }
    text += "\r\n";
  }
  return text;
}

bool HistoryWindow::Save(const QString& path) const {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  if (path.endsWith(".png", Qt::CaseInsensitive)) {
    return chart_->Picture().save(&file, "PNG") && file.commit();
  }
  const QByteArray bytes = Csv().toUtf8();
  return file.write(bytes) == bytes.size() && file.commit();
}

void HistoryWindow::SaveAs() {
  QFileDialog dialog(this, Pick(state_, Words{"另存为", "Save as"}));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilters({"CSV (*.csv)", "PNG (*.png)"});
  dialog.setDefaultSuffix("csv");
  connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
    dialog.setDefaultSuffix(filter.startsWith("PNG") ? "png" : "csv");
  });
  // The desktop's own dialog speaks the desktop's language, Qt's dialog the program's.
  for (const auto& [part, words] :
       {std::pair{QFileDialog::LookIn, Words{"目录：", "Look in:"}},
        std::pair{QFileDialog::FileName, Words{"文件名：", "File name:"}},
        std::pair{QFileDialog::FileType, Words{"类型：", "Type:"}},
        std::pair{QFileDialog::Accept, Words{"保存", "Save"}},
        std::pair{QFileDialog::Reject, Words{"取消", "Cancel"}}}) {
    dialog.setLabelText(part, Pick(state_, words));
  }
  dialog.selectFile("history");
  if (dialog.exec() != QDialog::Accepted || Save(dialog.selectedFiles().value(0))) return;
  const auto bytes = [&](const Words& words) { return Pick(state_, words).toStdString(); };
  dialogs_.Exclamation(bytes({"文件无法写入。", "The file could not be written."}), bytes(kTitle));
}

}  // namespace orvane
