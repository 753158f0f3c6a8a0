// What a modem has answered in one attempt: which words it holds, and how it begins. Takes the same
// little memory for a reply of any length.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane {

class ReplyBuffer {
 public:
  enum Word { kOk, kBusy, kNoCarrier, kNoDialtone };

  // Bytes of a reply that are kept to be shown: far more than a status line has room for.
  static constexpr std::size_t kShown = 1024;

  // Forgets everything.
  void Clear();

  // Adds bytes of any value behind what has arrived. Looks at the new bytes once, and never again
  // at the old ones. A word may come in pieces.
  void Append(std::string_view bytes);

  // The word stands somewhere in the whole of what has arrived, in this case.
  bool Contains(Word word) const { return found_[word]; }

  // The reply as it arrived, up to kShown bytes from its beginning; a UTF-8 character that does not
  // fit whole is left out.
  std::string_view Shown() const;

 private:
  void Find(std::string_view bytes);

  std::string head_;  // the first bytes of the reply, a few more than are shown
  std::string tail_;  // its last bytes, where a word may have begun
  bool found_[4] = {};
};

}  // namespace orvane
