// The bytes that a fuzzer hands over, as text and as choices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

namespace orvane::test {

class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  bool Empty() const { return rest_.empty(); }

  // A number from 0 to limit - 1; 0 at the end of the input.
  std::size_t Choice(std::size_t limit) {
    if (rest_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return byte % limit;
  }

  std::string_view Take(std::size_t size) {
    const std::string_view piece = rest_.substr(0, size);
    rest_.remove_prefix(piece.size());
    return piece;
  }

  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

// Ends the run with a message that names what does not hold.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::cerr << "does not hold: " << what << '\n';
  std::abort();
}

}  // namespace orvane::test
