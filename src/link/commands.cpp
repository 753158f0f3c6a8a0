#include "link/commands.h"

#include <string>

namespace orvane {

bool SendCommand(SerialPort& port, std::string_view command) {
  std::string text(command);
  text += '\r';
  return port.Write(text);
}

}  // namespace orvane
