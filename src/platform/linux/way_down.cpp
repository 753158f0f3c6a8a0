#include "platform/linux/way_down.h"

#include <systemd/sd-journal.h>
#include <utmpx.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string_view>

#include "platform/profile.h"

namespace orvane {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr std::string_view kSection = "WayDown";
// A computer that takes longer has been off in between, or its clock has been set.
constexpr seconds kLongest = std::chrono::hours(1);

std::string PathIn(const std::string& program_directory) {
  return program_directory + "/WayDown.ini";
}

std::string FirstLine(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

template <class Number>
std::optional<Number> ReadNumber(std::string_view text) {
  Number number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return number;
}

// When this boot began, by the line "btime" of proc(5).
std::optional<sys_seconds> BootTime(const std::string& stat) {
  std::ifstream file(stat);
  std::string line;
  while (std::getline(file, line)) {
    constexpr std::string_view kKey = "btime ";
    if (!line.starts_with(kKey)) continue;
    const auto time = ReadNumber<std::int64_t>(std::string_view(line).substr(kKey.size()));
    if (time) return sys_seconds(seconds(*time));
  }
  return std::nullopt;
}

// The last entry of a boot in the system's journal.
std::optional<sys_seconds> EndInJournal(std::string boot_id) {
  std::erase(boot_id, '-');
  sd_journal* journal = nullptr;
  if (sd_journal_open(&journal, SD_JOURNAL_LOCAL_ONLY | SD_JOURNAL_SYSTEM) < 0) return std::nullopt;
  const std::string match = "_BOOT_ID=" + boot_id;
  std::uint64_t time = 0;
  const bool found = sd_journal_add_match(journal, match.data(), match.size()) >= 0 &&
                     sd_journal_seek_tail(journal) >= 0 && sd_journal_previous(journal) > 0 &&
                     sd_journal_get_realtime_usec(journal, &time) >= 0;
  sd_journal_close(journal);
  if (!found) return std::nullopt;
  return std::chrono::floor<seconds>(sys_seconds() + std::chrono::microseconds(time));
}

// The last record of a shutdown between two moments, by utmp(5).
std::optional<sys_seconds> EndInWtmp(const std::string& wtmp, sys_seconds from, sys_seconds to) {
  std::ifstream file(wtmp, std::ios::binary);
  std::optional<sys_seconds> end;
  utmpx record{};
  while (file.read(reinterpret_cast<char*>(&record), sizeof record)) {
    const sys_seconds at{seconds(record.ut_tv.tv_sec)};
    const std::string_view user(record.ut_user, strnlen(record.ut_user, sizeof record.ut_user));
    if (record.ut_type == RUN_LVL && user == "shutdown" && at >= from && at <= to) end = at;
  }
  return end;
}

}  // namespace

void NoteLastStep(Disk& disk, const std::string& program_directory, sys_seconds now,
                  const BootRecords& records) {
  static_cast<void>(WriteProfileValues(disk, kSection,
                                       {{"Begun", std::to_string(now.time_since_epoch().count())},
                                        {"Boot", FirstLine(records.boot_id)}},
                                       PathIn(program_directory)));
}

std::optional<seconds> WayDownTime(const Disk& disk, const std::string& program_directory,
                                   const BootRecords& records) {
  const auto text = disk.Read(PathIn(program_directory));
  if (!text) return std::nullopt;
  const ProfileFile file = ProfileFile::Parse(*text);
  const auto number = [&](std::string_view key) {
    return ReadNumber<std::int64_t>(file.Get(kSection, key).value_or(""));
  };
  std::optional<seconds> took;
  if (const auto known = number("Took")) took = seconds(*known);
  const auto begun = number("Begun");
  const std::string boot = file.Get(kSection, "Boot").value_or("");
  const auto booted = BootTime(records.stat);
  if (!begun || boot.empty() || boot == FirstLine(records.boot_id) || !booted) return took;
  const sys_seconds from{seconds(*begun)};
  std::optional<sys_seconds> end = EndInWtmp(records.wtmp, from, *booted);
  if (const auto entry = records.journal ? EndInJournal(boot) : std::nullopt) {
    end = std::max(end.value_or(*entry), *entry);
  }
  if (end && *end >= from && *end - from <= kLongest) took = *end - from;
  return took;
}

void KeepWayDownTime(Disk& disk, const std::string& program_directory, seconds took) {
  static_cast<void>(WriteProfileValues(
      disk, kSection, {{"Begun", ""}, {"Boot", ""}, {"Took", std::to_string(took.count())}},
      PathIn(program_directory)));
}

}  // namespace orvane
