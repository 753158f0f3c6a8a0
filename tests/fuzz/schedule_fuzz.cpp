// Any text as a date or a time of the schedule, and any bytes as the schedule file: what reads has
// the normal form and reads again as itself, and the engine takes whatever the tables hold.
#include <regex>

#include "fuzz/fuzz_input.h"
#include "protect/shutdown.h"
#include "schedule/due_texts.h"
#include "schedule/schedule_engine.h"
#include "schedule/schedule_tables.h"
#include "support/world.h"

namespace {

using namespace orvane;
using orvane::test::Require;

bool HasForm(const std::string& text, const char* form) {
  return std::regex_match(text, std::regex(form));
}

void Texts(std::string_view text) {
  if (const auto date = ReadDate(text)) {
    Require(HasForm(*date, "[0-9]{4}-[01][0-9]-[0-3][0-9]"), "a date has the normal form");
    Require(ReadDate(*date) == date, "a date in normal form is itself");
    Require(ReadDate("  " + std::string(text) + " ") == date, "blanks round it do not count");
    Require(!ReadTime(text), "a date is no time");
  }
  if (const auto time = ReadTime(text)) {
    Require(HasForm(*time, "([0-9]|1[0-9]|2[0-3]):[0-5][0-9]"), "a time has the normal form");
    Require(ReadTime(*time) == time, "a time in normal form is itself");
  }
}

void File(std::string_view bytes) {
  test::World world;
  world.disk.files["/prog/systimer.ini"] = bytes;
  Shutdown shutdown(world.state, world.panel, world.journals, world.seams);
  ScheduleEngine engine(world.state, world.journals, shutdown, world.seams);
  LoadSchedule(world.disk, SchedulePath("/prog"), world.state);
  for (const std::string& text : world.state.ScheduleOn) Texts(text);
  for (const std::string& text : world.state.ScheduleDate) Texts(text);
  static_cast<void>(world.ups_port.Open());
  // A minute of a Friday, in which the schedule may do anything but leave its commands.
  for (int i = 0; i < 12; ++i) {
    if (!shutdown.Begun()) engine.OnSchedule();
    world.time.Advance(std::chrono::seconds(5));
  }
  for (const std::string& text : world.ups_port.sent) {
    Require(text == "TL\r" || text == "C\r" || text == world.state.ShutdownCommand + '\r',
            "no other command goes out");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  test::FuzzInput input(data, size);
  if (input.Choice(2) == 0) {
    Texts(input.Rest());
  } else {
    File(input.Rest());
  }
  return 0;
}
