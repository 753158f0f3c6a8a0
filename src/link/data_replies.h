// Replies that begin with "#": the answers of UPSes that do not know "MD" to the two other
// questions for their data.
#pragma once

#include <optional>
#include <string_view>

namespace orvane {

// The answer to "F": "#MMM.M QQQ SS.SS RR.R", four fields between blanks, the last one the rated
// frequency. A field that is no number above 0 is not known.
struct RatingReply {
  std::optional<float> volts;          // of the output
  std::optional<float> amperes;        // of the output
  std::optional<float> battery_volts;  // nominal, of the whole battery
};

// The answer to "I": "#", 15 columns of the company, 10 of the model and 10 of the version, a blank
// between two of them. Without the blanks round them; empty where the UPS says nothing.
struct NameReply {
  std::string_view company;
  std::string_view model;
  std::string_view version;
};

// The reply in `line`, which has no line end. Nothing when the line has not its form. A name reply
// may end early, holds printable ASCII characters only, and has not the form of the other one.
std::optional<RatingReply> ReadRatingReply(std::string_view line);
std::optional<NameReply> ReadNameReply(std::string_view line);

}  // namespace orvane
