#include "ui/main_window.h"

#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QVBoxLayout>

#include "ui/words.h"

namespace orvane {
namespace {

constexpr int kClientWidth = 7770;
constexpr int kClientHeight = 6510;

QString Text(const std::string& text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QColor Rgb(Colour colour) {
  return QColor(static_cast<int>(colour & 255), static_cast<int>(colour >> 8 & 255),
                static_cast<int>(colour >> 16 & 255));
}

void Show(const Label& label, QLabel& shown) {
  shown.setText(Text(label.Caption()));
  QPalette palette = shown.palette();
  palette.setColor(QPalette::WindowText, Rgb(label.ForeColor()));
  shown.setPalette(palette);
  shown.setVisible(label.Visible());
}

}  // namespace

MainWindow::MainWindow(const State&, Panel& panel, FrmMain& frm_main) : panel_(panel) {
  setWindowTitle("Orvane");
  setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                 Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                 Qt::WindowCloseButtonHint);
  auto* client = new QWidget;
  client->setFixedSize(Px(kClientWidth), Px(kClientHeight));
  QFont font = client->font();
  font.setPixelSize(12);
  client->setFont(font);
  setCentralWidget(client);
  BuildMenus(panel, frm_main);
  BuildStateStrip(panel);
  BuildValues(panel);
  BuildInformation(panel);
  BuildLines(panel);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
}

MainWindow::~MainWindow() {
  const auto forget = [](auto&... controls) { ((controls.Observer = nullptr), ...); };
  Panel& p = panel_;
  forget(p.Label3, p.lblAc, p.Label4, p.lblBatt, p.Label5, p.lblBattIn, p.Label6, p.lblUps,
         p.Label8, p.lblConnect, p.Frame1, p.lblAlert[1], p.lblAlert[2], p.Label13, p.Label14,
         p.Label15, p.mnuSystem, p.mnuSetup, p.mnuOnOrOffBeep, p.mnuExit, p.mnuTimer, p.mnuWeek,
         p.mnuSpecial, p.mnuTestTimer, p.mnuDateAnalyse, p.mnuLog, p.mnuDateRecord, p.mnuShutRec,
         p.mnuControl, p.mnuTest10S, p.mnuTestToLow, p.mnuCancelTest, p.mnuShutDown, p.mnuHelp,
         p.mnuInternet, p.mnuEmail, p.mnuAbout);
  for (std::size_t i = 0; i < kGauges; ++i) {
    forget(p.Label1[i], p.Label2[i], p.Label7[i], p.lblApcCap[i]);
  }
}

QMenu* MainWindow::AddMenu(Caption& caption) {
  QMenu* menu = menuBar()->addMenu(Text(caption.Text()));
  caption.Observer = [&caption, menu] { menu->setTitle(Text(caption.Text())); };
  return menu;
}

void MainWindow::AddEntry(QMenu& menu, Caption& caption, std::function<void()> click) {
  QAction* action = menu.addAction(Text(caption.Text()));
  // An entry without an action is not for the user's eyes either.
  action->setVisible(static_cast<bool>(click));
  action->setEnabled(static_cast<bool>(click));
  if (click) connect(action, &QAction::triggered, this, std::move(click));
  caption.Observer = [&caption, action] { action->setText(Text(caption.Text())); };
}

void MainWindow::BuildMenus(Panel& panel, FrmMain& form) {
  menuBar()->setNativeMenuBar(false);
  QMenu* menu = AddMenu(panel.mnuSystem);
  AddEntry(*menu, panel.mnuSetup, [&form] { form.mnuSetup_Click(); });
  menu->addSeparator();
  AddEntry(*menu, panel.mnuOnOrOffBeep, [&form] { form.mnuOnOrOffBeep_Click(); });
  menu->addSeparator();
  AddEntry(*menu, panel.mnuExit, [&form] { form.mnuExit_Click(); });

  menu = AddMenu(panel.mnuTimer);
  AddEntry(*menu, panel.mnuWeek, [&form] { form.mnuWeek_Click(); });
  AddEntry(*menu, panel.mnuSpecial, [&form] { form.mnuSpecial_Click(); });
  menu->addSeparator();
  AddEntry(*menu, panel.mnuTestTimer, [&form] { form.mnuTestTimer_Click(); });

  menu = AddMenu(panel.mnuDateAnalyse);
  AddEntry(*menu, panel.mnuLog, [&form] { form.mnuLog_Click(); });
  AddEntry(*menu, panel.mnuDateRecord, [&form] { form.mnuDateRecord_Click(); });
  menu->addSeparator();
  AddEntry(*menu, panel.mnuShutRec, [&form] { form.mnuShutRec_Click(); });

  menu = AddMenu(panel.mnuControl);
  AddEntry(*menu, panel.mnuTest10S, [&form] { form.mnuTest10S_Click(); });
  AddEntry(*menu, panel.mnuTestToLow, [&form] { form.mnuTestToLow_Click(); });
  AddEntry(*menu, panel.mnuCancelTest, [&form] { form.mnuCancelTest_Click(); });
  menu->addSeparator();
  AddEntry(*menu, panel.mnuShutDown, [&form] { form.mnuShutDown_Click(); });

  menu = AddMenu(panel.mnuHelp);
  AddEntry(*menu, panel.mnuInternet, nullptr);
  AddEntry(*menu, panel.mnuEmail, nullptr);
  menu->addSeparator()->setVisible(false);
  AddEntry(*menu, panel.mnuAbout, [&form] { form.mnuAbout_Click(); });
}

QLabel* MainWindow::AddLabel(Label& label, const Place& place) {
  auto* shown = new QLabel(centralWidget());
  shown->setTextFormat(Qt::PlainText);
  shown->setGeometry(Px(place.left), Px(place.top), Px(place.width), Px(place.height));
  label.Observer = [&label, shown] { Show(label, *shown); };
  label.Observer();
  return shown;
}

void MainWindow::BuildStateStrip(Panel& panel) {
  constexpr int kWidth = 1550;
  int left = 60;
  for (const auto& [caption, state] :
       {std::pair{&panel.Label3, &panel.lblAc}, std::pair{&panel.Label4, &panel.lblBatt},
        std::pair{&panel.Label5, &panel.lblBattIn}, std::pair{&panel.Label6, &panel.lblUps},
        std::pair{&panel.Label8, &panel.lblConnect}}) {
    AddLabel(*caption, {left, 60, kWidth / 2, 660})
        ->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    AddLabel(*state, {left + kWidth / 2 + 45, 60, kWidth / 2 - 45, 660});
    left += kWidth;
  }
}

void MainWindow::BuildValues(Panel& panel) {
  // The captions of the bars have temperature above frequency, the values the other way round.
  constexpr std::size_t kCaptionOf[kGauges] = {0, 1, 2, 3, 5, 4};
  for (std::size_t i = 0; i < kGauges; ++i) {
    const int top = 1000 + static_cast<int>(i) * 550;
    AddLabel(panel.lblApcCap[kCaptionOf[i]], {1500, top, 2000, 400});
    auto* value = AddLabel(panel.Label2[i], {3600, top, 1000, 400});
    value->setAlignment(Qt::AlignCenter);
    value->setStyleSheet("background: #0000c0");
  }
}

void MainWindow::BuildInformation(Panel& panel) {
  constexpr Place kFrame{0, 4485, 7755, 1185};
  auto* frame = new QGroupBox(centralWidget());
  frame->setGeometry(Px(kFrame.left), Px(kFrame.top), Px(kFrame.width), Px(kFrame.height));
  Caption& title = panel.Frame1;
  title.Observer = [&title, frame] { frame->setTitle(Text(title.Text())); };
  // Model, version, batteries; below them rated voltage, rated power, battery voltage.
  constexpr std::size_t kOrder[] = {1, 2, 0, 3, 4, 5};
  for (int i = 0; i < 6; ++i) {
    const std::size_t field = kOrder[i];
    const int left = 150 + i % 3 * 2520;
    const int top = kFrame.top + 330 + i / 3 * 400;
    AddLabel(panel.Label1[field], {left, top, 1260, 330});
    AddLabel(panel.Label7[field], {left + 1290, top, 1200, 330});
  }
}

void MainWindow::BuildLines(Panel& panel) {
  AddLabel(panel.lblAlert[1], {60, 5760, 4200, 330});
  AddLabel(panel.lblAlert[2], {4260, 5760, 3480, 330});
  AddLabel(panel.Label13, {60, 6135, 3300, 345});
  AddLabel(panel.Label14, {3420, 6135, 2400, 345});
  AddLabel(panel.Label15, {5880, 6135, 1860, 345});
}

}  // namespace orvane
