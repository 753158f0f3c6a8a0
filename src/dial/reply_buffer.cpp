#include "dial/reply_buffer.h"

#include <algorithm>
#include <iterator>

#include "platform/utf8.h"

namespace orvane {
namespace {

// In the order of ReplyBuffer::Word.
constexpr std::string_view kWords[] = {"OK", "BUSY", "NO CARRIER", "NO DIALTONE"};

// The most that can have arrived of a word that is not whole yet.
constexpr std::size_t kOverlap = std::ranges::max(kWords, {}, &std::string_view::size).size() - 1;

}  // namespace

void ReplyBuffer::Clear() {
  head_.clear();
  tail_.clear();
  std::fill(std::begin(found_), std::end(found_), false);
}

void ReplyBuffer::Append(std::string_view bytes) {
  // One byte beyond what is shown tells whether a character ends at the cut.
  head_.append(bytes.substr(0, kShown + 1 - head_.size()));
  // First the words that began in what came before.
  tail_.append(bytes.substr(0, kOverlap));
  Find(tail_);
  Find(bytes);
  if (bytes.size() >= kOverlap) {
    tail_ = bytes.substr(bytes.size() - kOverlap);
  } else if (tail_.size() > kOverlap) {
    tail_.erase(0, tail_.size() - kOverlap);
  }
}

std::string_view ReplyBuffer::Shown() const {
  return WholeCharacters(head_, kShown);
}

void ReplyBuffer::Find(std::string_view bytes) {
  for (std::size_t word = 0; word < std::size(kWords); ++word) {
    found_[word] = found_[word] || bytes.find(kWords[word]) != std::string_view::npos;
  }
}

}  // namespace orvane
