#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/app_hooks.h"
#include "app/repaint.h"
#include "gps/gps_fix.h"
#include "platform/clock.h"
#include "platform/sounds.h"
#include "platform/ui_thread.h"
#include "platform/window.h"

namespace vgps {

// What the program runs on; every part can be a test's own.
struct Platform {
  const Clock& clock;
  Sounds& sounds;
  UiThread& door;
  Window& window;
  std::function<std::unique_ptr<SerialPort>()> makePort;
  LocationSensorManager* sensors = nullptr;
};

enum TrackState : int32_t { kIdle = 0, kRecording = 1, kPaused = 2, kPlaying = 3 };

// The user interface's own copy of what the receiver said, taken while the reader waits. Drawing,
// recording and timers look at this and never at the live fix.
struct UiFix {
  FixRecord fix;
  SatelliteTable satellites;
  std::vector<ViewedSatellite> view;
  uint32_t viewRevision = 0;
  SentenceStats stats;
  double maxSpeed = 0;
  double maxAltitude = 0;
  int32_t epochSentenceKind = 0;
  int32_t inputProtocol = kNmeaText;
  bool satellitesInUseKnown = false;
  bool dataSeen = false;      // a line has come since the connection was opened
  uint32_t lastDataTick = 0;  // when it came
  bool fixSeen = false;       // likewise a position sentence or message with a fix
  uint32_t lastFixTick = 0;
};

// Everything that the program knows, once. Made by the program's entry, handed down from there.
struct AppState {
  explicit AppState(Platform platformToUse);

  Platform platform;
  AppHooks hooks;
  GpsState gps;
  GpsFix fix;  // written by the reader; the user interface copies it into `shown`
  UiFix shown;

  int32_t trackState = kIdle;
  int32_t currentScreen = 1;
  RepaintThrottle repaints;

  int32_t frameSkip = 0;  // of N line messages one is shown; 0 and 1 show all
  int32_t frameCountdown = 0;

  uint64_t epochsOffered = 0;
  // A complete fix for the recording or the route, whichever is going on.
  std::function<void(const UiFix&)> offerFix;

  std::string sourceName;  // of the last connection, for a person: "COM3, 9600 baud"
  std::string notice;      // one line that the status shows
  bool nightColours = false;

  std::string lastSensorText;   // "SENS msg: ..."
  std::string lastMessageText;  // "Sirf msg ...", of binary input
};

}  // namespace vgps
