// Any bytes as `System.log`: nothing of the file is lost or invented among its lines.
#include "fuzz/fuzz_input.h"
#include "records/event_log.h"
#include "support/world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  using test::Require;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  test::World world;
  world.disk.files["/log"] = bytes;
  EventLog log(world.state, world.disk, world.dialogs, "/log");
  log.Load();
  std::string joined;
  for (const std::string_view line : log.Lines()) {
    Require(line.find("\r\n") == std::string_view::npos, "a line ends at its end");
    joined.append(line).append("\r\n");
  }
  Require(joined == bytes || joined == bytes + "\r\n", "the lines are the file");
  return 0;
}
