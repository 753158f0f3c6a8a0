// `SaverApp.INI`, what the companion leaves behind for the shutdown record viewer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "companion/application.h"

namespace orvane::companion {

// Longest value that the viewer reads whole, in bytes.
inline constexpr std::size_t kLongestValue = 99;

// The whole file. `Main` counts and names the applications that closed; each has a section of its
// own with its title and the files that it wrote. Those that stayed open are counted and named
// there, too, under other keys, which the viewer leaves alone.
std::string ReportText(const std::vector<Application>& applications);

// `text` as a value: one line of valid UTF-8, cut to `limit` bytes between two characters.
std::string FitText(std::string_view text, std::size_t limit = kLongestValue);

// `path` as a value: of one that is too long its end, behind three points, since the file's name
// tells most.
std::string FitPath(std::string_view path, std::size_t limit = kLongestValue);

}  // namespace orvane::companion
