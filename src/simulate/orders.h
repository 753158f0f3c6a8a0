// Orders to a simulator: the table of what it understands, the reader that cuts them out of its
// input, and the script that gives them at set times.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulate/device.h"

namespace orvane {

// The orders by name. An order is its name, and an argument behind a blank where it takes one.
class OrderTable {
 public:
  void Add(std::string name, std::string help, std::function<void()> run);

  // "on" or "off"; the bare name is "on".
  void AddSwitch(std::string name, std::string help, std::function<void(bool)> run);

  // A decimal number from `low` to `high`, both included.
  void AddNumber(std::string name, double low, double high, std::string help,
                 std::function<void(double)> run);

  // Any text up to the end of the line, without the blanks round it. `run` returns what is wrong
  // with it, empty when it was carried out.
  void AddText(std::string name, std::string argument, std::string help,
               std::function<std::string(std::string_view)> run);

  // Carries out one order. Returns what is wrong with it, for the user; empty when it was done. A
  // blank line and a comment ("#") are orders to do nothing.
  std::string Run(std::string_view line) const;

  // All orders, one to a line, in the order in which they were added.
  std::string Help() const;

 private:
  struct Order {
    std::string name;
    std::string argument;  // how it is written in the help
    std::string help;
    std::function<std::string(std::string_view)> run;
  };

  std::vector<Order> orders_;
};

// Cuts a stream of bytes into lines. Line ends are `end`; a carriage return in front of a line feed
// is part of the line end. Of a line without an end only the first kLongest bytes are kept.
class LineReader {
 public:
  static constexpr std::size_t kLongest = 1024;

  explicit LineReader(char end = '\n') : end_(end) {}

  void Put(std::string_view bytes);

  // The next whole line without its end; nothing when none is whole.
  std::optional<std::string> Take();

 private:
  char end_;
  std::string line_;
  std::deque<std::string> lines_;
};

// Timed orders: each line is "SECONDS ORDER", seconds (with fractions) since the start. Blank lines
// and comments ("#") are passed over. Orders of the same moment keep their sequence.
class Script {
 public:
  // Takes the orders of `text`. Returns what is wrong with the first bad line, with its number;
  // empty when all are good.
  std::string Read(std::string_view text);

  // The next order whose time has come; nothing when none has.
  std::optional<std::string> Take(Moment now);

  // When the next order is due; nothing when the script is through.
  std::optional<Moment> Next() const;

 private:
  struct Entry {
    Moment due;
    std::string order;
  };

  std::vector<Entry> entries_;
  std::size_t next_ = 0;
};

}  // namespace orvane
