// Another program that is run without being waited for.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace orvane {

// Starts the program with one argument and no input. `on_end` runs from the event loop when it has
// ended well, with what it wrote to standard output; or with the reason why not, in words, at the
// latest after `limit`, when the program is ended.
void RunProgram(const std::string& path, const std::string& argument,
                std::chrono::milliseconds limit,
                std::function<void(bool ran, const std::string& text)> on_end);

}  // namespace orvane
