#include "platform/utf8.h"

namespace orvane {
namespace {

// Bytes that a character has at most behind its first one.
constexpr std::size_t kMostTrailing = 3;

bool ContinuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

std::string_view WholeCharacters(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return text;
  for (std::size_t back = 0; back <= kMostTrailing && back <= limit; ++back) {
    if (!ContinuesCharacter(text[limit - back])) return text.substr(0, limit - back);
  }
  return text.substr(0, limit);
}

}  // namespace orvane
