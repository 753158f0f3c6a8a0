// An array with one element for each enumerator of an enumeration that counts from 0.
#pragma once

#include <array>
#include <cstddef>

namespace orvane {

template <class Key, class T, std::size_t kSize>
class EnumArray {
 public:
  constexpr T& operator[](Key key) { return elements_[static_cast<std::size_t>(key)]; }
  constexpr const T& operator[](Key key) const { return elements_[static_cast<std::size_t>(key)]; }

  constexpr auto begin() { return elements_.begin(); }
  constexpr auto end() { return elements_.end(); }
  constexpr auto begin() const { return elements_.begin(); }
  constexpr auto end() const { return elements_.end(); }

  bool operator==(const EnumArray&) const = default;

  std::array<T, kSize> elements_{};  // public, so that the array can be written as a list
};

}  // namespace orvane
