// A label of fixed place whose text always fits: it shrinks a little, then ends in points and shows
// the whole text as its tool tip.
#pragma once

#include <QLabel>
#include <string_view>

#include "app/panel.h"
#include "ui/look.h"
#include "ui/twips.h"

namespace orvane {

// Text of any origin as one line to show: no line ends, no control characters, and no more of it
// than a person could read.
QString OneLine(std::string_view utf8);

class TextLabel : public QLabel {
  Q_OBJECT

 public:
  struct Style {
    int size = 12;   // pixel size while the text fits
    int least = 10;  // what it may shrink to
    bool bold = false;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    look::Tone ink = look::kInk;
    look::Tone ground = {};  // none: what lies beneath shows through
    bool wrap = false;       // several lines, as many as have room
  };

  TextLabel(const QString& name, const Place& place, const Style& style, QWidget* parent);

  // Shows caption, colour and visibility of `label` from now on. `label` has to outlive this.
  void Follow(Label& label);

  // The same once, for a label that somebody else observes.
  void Show(const Label& label);

  void Show(const QString& text);
  void Ink(const look::Tone& ink);
  void Ground(const look::Tone& ground);
  void Bold(bool bold);

  // What a screen reader says: the text between these two.
  void Spoken(const QString& before, const QString& after = {});

  // The part of the text that can be seen, and the font that it stands in.
  const QString& Shown() const { return shown_; }
  const QFont& Fitted() const { return fitted_; }
  bool Elided() const { return elided_; }
  Qt::Alignment Alignment() const { return style_.alignment; }
  bool Wraps() const { return style_.wrap; }
  // Width of the text as shown, in logical pixels.
  double Advance() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  bool Fits() const;
  void Fit();
  void Speak();

  Style style_;
  QString shown_;
  bool elided_ = false;
  QFont fitted_;
  QString spoken_before_, spoken_after_;
};

}  // namespace orvane
