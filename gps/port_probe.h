#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/serial_port.h"

namespace vgps {

enum class ProbeResult {
  found,       // received a position sentence
  noPosition,  // NMEA sentences, but neither RMC nor GGA
  notFound,
  busy,
  noPermission,
  cannotOpen,
  noData,
  notNmea,
  sirfBinary,  // messages in the binary SiRF protocol
  wrongSpeed,
};

struct ProbeReport {
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
ProbeReport classifyBytes(std::string_view bytes, uint32_t ms);

// Called repeatedly while listening, with the bytes received so far and the elapsed time. Returns
// true to stop listening.
using ProbeEnd = std::function<bool(std::string_view bytes, uint32_t ms)>;

// Opens the port, listens for `limitMs` or until `end` returns true, and closes it.
ProbeReport probePort(SerialPort& port, const std::string& path, uint32_t speed, uint32_t limitMs,
                      const ProbeEnd& end = {});

// Opens the port and reads once: up to 1,000 bytes, until a pause. Returns true if they start with
// "$GP". If the port could not be opened, `error` tells why. `cancelled` may be empty.
bool sendsGps(SerialPort& port, const std::string& path, uint32_t speed, PortError& error,
              const std::function<bool()>& cancelled = {});

}  // namespace vgps
