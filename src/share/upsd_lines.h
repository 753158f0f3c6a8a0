// The lines that go between a UPS driver and upsd: words between blanks, in double quotes where
// they hold a blank, with `"` and `\` behind a backslash; each line ends with a line feed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Cuts what a peer says into lines and words. Whatever it says, no more is kept than one line.
class WordReader {
 public:
  static constexpr std::size_t kMostWords = 32;
  static constexpr std::size_t kMostLetters = 512;
  static constexpr std::size_t kMostOfALine = 4096;

  // Takes bytes off the front, up to the end of a line. True when there was one: its words stand in
  // Words until the next call. A line with more or longer words than these, or more letters in
  // all, has none.
  bool Next(std::string_view& bytes);

  const std::vector<std::string>& Words() const { return words_; }

 private:
  void Take(char c);
  void Add(char c);

  std::vector<std::string> words_;
  std::size_t letters_ = 0;  // in all words
  bool in_word_ = false;
  bool quoted_ = false;
  bool escaped_ = false;   // a backslash stands before
  bool too_long_ = false;  // the line is passed over
  bool ended_ = false;     // the next byte begins a line
};

// Adds the text as one word in quotes. Whatever is no printable ASCII character becomes "?", and
// what is longer than a word may be is cut.
void AppendQuoted(std::string& line, std::string_view text);

}  // namespace orvane
