// Where the lines of a journal begin and end, found without a look at each of them: a file of any
// age is open as soon as its line ends are counted.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace orvane {

class LogIndex {
 public:
  // An empty file.
  LogIndex() = default;

  // Counts the line ends of `bytes`, which must stay where they are while the index is used.
  explicit LogIndex(std::string_view bytes);

  // A line ends at CR LF alone. What stands behind the last line end, if anything, is a line too.
  std::size_t Lines() const { return lines_; }

  // A line without its end. `number` counts from 0 and must be below Lines(). Looks at one small
  // part of the file, wherever the line stands and however many there are.
  std::string_view Line(std::size_t number) const;

 private:
  std::size_t LineEnd(std::size_t number) const;

  std::string_view bytes_;
  std::size_t lines_ = 0;
  std::vector<std::size_t> ends_through_;  // line ends in each block and all blocks before it
};

}  // namespace orvane
