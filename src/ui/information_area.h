// What the UPS says about itself, in the main window.
#pragma once

#include <QWidget>

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
  void ShowCaption(UpsDatum datum);
  void ShowValue(UpsDatum datum);
  void ShareWidth();

  Panel& panel_;
  TextLabel* heading_;
  PerUpsDatum<TextLabel*> captions_;
  PerUpsDatum<TextLabel*> values_;
};

}  // namespace orvane
