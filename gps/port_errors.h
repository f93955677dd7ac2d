#pragma once

#include <array>
#include <string>

#include "base/texts.h"
#include "platform/serial_port.h"

namespace vgps {

// The texts for why a port cannot be opened.
struct PortErrorWords {
  PortError error;
  Text sentence;          // a sentence that names the port
  Text answer;            // for a list, next to the port's name
  const char* predicate;  // follows the port's name, on the command line
};

inline constexpr std::array<PortErrorWords, 5> kPortErrors = {{
    {PortError::notFound, Text::portMissing, Text::finderNoPort, "was not found"},
    {PortError::busy, Text::portBusy, Text::finderBusy, "is in use by another program"},
    {PortError::noPermission, Text::portForbidden, Text::finderForbidden,
     "cannot be opened: permission denied"},
    {PortError::settings, Text::portUnusable, Text::finderUnusable,
     "rejected the serial port settings"},
    {PortError::other, Text::portUnusable, Text::finderUnusable, "cannot be used as a serial port"},
}};

// An error without a row of its own counts as `other`.
constexpr const PortErrorWords& wordsOf(PortError error) {
  for (const PortErrorWords& row : kPortErrors) {
    if (row.error == error) return row;
  }
  return kPortErrors.back();
}

// "COM3 is in use by another program."
inline std::string portProblem(PortError error, const std::string& port) {
  return textWith(wordsOf(error).sentence, port);
}

}  // namespace vgps
