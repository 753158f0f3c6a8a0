#include "link/data_replies.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "link/numbers.h"
#include "platform/text.h"

namespace orvane {
namespace {

constexpr char kMark = '#';
constexpr std::size_t kRatings = 4;

// Columns of a name reply, counted from 0.
constexpr std::size_t kCompany = 1, kCompanyWidth = 15;
constexpr std::size_t kModel = 17, kModelWidth = 10;
constexpr std::size_t kVersion = 28, kVersionWidth = 10;
constexpr std::size_t kNameReply = kVersion + kVersionWidth;

bool IsNumberOrDashes(std::string_view field) {
  return field.find_first_not_of("0123456789.-") == std::string_view::npos;
}

std::optional<float> AboveZero(std::string_view field) {
  const auto value = ReadSingle(field);
  return value && *value > 0 ? value : std::nullopt;
}

}  // namespace

std::optional<RatingReply> ReadRatingReply(std::string_view line) {
  if (!line.starts_with(kMark)) return std::nullopt;
  line.remove_prefix(1);
  std::array<std::string_view, kRatings> fields;
  std::size_t count = 0;
  for (line = Trimmed(line); !line.empty(); line = Trimmed(line)) {
    const std::string_view field = line.substr(0, line.find(' '));
    if (count == kRatings || !IsNumberOrDashes(field)) return std::nullopt;
    fields[count++] = field;
    line.remove_prefix(field.size());
  }
  if (count < kRatings) return std::nullopt;
  return RatingReply{AboveZero(fields[0]), AboveZero(fields[1]), AboveZero(fields[2])};
}

std::optional<NameReply> ReadNameReply(std::string_view line) {
  if (!line.starts_with(kMark) || ReadRatingReply(line)) return std::nullopt;
  const auto printable = [](char c) { return c >= ' ' && c <= '~'; };
  if (!std::all_of(line.begin(), line.end(), printable)) return std::nullopt;
  while (line.ends_with(' ')) line.remove_suffix(1);
  if (line.size() > kNameReply) return std::nullopt;
  for (const std::size_t between : {kModel - 1, kVersion - 1}) {
    if (line.size() > between && line[between] != ' ') return std::nullopt;
  }
  const auto field = [line](std::size_t first, std::size_t width) {
    return line.size() > first ? Trimmed(line.substr(first, width)) : std::string_view();
  };
  return NameReply{field(kCompany, kCompanyWidth), field(kModel, kModelWidth),
                   field(kVersion, kVersionWidth)};
}

}  // namespace orvane
