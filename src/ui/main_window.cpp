#include "ui/main_window.h"

#include <QAction>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QShortcut>
#include <vector>

#include "ui/bar_face.h"
#include "ui/bottom_lines.h"
#include "ui/dial_face.h"
#include "ui/form_parts.h"
#include "ui/information_area.h"
#include "ui/look.h"
#include "ui/shield_button.h"
#include "ui/state_strip.h"
#include "ui/twips.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr Place kClientArea{0, 0, 7770, 6510};

// An entry without a caption is a separator.
struct Entry {
  const char* name = nullptr;
  Caption Panel::*caption = nullptr;
  void (Engine::*click)() = nullptr;
  bool steers = false;  // orders something, which not everybody may
};

struct Menu {
  const char* name;
  Caption Panel::*caption;
  std::vector<Entry> entries;
};

const std::vector<Menu>& Menus() {
  static const std::vector<Menu> menus = {
      {"system_menu",
       &Panel::system_menu,
       {{"settings", &Panel::settings_entry, &Engine::OpenSettings},
        {},
        {"beeper", &Panel::beeper_entry, &Engine::ToggleBeeper, true},
        {},
        {"exit", &Panel::exit_entry, &Engine::Exit}}},
      {"schedule_menu",
       &Panel::schedule_menu,
       {{"week", &Panel::week_entry, &Engine::OpenWeek},
        {"special_days", &Panel::special_days_entry, &Engine::OpenSpecialDays},
        {},
        {"self_tests", &Panel::self_tests_entry, &Engine::OpenSelfTests}}},
      {"analysis_menu",
       &Panel::analysis_menu,
       {{"log", &Panel::log_entry, &Engine::OpenLog},
        {"day_history", &Panel::day_history_entry, &Engine::OpenDayHistory},
        {"history", &Panel::history_entry, &Engine::OpenHistory},
        {},
        {"shutdown_report", &Panel::shutdown_report_entry, &Engine::OpenShutdownReport}}},
      {"control_menu",
       &Panel::control_menu,
       {{"short_test", &Panel::short_test_entry, &Engine::TestFor10Seconds, true},
        {"test_to_low", &Panel::test_to_low_entry, &Engine::TestToLow, true},
        {"cancel_test", &Panel::cancel_test_entry, &Engine::CancelTest, true},
        {},
        {"shutdown", &Panel::shutdown_entry, &Engine::AskForShutdown, true},
        {},
        {"protection_check", &Panel::check_entry, &Engine::OpenProtectionCheck}}},
      {"help_menu", &Panel::help_menu, {{"about", &Panel::about_entry, &Engine::OpenAbout}}},
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

// The tool tips of the faces, and which of them is seen: the bars cover the dials.
void FollowFaces(Panel& panel, QWidget* bars, QWidget* dials) {
  const auto refresh = [bars = QPointer(bars), dials = QPointer(dials), &panel] {
    if (!bars || !dials) return;
    bars->setToolTip(QString::fromStdString(panel.bar_face.ToolTipText()));
    dials->setToolTip(QString::fromStdString(panel.dial_face.ToolTipText()));
    bars->setVisible(panel.bar_face.Visible());
    dials->setVisible(!panel.bar_face.Visible());
  };
  panel.bar_face.Observer = refresh;
  panel.dial_face.Observer = refresh;
  refresh();
}

}  // namespace

MainWindow::MainWindow(const State& state, Panel& panel, Engine& form)
    : QMainWindow(nullptr, Qt::Window | kClosable | Qt::WindowMinimizeButtonHint),
      state_(state),
      panel_(panel),
      form_(form) {
  setObjectName("main");
  AddMenus();
  AddAreas(state);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  form_.OnRights = [self = QPointer(this)] {
    if (self) self->ShowRights();
  };
  ShowRights();
}

void MainWindow::ShowRights() {
  const bool may = form_.MaySteer();
  for (QAction* order : orders_) order->setEnabled(may);
  setWindowTitle(may ? QString("Orvane") : Pick(state_, Message::kViewOnlyTitle));
}

void MainWindow::AddMenus() {
  menuBar()->setNativeMenuBar(false);
  auto* shield = new ShieldButton(panel_.shield, menuBar());
  connect(shield, &QToolButton::clicked, this, [&form = form_] { form.OpenProtectionCheck(); });
  menuBar()->setCornerWidget(shield);
  for (const Menu& row : Menus()) {
    QMenu* menu = menuBar()->addMenu(QString());
    menu->setObjectName(row.name);
    FollowCaption(panel_.*row.caption, menu, &QMenu::setTitle);
    for (const Entry& entry : row.entries) {
      if (!entry.caption) {
        menu->addSeparator();
        continue;
      }
      QAction* action = menu->addAction(QString());
      action->setObjectName(entry.name);
      if (entry.steers) orders_.push_back(action);
      FollowCaption(panel_.*entry.caption, action, &QAction::setText);
      // The form stands in the closure by itself: through `this` and a member pointer, GCC 12's
      // check of object types reads it before it has fetched it.
      connect(action, &QAction::triggered, this,
              [&form = form_, click = entry.click] { (form.*click)(); });
    }
  }
}

void MainWindow::AddAreas(const State& state) {
  auto* client = new QWidget(this);
  client->setFixedSize(Pixels(kClientArea).size());
  client->setAutoFillBackground(true);
  new StateStrip(panel_, client);
  auto* dials = new DialFace(
      state, panel_, [this] { form_.ShowBars(); }, client);
  auto* bars = new BarFace(
      state, panel_, [this] { form_.ShowDials(); }, client);
  new InformationArea(panel_, client);
  new WarningLine(panel_, client);
  new StatusLine(panel_, client);
  FollowFaces(panel_, bars, dials);
  // There is nothing on a face that takes a click by itself.
  for (const QWidget* face : {static_cast<QWidget*>(bars), static_cast<QWidget*>(dials)}) {
    for (QWidget* part : face->findChildren<QWidget*>()) {
      part->setAttribute(Qt::WA_NoMousePropagation, false);
    }
  }
  connect(new QShortcut(Qt::Key_F6, this), &QShortcut::activated, this,
          [this] { panel_.bar_face.Visible() ? form_.ShowDials() : form_.ShowBars(); });
  setCentralWidget(client);
}

}  // namespace orvane
