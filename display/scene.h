#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "display/palette.h"
#include "gps/fix.h"
#include "gps/satellite_view.h"
#include "gps/sentence_stats.h"

namespace vgps {

enum class ReceiverState { notConnected, noData, noFix, fix };

// After so long without a line the receiver counts as silent: five epochs of an ordinary one.
inline constexpr uint32_t kSilentAfterMs = 5000;

// `dataAgeMs`: since the last line; meaningless before `dataSeen`.
ReceiverState receiverState(bool connected, bool dataSeen, uint32_t dataAgeMs, int32_t fixStatus);

// All that a screen may look at: values of one moment, nothing to ask the system for. The same
// scene gives the same picture.
struct Scene {
  FixRecord fix;
  SatelliteTable satellites;
  bool satellitesInUseKnown = false;
  std::span<const ViewedSatellite> view;  // lives as long as the drawing
  SentenceStats stats;
  double maxSpeed = 0;     // in `speedUnit`
  double maxAltitude = 0;  // metres

  int32_t speedUnit = 0;
  int32_t altitudeUnit = 0;
  int32_t utcOffsetMinutes = 0;  // UTC minus local time

  ReceiverState state = ReceiverState::notConnected;
  std::string source;     // "COM3, 9600 baud", "Simulation"; empty when none was chosen
  std::string notice;     // one line for the person, mostly empty
  bool fixSeen = false;   // a sentence with a fix has come since the connection was opened
  uint32_t fixAgeMs = 0;  // since then
  double sentencesPerSecond = 0;

  Palette palette = dayPalette();
};

}  // namespace vgps
