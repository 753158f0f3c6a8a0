// What the UPS says about itself, on the main form.
#pragma once

#include <QWidget>
#include <array>

#include "app/panel.h"

namespace orvane {

class TextLabel;

class InformationArea : public QWidget {
  Q_OBJECT

 public:
  InformationArea(Panel& panel, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowHeading();
  void ShowCaption(std::size_t i);

  Panel& panel_;
  TextLabel* heading_;
  std::array<TextLabel*, 6> captions_{};
  std::array<TextLabel*, 6> values_{};
};

}  // namespace orvane
