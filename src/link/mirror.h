// The second display of the measured values: figures and bars that follow the read-outs.
#pragma once

#include "app/panel.h"

namespace orvane {

// How wide the bar of a value is, in twips, and so where a mark for that value stands.
double BarWidth(Gauge gauge, double value);

// Copies all read-outs to the figures of the bars and sets the bars' widths.
void MirrorValues(Panel& panel);

// Holds the mirror back while several values are written, and runs it once at the end if any of
// them changed.
class ValueMirror {
 public:
  explicit ValueMirror(Panel& panel) : panel_(panel) {}

  // The Change event of any read-out.
  void OnReadOutChange();

  class Batch {
   public:
    explicit Batch(ValueMirror& mirror) : mirror_(mirror) { ++mirror_.open_batches_; }
    ~Batch();
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

   private:
    ValueMirror& mirror_;
  };

 private:
  Panel& panel_;
  int open_batches_ = 0;  // nested writers of several values
  bool due_ = false;      // a value changed inside a batch
};

}  // namespace orvane
