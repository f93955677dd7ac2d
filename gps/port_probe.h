#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/serial_port.h"

namespace vgps {

enum class ProbeResult {
  found,       // a position sentence came
  noPosition,  // NMEA sentences, but neither RMC nor GGA
  notThere,
  busy,
  noPermission,
  cannotOpen,
  noData,
  notNmea,
  sirfBinary,  // messages of the binary protocol of SiRF receivers
  wrongSpeed,
};

struct ProbeAnswer {
  ProbeResult result = ProbeResult::noData;
  std::string talker;             // of the position sentence: "GP", "GN"
  double sentencesPerSecond = 0;  // of all kinds together
  bool hasFix = false;            // a sentence with a position has come
  int32_t satellites = 0;         // used for it, as GGA counts them; 0: not told
  bool ais = false;               // ships' messages came
};

// "found", "not there", ...
const char* probeResultName(ProbeResult result);

// Classifies the bytes received in `ms` milliseconds. A device that sends RMC or GGA with a "$G"
// talker is a receiver; mostly non-text bytes indicate the wrong baud rate.
ProbeAnswer judgeBytes(std::string_view bytes, uint32_t ms);

// Called repeatedly while listening, with the bytes received so far and the time; true ends the
// listening.
using ProbeEnd = std::function<bool(std::string_view bytes, uint32_t ms)>;

// Opens the port, listens for `limitMs` or until `end` says so, and closes it.
ProbeAnswer probePort(SerialPort& port, const std::string& path, uint32_t speed, uint32_t limitMs,
                      const ProbeEnd& end = {});

// One read of a port that is opened for it: up to 1,000 bytes, over when the line pauses. True when
// they begin with "$GP". `error` says why it could not be opened; `cancelled` may be empty.
bool answersAsGps(SerialPort& port, const std::string& path, uint32_t speed, PortError& error,
                  const std::function<bool()>& cancelled = {});

}  // namespace vgps
