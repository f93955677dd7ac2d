#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "gps/connection.h"
#include "gps/fix.h"
#include "gps/framing.h"
#include "gps/gps_state.h"
#include "gps/lines.h"
#include "gps/nmea.h"

namespace vgps {

// The current fix and its connection. Created once; exists as long as the program.
//
// The functions forward to the parser (gps/nmea.h) and to the parts below; see their headers for
// details and threads.
struct GpsFix : FixRecord, ConnectionStatus {
  explicit GpsFix(GpsState& gpsState)
      : satellites(std::make_unique<SatelliteTable>()), state(gpsState) {
    unknown = kAllUnknown;
  }

  std::unique_ptr<SatelliteTable> satellites;
  GpsState& state;

  Lines lines{*this};
  Framing framing{lines, state};
  Connection connection{*this};

  // Parses one line, without its line ending. Always fills `out`; changes the fix only if `apply`
  // is set, but updates the maximum speed and altitude in any case. Returns false if the text does
  // not start with "$".
  bool parseSentence(std::string_view text, NmeaSentence& out, bool apply);

  void setPort(std::string_view portName, uint32_t speed) { connection.setPort(portName, speed); }
  bool open(bool simulation, bool gpsApi, bool sensorApi, bool probeOnly) {
    return connection.open(simulation, gpsApi, sensorApi, probeOnly);
  }
  bool close(bool silent) { return connection.close(silent); }
  PortRead read(uint32_t generation, std::span<char> buffer, size_t& got, int timeoutMs) {
    return connection.read(generation, buffer, got, timeoutMs);
  }
  bool stopReaders(int timeoutMs) { return connection.stopReaders(timeoutMs); }

  // Received bytes, and complete lines. Call these on the reader thread, or on the only thread of a
  // replay.
  void onReceive(std::string_view bytes);
  // The same for at most one line: removes and counts stray characters before a sentence, then
  // calls `onReceive`.
  void receiveLine(std::string_view bytes);
  void processLines(std::string_view bytes) { lines.process(bytes); }
};

}  // namespace vgps
