// Any bytes as `Orvane.ini`: what is read can be written and reads back the same.
#include "app/settings.h"
#include "fuzz/fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  State first;
  ParseSettings(test::FuzzInput(data, size).Rest(), first);
  // A quote or a line end inside the number cannot be written so that it reads back.
  if (first.PhoneCode.find_first_of("\"\r\n") != std::string::npos) return 0;
  State second;
  ParseSettings(SettingsLine(first), second);
  test::Require(second.Settings == first.Settings, "slots read back");
  test::Require(second.PhoneCode == first.PhoneCode, "the number reads back");
  test::Require(DeriveShutdownCommand(first).size() >= 3, "a shutdown command always stands");
  return 0;
}
