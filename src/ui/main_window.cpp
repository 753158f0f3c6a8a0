#include "ui/main_window.h"

#include <QAction>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <vector>

#include "ui/bar_face.h"
#include "ui/bottom_lines.h"
#include "ui/dial_face.h"
#include "ui/form_parts.h"
#include "ui/information_area.h"
#include "ui/look.h"
#include "ui/state_strip.h"
#include "ui/twips.h"

namespace orvane {
namespace {

constexpr Place kClientArea{0, 0, 7770, 6510};

// An entry without a caption is a separator. One that is hidden is disabled as well, for good.
struct Entry {
  const char* name;
  Caption Panel::*caption = nullptr;
  void (FrmMain::*click)() = nullptr;
  bool hidden = false;
};

struct Menu {
  const char* name;
  Caption Panel::*caption;
  std::vector<Entry> entries;
};

const std::vector<Menu>& Menus() {
  static const std::vector<Menu> menus = {
      {"mnuSystem",
       &Panel::mnuSystem,
       {{"mnuSetup", &Panel::mnuSetup, &FrmMain::mnuSetup_Click},
        {"mnuLine11"},
        {"mnuOnOrOffBeep", &Panel::mnuOnOrOffBeep, &FrmMain::mnuOnOrOffBeep_Click},
        {"mnuLine12"},
        {"mnuExit", &Panel::mnuExit, &FrmMain::mnuExit_Click}}},
      {"mnuTimer",
       &Panel::mnuTimer,
       {{"mnuWeek", &Panel::mnuWeek, &FrmMain::mnuWeek_Click},
        {"mnuSpecial", &Panel::mnuSpecial, &FrmMain::mnuSpecial_Click},
        {"lineSpeceil"},
        {"mnuTestTimer", &Panel::mnuTestTimer, &FrmMain::mnuTestTimer_Click}}},
      {"mnuDateAnalyse",
       &Panel::mnuDateAnalyse,
       {{"mnuLog", &Panel::mnuLog, &FrmMain::mnuLog_Click},
        {"mnuDateRecord", &Panel::mnuDateRecord, &FrmMain::mnuDateRecord_Click},
        {"mnuLineA1"},
        {"mnuShutRec", &Panel::mnuShutRec, &FrmMain::mnuShutRec_Click}}},
      {"mnuControl",
       &Panel::mnuControl,
       {{"mnuTest10S", &Panel::mnuTest10S, &FrmMain::mnuTest10S_Click},
        {"mnuTestToLow", &Panel::mnuTestToLow, &FrmMain::mnuTestToLow_Click},
        {"mnuCancelTest", &Panel::mnuCancelTest, &FrmMain::mnuCancelTest_Click},
        {"mnuLine21"},
        {"mnuShutDown", &Panel::mnuShutDown, &FrmMain::mnuShutDown_Click}}},
      {"mnuHelp",
       &Panel::mnuHelp,
       {{"mnuInternet", &Panel::mnuInternet, nullptr, true},
        {"mnuEmail", &Panel::mnuEmail, nullptr, true},
        {"LineAbout", nullptr, nullptr, true},
        {"mnuAbout", &Panel::mnuAbout, &FrmMain::mnuAbout_Click}}},
  };
  return menus;
}

// The words of a menu or an entry follow its caption on the panel.
template <class Item>
void FollowCaption(Caption& caption, Item* item, void (Item::*write)(const QString&)) {
  caption.Observer = [item = QPointer(item), write, &caption] {
    if (item) (item->*write)(QString::fromStdString(caption.Text()));
  };
  caption.Observer();
}

// A tool tip of a face, and whether it is the one on top: the board covers the picture.
void FollowFaces(Panel& panel, QWidget* board, QWidget* picture) {
  const auto refresh = [board = QPointer(board), picture = QPointer(picture), &panel] {
    if (!board || !picture) return;
    board->setToolTip(QString::fromStdString(panel.picAPC.ToolTipText()));
    picture->setToolTip(QString::fromStdString(panel.Image2.ToolTipText()));
    board->setVisible(panel.picAPC.Visible());
    picture->setVisible(panel.Image2.Visible() && !panel.picAPC.Visible());
  };
  panel.picAPC.Observer = refresh;
  panel.Image2.Observer = refresh;
  refresh();
}

}  // namespace

MainWindow::MainWindow(const State& state, Panel& panel, FrmMain& form)
    : QMainWindow(nullptr, kFormFlags | Qt::WindowMinimizeButtonHint), panel_(panel), form_(form) {
  setObjectName("frmMain");
  setWindowTitle("Orvane");
  AddMenus();
  AddAreas(state);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void MainWindow::AddMenus() {
  menuBar()->setNativeMenuBar(false);
  for (const Menu& row : Menus()) {
    QMenu* menu = menuBar()->addMenu(QString());
    menu->setObjectName(row.name);
    FollowCaption(panel_.*row.caption, menu, &QMenu::setTitle);
    for (const Entry& entry : row.entries) {
      QAction* action = entry.caption ? menu->addAction(QString()) : menu->addSeparator();
      action->setObjectName(entry.name);
      if (entry.caption) FollowCaption(panel_.*entry.caption, action, &QAction::setText);
      if (entry.click) {
        // The form stands in the closure by itself: through `this` and a member pointer, GCC 12's
        // check of object types reads it before it has fetched it.
        connect(action, &QAction::triggered, this,
                [&form = form_, click = entry.click] { (form.*click)(); });
      }
      if (entry.hidden) {
        action->setVisible(false);
        action->setEnabled(false);
      }
    }
  }
}

void MainWindow::AddAreas(const State& state) {
  auto* client = new QWidget(this);
  client->setFixedSize(Pixels(kClientArea).size());
  client->setAutoFillBackground(true);
  new StateStrip(panel_, client);
  auto* picture = new DialFace(
      state, panel_, [this] { form_.Image2_DblClick(); }, client);
  auto* board = new BarFace(
      state, panel_, [this] { form_.picAPC_DblClick(); }, client);
  new InformationArea(panel_, client);
  new WarningLine(panel_, client);
  new StatusLine(panel_, client);
  FollowFaces(panel_, board, picture);
  setCentralWidget(client);
}

}  // namespace orvane
