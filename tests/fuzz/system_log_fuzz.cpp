// Any bytes as `System.log`: the index finds the lines that a plain search finds.
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "records/log_index.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  using test::Require;
  test::FuzzInput input(data, size);
  // Enough in front to reach over the blocks of the index, with line ends across their borders.
  std::string bytes;
  for (std::size_t blocks = input.Choice(4); blocks > 0; --blocks) {
    bytes.append(4080 + input.Choice(32), 'x').append("\r\n");
  }
  bytes += input.Rest();

  std::vector<std::string_view> lines;
  std::string_view rest = bytes;
  while (!rest.empty()) {
    const std::size_t end = rest.find("\r\n");
    lines.push_back(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 2);
  }
  const LogIndex index(bytes);
  Require(index.Lines() == lines.size(), "every line is counted");
  for (std::size_t i = lines.size(); i-- > 0;) {
    Require(index.Line(i) == lines[i], "a line is found where it stands");
  }
  return 0;
}
