// Any bytes as the two journals: the fast readers find what a plain one finds.
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "records/day_records.h"
#include "records/log_index.h"

namespace {

using namespace orvane;
using test::Require;

std::vector<std::string_view> PlainLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = text.find("\r\n");
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
  }
  return lines;
}

// Cell numbers of the records of a date, by character position. For lines of ASCII alone.
std::vector<int> PlainCells(std::string_view text, std::string_view date) {
  std::vector<int> cells;
  const auto digit = [](char c) { return c >= '0' && c <= '9'; };
  for (const std::string_view line : PlainLines(text)) {
    if (line.size() < 17 || line.substr(2, 10) != date) continue;
    std::string hour(line.substr(13, 2));
    if (hour[0] == ' ') hour.erase(0, 1);
    if (hour.size() == 2 && hour[1] == ' ') hour.pop_back();
    const char code = line[16];
    if (!digit(code) || !digit(hour[0]) || !digit(hour.back())) continue;
    cells.push_back(std::stoi(hour) + 24 * (code - '0'));
  }
  return cells;
}

bool IsAscii(std::string_view text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  test::FuzzInput input(data, size);
  // At the very end of a block of its own, so that a look behind it is seen.
  const std::string_view rest = input.Rest();
  const std::vector<char> bytes(rest.begin(), rest.end());
  const std::string_view text(bytes.data(), bytes.size());

  const auto lines = PlainLines(text);
  const LogIndex index(text);
  Require(index.Lines() == lines.size(), "the index counts the lines");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    Require(index.Line(i) == lines[i], "the index finds the line");
  }

  DayRecords records;
  records.Read(text);
  Require(records.Count() <= lines.size(), "no line is held twice");
  Require(records.Memory() <= 12 * records.Count() + 2, "a record takes few bytes");
  if (!IsAscii(text)) return 0;
  for (const std::string_view date : {"2001-02-16", "2001-02-17", "0000-00-00"}) {
    std::vector<int> cells;
    records.ForEachOf(*DateKey(date),
                      [&](int hour, int code) { cells.push_back(hour + 24 * code); });
    Require(cells == PlainCells(text, date), "the records of a date are found");
  }
  return 0;
}
