// Any bytes as orders to a simulator, as a script, and on its line: it stays within its limits.
#include "fuzz/fuzz_input.h"
#include "simulate/orders.h"
#include "simulate/ups_model.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  using test::Require;
  test::FuzzInput input(data, size);
  UpsModel ups;
  OrderTable orders;
  AddUpsOrders(orders, ups);
  LineReader lines;
  Moment now{0};
  while (!input.Empty()) {
    const std::size_t what = input.Choice(4);
    const std::string_view text = input.Take(input.Choice(64));
    if (what == 0) {
      now += Moment(60000 * text.size());
      ups.Advance(now);
    } else if (what == 1) {
      ups.Receive(text);
      ups.Receive("\r");
    } else {
      lines.Put(text);
      lines.Put("\n");
      while (const auto line = lines.Take()) {
        Require(line->size() <= LineReader::kLongest, "a line has its limit");
        static_cast<void>(orders.Run(*line));
      }
    }
    // Two fields may be out of step with each other, never the reply with its columns.
    Require(ups.StatusReply().size() == 47, "a status reply keeps its columns");
    Require(ups.BatteryPercent() >= 0 && ups.BatteryPercent() <= 100, "a level is a level");
    static_cast<void>(ups.Take());
  }
  Script script;
  const bool good =
      script.Read(std::string_view(reinterpret_cast<const char*>(data), size)).empty();
  Moment before{0};
  while (const auto due = script.Next()) {
    Require(*due >= before, "a script goes forward");
    before = *due;
    Require(script.Take(*due).has_value(), "what is due is there");
    if (!good) break;
  }
  return 0;
}
