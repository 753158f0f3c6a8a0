// What the UPS sends, turned into shown values. Two replies exist, told apart by shape alone: the
// status reply, fixed columns behind a "(", and the information reply, nine fields between commas.
#pragma once

#include "app/panel.h"
#include "app/state.h"
#include "link/mirror.h"
#include "link/status_evaluation.h"

namespace orvane {

class ReplyDecoder {
 public:
  ReplyDecoder(State& state, Panel& panel, ValueMirror& mirror, StatusEvaluation& evaluation)
      : state_(state), panel_(panel), mirror_(mirror), evaluation_(evaluation) {}

  // Tests what has arrived (`RxText`) for either reply and decodes and consumes what is there. A
  // text that is neither is left as it is.
  void Decode();

 private:
  void DecodeInformation(const std::array<std::size_t, 8>& commas);
  void DecodeStatus();
  void Consume();

  State& state_;
  Panel& panel_;
  ValueMirror& mirror_;
  StatusEvaluation& evaluation_;
  std::string unit_text_;  // a field with its unit behind it, kept for its capacity
};

}  // namespace orvane
