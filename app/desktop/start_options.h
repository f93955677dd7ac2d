#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "gps/gps_fix.h"

namespace vgps {

// What the command line of the desktop program says.
struct StartOptions {
  std::string port;
  uint32_t speed = kDefaultBaudRate;
  bool simulate = false;

  bool log = false;  // -log: the stream is logged from the first byte
  // -simtrack, -simruntrack: a track as data of the simulation, from a file or, without one, the
  // last of the library; the second also connects to it.
  bool simulateTrack = false;
  bool runTrack = false;
  std::string trackPath;
  bool installPocketPc = false;  // -as1: the descriptor for the older mobile devices
  bool installMobile5 = false;   // -as2

  std::string unknownArguments;  // the arguments that mean nothing, with a blank between them

  bool connects() const { return simulate || !port.empty(); }
};

// "--port COM3 --speed=4800 --simulate", with a blank or "=" before the value, and the switches
// with one dash. What it does not know is passed over, so that an old shortcut with a switch of
// another version still starts the program.
StartOptions parseStartOptions(std::span<const std::string> arguments);

}  // namespace vgps
