// Bytes on the modem line, in arbitrary pieces: the words are found as in the whole of what has
// arrived. What a call makes of them is tried by the random histories.
#include "dial/reply_buffer.h"
#include "fuzz/fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  using test::Require;
  test::FuzzInput input(data, size);
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
  return 0;
}
