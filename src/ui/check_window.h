// The window of the protection check: a row for each point, what was found, and what to do.
#pragma once

#include <vector>

#include "app/state.h"
#include "frame/engine.h"
#include "platform/dialogs.h"
#include "ui/form_window.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class QPushButton;

namespace orvane {

class CheckWindow : public FormWindow {
 public:
  // Shows the rows of `engine` from now on, and asks for them anew.
  explicit CheckWindow(Engine& engine);
  ~CheckWindow() override;

 private:
  // The parts of a row. Those that its point does not need are null.
  struct Row {
    QLabel* shield = nullptr;
    QLabel* name = nullptr;
    QLabel* finding = nullptr;
    QPushButton* button = nullptr;
    QCheckBox* tick = nullptr;
  };

  const CheckRow* Found(std::size_t number) const;
  Row AddRow(QGridLayout& grid, int number);
  void AddButtons(class QVBoxLayout& column);
  QPixmap ShieldPixmap(Grade grade, int size) const;
  void Refresh();
  void Show(const Row& row, const CheckRow& found);

  const State& state_;
  Engine& engine_;
  QLabel* summary_shield_ = nullptr;
  QLabel* summary_ = nullptr;
  std::vector<Row> rows_;
};

}  // namespace orvane
