#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/screens.h"
#include "display/palette.h"
#include "gps/fix.h"
#include "gps/satellite_view.h"
#include "gps/sentence_stats.h"

// What a screen shows, and how old the shown values are.
namespace vgps {

enum class ReceiverState {
  notConnected,
  noData,
  noFix,
  fix,
  lost,  // no data anymore; trying to reopen the port
};

// Without a line for this time, the receiver counts as silent: five epochs of a typical one.
inline constexpr uint32_t kSilentAfterMs = 5000;

// `dataAgeMs` is the time since the last line, ignored unless `dataSeen`.
ReceiverState receiverState(bool connected, bool dataSeen, uint32_t dataAgeMs, int32_t fixStatus);

// How up to date a value is, based on its age.
enum class Freshness {
  current,
  stale,    // drawn in gray
  expired,  // dashes
};
inline constexpr uint32_t kStaleAfterMs = 5000;
inline constexpr uint32_t kExpiredAfterMs = 30000;
Freshness freshnessOf(uint32_t ageMs);

// The ages of the shown values in milliseconds. Each value turns gray and then into dashes by its
// own age.
struct ValueAges {
  uint32_t position = 0;
  uint32_t motion = 0;  // speed and course
  uint32_t altitude = 0;
  uint32_t time = 0;
  uint32_t used = 0;      // number of satellites used in the fix
  uint32_t view = 0;      // satellites in view
  uint32_t dilution = 0;  // of precision (DOP values)
};

// What the program has counted since it started or the trip was reset.
struct SceneStatistics {
  double totalSeconds = 0;
  double connectedSeconds = 0;
  double recordingSeconds = 0;  // paused and playing count as well
  double movingSeconds = 0;     // both while the receiver told a speed
  double stoppedSeconds = 0;
  double distance = 0;    // of the recording, in `distanceUnit`
  double distance3d = 0;  // of all recordings, likewise
  int32_t distanceUnit = 0;
};

// The part of the raw log that is in view.
struct SceneRawLog {
  struct Row {
    std::string time;
    std::string text;
  };
  std::vector<Row> rows;  // the newest last
  size_t kept = 0;        // rows in all
  size_t matching = 0;    // that contain the filter
  size_t newer = 0;       // of them, below the view
  std::string filter;
  bool paused = false;
};
inline constexpr size_t kMostRawLogRows = 300;  // more than fit on any screen

// Everything a screen may draw: a snapshot, with no calls to the system. The same scene always
// produces the same image.
struct Scene {
  FixRecord fix;
  SatelliteTable satellites;
  bool satellitesInUseKnown = false;
  std::span<const ViewedSatellite> view;  // valid while drawing
  SentenceStats stats;
  double maxSpeed = 0;     // in `speedUnit`
  double maxAltitude = 0;  // meters

  double accuracy = 0;  // of the position, meters, an estimate; 0: unknown

  bool newMaxSpeed = false;     // has just been reached
  bool newMaxAltitude = false;  // likewise

  int32_t speedUnit = 0;
  int32_t altitudeUnit = 0;
  int32_t utcOffsetMinutes = 0;  // UTC minus local time
  int32_t positionFormat = 0;    // PositionFormat
  int32_t utmEllipsoid = 0;      // for UTM positions

  ReceiverState state = ReceiverState::notConnected;
  std::string source;     // "COM3, 9600 baud", "Simulation"; empty when none was chosen
  std::string notice;     // one line for the user, mostly empty
  std::string message;    // what came in no sentence: of binary input, of a sensor; mostly empty
  bool logging = false;   // what is received is written to a file
  uint64_t logBytes = 0;  // that it has
  bool fixSeen = false;   // a sentence with a fix has come since the connection was opened
  uint32_t fixAgeMs = 0;  // since the last of them
  ValueAges ages;
  double sentencesPerSecond = 0;

  int32_t trackState = 0;  // 0 idle, 1 recording, 2 paused, 3 playing
  size_t trackPoints = 0;
  std::string trackLength;   // "4.56 Km"
  std::string trackWaiting;  // why nothing is recorded; mostly empty

  Screen screen = Screen::gps;
  SceneStatistics statistics;
  SceneRawLog rawLog;
  uint64_t readoutDelayMicros = 0;  // from the last byte to the drawing; 0: not measured

  Palette palette = dayPalette();
  float density = 1;     // of the screen: pixels per 1/96 inch
  float fontFactor = 1;  // the user's text size factor, at most 5
};

// The quality number of a GGA sentence in words.
std::string_view fixQualityText(int32_t fixStatus);
// Fixes with a higher quality number do not come from satellites: dead reckoning, manual input,
// simulation.
inline constexpr int32_t kLastSatelliteQuality = 5;

// The number of satellites used in the fix, as counted by GGA or listed by GSA; 0 if unknown.
int32_t usedSatellites(const Scene& scene);

}  // namespace vgps
