// Bytes on the UPS line, in arbitrary pieces, among polls.
#include "app/gauges.h"
#include "fuzz/fuzz_input.h"
#include "link/numbers.h"
#include "link/ups_link.h"
#include "support/world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  using orvane::test::Require;
  test::FuzzInput input(data, size);
  test::World world;
  UpsLink link(world.state, world.panel, world.journals, world.seams);
  CaptureNeedles(world.panel, world.state.Main);
  link.Attach();
  link.OpenPort();
  world.ups_port.Notify(true);
  while (!input.Empty()) {
    const std::size_t length = input.Choice(128);
    if (length == 0) link.OnPoll();
    world.ups_port.Receive(input.Take(length));
    Require(world.state.Main.RxText.size() <= size, "no more is held than came");
    for (const Label& value : world.panel.read_outs) {
      Require(ReadNumber(value.Caption()).has_value(), "a read-out is a number");
    }
    const MainFormState& form = world.state.Main;
    Require(form.PollsSent - form.PollsAnswered <= 3, "a fourth poll in vain is a lost link");
    const Label& mains = world.panel.mains;
    Require(mains.Caption().empty() || (mains.ForeColor() == kRed) == (mains.Caption() == "Fail"),
            "colour and caption of the mains agree");
  }
  return 0;
}
