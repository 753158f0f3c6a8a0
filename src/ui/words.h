// Texts of the windows, by language. Those that the logic shows or writes, too, come from the
// message table.
#pragma once

#include <QString>

#include "app/state.h"

namespace orvane {

struct Words {
  const char* chinese;
  const char* english;
};

inline QString Pick(bool english, const Words& words) {
  return QString::fromUtf8(english ? words.english : words.chinese);
}

inline QString Pick(const State& state, const Words& words) {
  return Pick(state.language == Language::kEnglish, words);
}

inline QString Pick(const State& state, Message message) {
  const std::string_view text = state.Text(message);
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace orvane
