// What the UPS sends, turned into shown values. The replies are told apart by shape: the status
// reply, fixed columns behind a "(", the information reply, nine fields between commas, and behind
// a
// "#" the rating reply and the name reply, which count only where they were asked for.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "app/panel.h"
#include "app/state.h"
#include "link/data_replies.h"
#include "link/mirror.h"
#include "link/status_evaluation.h"

namespace orvane {

// Whether a text, up to its carriage return, is taken for a status reply.
bool IsStatusReply(std::string_view text);

enum class Reply { kNone, kStatus, kInformation, kRating, kName };

class ReplyDecoder {
 public:
  ReplyDecoder(State& state, Panel& panel, ValueMirror& mirror, StatusEvaluation& evaluation)
      : state_(state), panel_(panel), mirror_(mirror), evaluation_(evaluation) {}

  // Tests what has arrived (`RxText`) for a reply, decodes and consumes it and returns its kind. A
  // text that is none is left as it is.
  Reply Decode();

 private:
  void DecodeInformation(const std::array<std::size_t, 8>& commas);
  void DecodeStatus();
  Reply DecodeDataReply();
  void ShowRating(const RatingReply& rating);
  void ShowName(const NameReply& name);
  void ShowDatum(UpsDatum datum, std::string_view value, std::string_view unit);
  std::optional<float> CellVolts(std::optional<float> figure);
  void Consume();

  State& state_;
  Panel& panel_;
  ValueMirror& mirror_;
  StatusEvaluation& evaluation_;
  std::string datum_text_;  // a value with its unit behind it, kept for its capacity
};

}  // namespace orvane
