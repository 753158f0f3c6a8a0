// Any bytes as `DateRec.rec`: the quick reader tells the same as one that looks at each character,
// and a day of the file can be shown and left in both directions.
#include <map>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "records/day_history.h"
#include "support/fake_time.h"
#include "support/memory_disk.h"

namespace {

using Events = std::vector<std::pair<int, int>>;  // hour and code

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// A character of the file: a whole UTF-8 sequence counts as one, a stray byte too.
std::size_t Length(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  for (std::size_t i = 1; i < length; ++i) {
    if (i >= text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return 1;
  }
  return length;
}

// Hour and code are numbers with blanks round them; -1 for anything else.
int Value(std::string text) {
  while (text.starts_with(' ')) text.erase(0, 1);
  while (text.ends_with(' ')) text.pop_back();
  for (const char c : text) {
    if (!IsDigit(c)) return -1;
  }
  return text.empty() ? -1 : std::stoi(text);
}

std::map<std::string, Events> ReadSlowly(std::string_view bytes) {
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
    if (characters.size() < 17) continue;
    const std::string date = characters.substr(2, 10);
    bool sound = true;
    for (std::size_t i = 0; i < date.size(); ++i) {
      sound = sound && (i == 4 || i == 7 ? date[i] == '-' : IsDigit(date[i]));
    }
    const int hour = Value(characters.substr(13, 2));
    const int code = Value(characters.substr(16, 1));
    if (sound && hour >= 0 && code >= 0) days[date].emplace_back(hour, code);
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
  history.Form_Load();
  const std::string today = history.lblDate();
  for (const bool forwards : {true, false}) {
    for (int i = 0; i < 3; ++i) forwards ? history.cmdNext_Click() : history.cmdPrev_Click();
  }
  Require(history.lblDate() == today, "three days on and three days back is the same day");
  const auto events = days.find(today);
  for (int cell = 0; cell < kGridCells; ++cell) {
    int expected = 0;
    if (events != days.end()) {
      for (const auto& [hour, code] : events->second) expected += hour + 24 * code == cell;
    }
    Require(history.Visible(cell) == (expected > 0), "a cell is marked where something happened");
    if (expected > 0 && expected < 30000) {
      Require(history.lblCount(cell) == expected, "a cell counts what happened");
    }
  }
  return 0;
}
