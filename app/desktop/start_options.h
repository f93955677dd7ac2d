#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "gps/gps_fix.h"

namespace vgps {

// The command line of the desktop program.
struct StartOptions {
  std::string port;
  uint32_t speed = kDefaultBaudRate;
  bool simulate = false;

  bool log = false;  // -log: log the stream from the first byte
  // -simtrack, -simruntrack: use a track as simulation data, either a file or, without one, the
  // last track of the library. The second one also connects to it.
  bool simulateTrack = false;
  bool runTrack = false;
  std::string trackPath;
  bool installPocketPc = false;  // -as1: the descriptor for the older mobile devices
  bool installMobile5 = false;   // -as2

  std::string unknownArguments;  // unrecognized arguments, separated by blanks

  bool connects() const { return simulate || !port.empty(); }
};

// Parses "--port COM3 --speed=4800 --simulate", with a blank or "=" before the value, and the
// switches with a single dash. Unknown switches are ignored, so that an old shortcut with a switch
// from another version still works.
StartOptions parseStartOptions(std::span<const std::string> arguments);

}  // namespace vgps
