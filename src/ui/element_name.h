// Names of controls that share one name and are told apart by a number.
#pragma once

#include <QString>
#include <concepts>

namespace orvane {

// "Label9(3)".
inline QString ElementName(const char* array, std::integral auto element) {
  return QString("%1(%2)").arg(array).arg(element);
}

}  // namespace orvane
