// What the icon in the tray shows and says.
#pragma once

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"

namespace orvane {

class TrayState {
 public:
  TrayState(const State& state, Panel& panel, const Seams& seams)
      : state_(state), panel_(panel), seams_(seams) {}

  // To be called behind whatever may have changed the panel.
  void Update();

  // The way down begins.
  void TellGoingDown();

 private:
  void Show(TrayFace face, Message tip);
  void ShowCount(Message tip);

  const State& state_;
  Panel& panel_;
  Seams seams_;
};

}  // namespace orvane
