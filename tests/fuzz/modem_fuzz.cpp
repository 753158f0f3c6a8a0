// Bytes on the modem line, in arbitrary pieces, while a call goes on: the words are found as in the
// whole of what has arrived, and every call comes to an end.
#include "dial/dialler.h"
#include "dial/reply_buffer.h"
#include "fuzz/fuzz_input.h"
#include "support/world.h"

namespace {

using namespace orvane;
using orvane::test::Require;

void Words(test::FuzzInput input) {
  ReplyBuffer buffer;
  std::string whole;
  while (!input.Empty()) {
    const std::string_view piece = input.Take(1 + input.Choice(64));
    buffer.Append(piece);
    whole += piece;
    const std::pair<ReplyBuffer::Word, const char*> words[] = {
        {ReplyBuffer::kOk, "OK"},
        {ReplyBuffer::kBusy, "BUSY"},
        {ReplyBuffer::kNoCarrier, "NO CARRIER"},
        {ReplyBuffer::kNoDialtone, "NO DIALTONE"}};
    for (const auto& [word, text] : words) {
      Require(buffer.Contains(word) == (whole.find(text) != std::string::npos),
              "a word is found in any pieces");
    }
    const std::string_view shown = buffer.Shown();
    Require(whole.starts_with(shown), "what is shown is how the reply begins");
    Require(shown.size() == whole.size() || shown.size() + 3 >= ReplyBuffer::kShown,
            "what is shown is no shorter than it has to be");
  }
}

void Call(test::FuzzInput input) {
  test::World world;
  world.state.Settings[8] = 1;
  world.state.PhoneCode = "119";
  world.state.Main.DialReason = Fault::kMains;
  world.panel.mains.Caption("Fail");
  Dialler dialler(world.state, world.panel, world.seams);
  dialler.Attach();
  world.dial_timer.Interval(5000);
  world.dial_timer.Enabled(true);
  world.time.Advance(std::chrono::seconds(5));
  Require(dialler.Running(), "a call goes out");
  while (!input.Empty()) {
    world.time.Advance(std::chrono::milliseconds(20 * input.Choice(64)));
    world.modem_port.Receive(input.Take(1 + input.Choice(64)));
  }
  // Four attempts of 50 s, 21 s and 3 s at most, whatever the modem said last.
  world.time.Advance(std::chrono::minutes(5));
  Require(!dialler.Running() && !world.dial_timer.Enabled(), "a call ends");
  int dialled = 0;
  int hung_up = 0;
  for (const std::string& text : world.modem_port.sent) {
    dialled += text == "ATDT119;\r";
    hung_up += text == "ATH\r";
  }
  Require(dialled + hung_up == static_cast<int>(world.modem_port.sent.size()), "no other command");
  Require(dialled >= 1 && dialled <= 4, "four attempts at most");
  Require(hung_up == dialled || hung_up == dialled - 1, "every attempt but a dead one is hung up");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  test::FuzzInput input(data, size);
  if (input.Choice(4) != 0) {
    Words(input);
  } else {
    Call(input);
  }
  return 0;
}
