// Any bytes as `DateRec.rec`: the quick reader tells the same as one that looks at each character,
// and a day of the file can be shown and left in both directions.
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "records/day_history.h"
#include "support/fake_time.h"
#include "support/memory_disk.h"

namespace {

using Events = std::vector<std::pair<int, int>>;  // hour and code

// A character of the file: a whole UTF-8 sequence counts as one, a stray byte too.
std::size_t Length(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  for (std::size_t i = 1; i < length; ++i) {
    if (i >= text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return 1;
  }
  return length;
}

std::map<std::string, Events> ReadSlowly(std::string_view bytes) {
  // Date, hour and code, each in its place.
  static const std::regex form(
      "[^]{2}([0-9]{4}-[0-9]{2}-[0-9]{2})[^]([0-9]{2}| [0-9]|[0-9] )[^]([0-9])");
  std::map<std::string, Events> days;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find("\r\n");
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 2);
    std::string characters;
    while (!line.empty() && characters.size() < 17) {
      const std::size_t length = Length(line);
      characters += length == 1 ? line[0] : '?';
      line.remove_prefix(length);
    }
    std::smatch found;
    if (!std::regex_match(characters, found, form)) continue;
    days[found[1]].emplace_back(std::stoi(found[2]), std::stoi(found[3]));
  }
  return days;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  using test::Require;
  const std::string bytes(test::FuzzInput(data, size).Rest());
  const auto days = ReadSlowly(bytes);
  DayRecords records;
  records.Read(bytes);
  std::size_t count = 0;
  for (const auto& [date, events] : days) {
    Events found;
    records.ForEachOf(DateKey(date).value(),
                      [&](int hour, int code) { found.emplace_back(hour, code); });
    Require(found == events, "a day has the events of its lines");
    count += events.size();
  }
  Require(records.Count() == count, "nothing else is held");

  test::MemoryDisk disk;
  disk.files["/DateRec.rec"] = bytes;
  const test::FakeTime clock;
  DayHistory history(disk, clock, "/DateRec.rec");
  history.Load();
  const std::string today = history.Date();
  for (const bool forwards : {true, false}) {
    for (int i = 0; i < 3; ++i) forwards ? history.ShowNext() : history.ShowPrevious();
  }
  Require(history.Date() == today, "three days on and three days back is the same day");
  return 0;
}
