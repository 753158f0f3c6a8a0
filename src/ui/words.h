// Texts of the windows that do not come from the message table: designed in Chinese, with an
// English literal put in place while `ResBase` is 0.
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
  return Pick(state.ResBase == 0, words);
}

inline QString Message(const State& state, int number) {
  const std::string_view text = state.Message(number);
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace orvane
