// Builds status replies column by column.
#pragma once

#include <string>

namespace orvane::test {

struct StatusFrame {
  std::string input = "230.0";
  std::string output = "230.0";
  std::string load = "035";
  std::string frequency = "50.0";
  std::string battery = "2.27";
  std::string temperature = "25.0";
  std::string bits = "0000";
  std::string more_bits = "0001";  // kind of UPS, self-test, shutdown, beeper

  std::string Text() const {
    return "(" + input + " ###.# " + output + " " + load + " " + frequency + " " + battery + " " +
           temperature + " " + bits + more_bits + "\r";
  }
};

}  // namespace orvane::test
