#include "share/upsd_lines.h"

namespace orvane {
namespace {

bool IsPrintable(char c) {
  return c >= ' ' && c <= '~';
}

}  // namespace

bool WordReader::Next(std::string_view& bytes) {
  if (ended_) *this = {};
  while (!bytes.empty()) {
    const char c = bytes.front();
    bytes.remove_prefix(1);
    if (c == '\n') {
      if (too_long_) words_.clear();
      return ended_ = true;
    }
    if (!too_long_) Take(c);
  }
  return false;
}

void WordReader::Take(char c) {
  if (escaped_) {
    escaped_ = false;
    Add(c);
  } else if (c == '\\') {
    escaped_ = true;
  } else if (c == '"') {
    quoted_ = !quoted_;
    // Two quotes with nothing between them are a word, too.
    if (quoted_ && !in_word_) {
      in_word_ = true;
      words_.emplace_back();
    }
  } else if (!quoted_ && (c == ' ' || c == '\t')) {
    in_word_ = false;
  } else {
    Add(c);
  }
  if (words_.size() > kMostWords) too_long_ = true;
}

void WordReader::Add(char c) {
  if (!in_word_) words_.emplace_back();
  in_word_ = true;
  if (words_.back().size() == kMostLetters || ++letters_ > kMostOfALine) {
    too_long_ = true;
  } else {
    words_.back() += c;
  }
}

void AppendQuoted(std::string& line, std::string_view text) {
  line += '"';
  for (const char c : text.substr(0, WordReader::kMostLetters)) {
    if (c == '"' || c == '\\') line += '\\';
    line += IsPrintable(c) ? c : '?';
  }
  line += '"';
}

}  // namespace orvane
