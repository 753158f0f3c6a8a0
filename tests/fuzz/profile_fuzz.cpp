// Any bytes as a profile file: what is set reads back, and all that stood there stays.
#include <string>

#include "fuzz/fuzz_input.h"
#include "platform/profile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  using test::Require;
  test::FuzzInput input(data, size);
  const std::string value(input.Take(input.Choice(16)));
  const std::string text(input.Rest());
  Require(ProfileFile::Parse(text).Text() == text, "a file that is only read stays to the byte");

  ProfileFile file = ProfileFile::Parse(text);
  const auto other = file.Get("weekly", "2On");
  file.Set("weekly", "1On", value);
  const ProfileFile again = ProfileFile::Parse(file.Text());
  if (value.find_first_of("\r\n") == std::string::npos) {
    Require(file.Get("weekly", "1On") == value, "what is set is there");
    Require(again.Get("weekly", "1On") == value, "what is set reads back");
  }
  Require(again.Get("weekly", "2On") == other, "another key keeps its value");
  const std::string cut = ReadProfileValue(again, "Main", "App0", 9);
  Require(cut.size() < 10, "a read keeps to its limit");
  return 0;
}
