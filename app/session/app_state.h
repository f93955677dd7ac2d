#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/session/line_notes.h"
#include "app/session/link.h"
#include "app/session/paths.h"
#include "app/session/raw_log.h"
#include "app/session/recorder.h"
#include "app/session/repaint.h"
#include "app/session/session_gps_hooks.h"
#include "app/session/statistics.h"
#include "app/settings/config_store.h"
#include "app/settings/settings.h"
#include "base/screens.h"
#include "base/texts.h"
#include "geo/units.h"
#include "gps/accuracy.h"
#include "gps/epoch.h"
#include "gps/gps_fix.h"
#include "library/track_library.h"
#include "platform/clock.h"
#include "platform/sounds.h"
#include "platform/ui_thread.h"
#include "platform/window.h"
#include "track/recording.h"
#include "track/track.h"

namespace vgps {

// The services the program depends on. Tests can replace any of them.
struct Platform {
  const Clock& clock;
  Sounds& sounds;
  UiThread& uiThread;
  Window& window;
  std::function<std::unique_ptr<SerialPort>()> makePort;
  LocationSensorManager* sensors = nullptr;
  // The rest may be empty if the system does not provide it.
  std::function<std::vector<PortName>()> listPorts = {};  // called by readers too
  std::function<bool(const DateTime& utc)> setSystemTime = {};
  // Starts the system's installer for mobile devices with this argument. Returns false if there is
  // none.
  std::function<bool(const std::string& argument)> runDeviceInstaller = {};
  LibraryDisk disk = {};
  // Where the user keeps documents; empty when there is no such folder.
  std::function<std::string()> documentsFolder = {};
};

// When each kind of shown value was last received.
struct LastReceived {
  struct Arrival {
    bool ever = false;
    uint32_t tick = 0;  // milliseconds
  };
  Arrival position;  // from a sentence with a fix, like `motion` and `altitude`
  Arrival motion;    // speed and course
  Arrival altitude;
  Arrival time;
  Arrival used;      // number of satellites used
  Arrival view;      // satellites in view
  Arrival dilution;  // of precision (DOP values)
  Arrival quality;   // fix quality, from a sentence that reports more than "valid"
  Arrival errors;    // the receiver's own error estimate (GST); reset with each connection
  Arrival noise;     // unrecognized bytes; reset with each connection, like `quality`
};

// The user interface's copy of the receiver data, taken while the reader is blocked. Drawing,
// recording, and timers use this copy, never the live fix.
struct UiFix {
  FixRecord fix;
  SatelliteTable satellites;
  std::vector<ViewedSatellite> view;
  uint32_t viewRevision = 0;
  SentenceStats stats;
  double maxSpeed = 0;     // from the parser, in the unit selected at that time
  double maxAltitude = 0;  // from the parser
  // Since this source was opened or the trip was reset; independent of the selected unit.
  Speeds fastest{};
  double highest = 0;            // meters
  double exactHighest = 0;       // with the decimals that GGA had
  std::optional<GstReport> gst;  // the last one of this connection
  int32_t inputProtocol = kNmeaText;
  bool satellitesInUseKnown = false;
  bool dataSeen = false;      // a line has been received since connecting
  uint32_t lastDataTick = 0;  // when the last line was received
  bool fixSeen = false;       // a sentence or message with a fix has been received since connecting
  uint32_t lastFixTick = 0;
  LastReceived arrivals;        // including those from earlier connections
  int32_t quality = 0;          // of the fix: 1 GPS, 2 differential, ...
  uint64_t lastByteMicros = 0;  // when the end of the newest line arrived; 0 in a replay
};

// Features that other rooms provide. An empty function means that the feature is not available.
struct AppExtensions {
  // Converts a track or GPX file to simulation lines; an empty path means the last track of the
  // library.
  std::function<bool(const std::string& path, std::vector<std::string>& lines)> simulationFrom;
  // Called with every complete fix, whether it is recorded or not.
  std::function<void(const FixRecord&)> takeFix;
  // Called with each complete fix during playback.
  std::function<void(const UiFix&)> followRoute;
  // What timers 3 and 5 do, on worker threads.
  std::function<void()> reportPosition;
  std::function<void()> updatePursue;
};

// The warning about the next turn of a track that is being played.
struct TurnWarning {
  bool raised = false;
  int32_t repeatCount = 0;
  bool done = false;  // warned often enough for this turn
};

enum class Projection : int32_t {
  cartesian2d = 341,
  polar2d = 342,
  cartesian3d = 350,
  polar3d = 360
};
// The simulation data.
enum class SimulationData : uint8_t { trip, walk, loaded };
enum class ColorScheme : uint8_t { day, night, custom };

// Display updates pending from handled receiver messages. Skipped messages add none.
struct PendingDisplay {
  bool waiting = false;  // a message was handled since the last repaint
  // The number of further messages during which the displays highlight...
  int32_t messageCountdown = 0;  // ...`lastMessageText`
  uint32_t messageSource = 0;    // the generation of the source that sent it
  int32_t maximumCountdown = 0;  // ...which of the maximum values are new
  bool newMaxSpeed = false;
  bool newMaxAltitude = false;
  double maxSpeed = 0;  // km/h, when the last message was handled
  double maxAltitude = 0;
};

struct AppState;

// Passes the recorder's requests on to the parts of the program.
class SessionRecorderHooks : public RecorderHooks {
 public:
  // `app` must outlive this.
  explicit SessionRecorderHooks(AppState& app) : app_(app) {}

  RecorderPaths places() const override;
  ExclusiveOpener opener() const override;
  bool askToSave() override;
  void startTimer() override;
  void stopTimer() override;
  void playSound(const char* name) override;
  void trackChanged() override;
  void journalRefused(const std::string& path) override;
  void journalFailed() override { journalFailed_ = true; }
  void journalWorks() override { journalWorks_ = true; }

  // Whether the disk has refused points since the last call.
  bool takeJournalFailure() { return journalFailed_.exchange(false); }
  // Whether it takes them again since the last call.
  bool takeJournalWorks() { return journalWorks_.exchange(false); }

 private:
  AppState& app_;
  std::atomic<bool> journalFailed_{false};
  std::atomic<bool> journalWorks_{false};
};

// The complete application state. Created once at program entry and passed down from there.
struct AppState {
  explicit AppState(Platform platformToUse, const XmlFiles& files = systemFiles());

  Platform platform;
  AppExtensions extensions;
  AppPaths paths;
  ConfigStore config;
  Settings settings;

  SessionGpsHooks hooks;
  GpsState gps;
  GpsFix fix;  // written by the reader; the user interface copies it into `shown`
  UiFix shown;
  Link link;

  SessionRecorderHooks recorderHooks;
  Recorder recorder;
  EpochFixes epochs;
  uint64_t epochsOffered = 0;
  int32_t backupCountdown = 0;  // minutes

  Statistics statistics;
  bool insideForbiddenZone = false;
  TurnWarning turnWarning;

  Screen currentScreen = Screen::gps;
  Screen previousScreen = Screen::gps;
  Projection projection = Projection::cartesian2d;
  ColorScheme scheme = ColorScheme::day;
  RepaintThrottle repaints;
  int32_t frameSkip = 0;  // handle one of N line messages; 0 and 1 handle all
  int32_t frameCountdown = 0;
  PendingDisplay pendingDisplay;

  bool searchOffered = false;  // on this connection, because of a wrong baud rate
  SimulationData simulationData = SimulationData::trip;
  uint64_t logBytes = 0;       // size of the log file while it is written; updated occasionally
  std::string standingNotice;  // takes precedence over `notice` while a question is open
  std::string notice;          // one line shown in the status line for a while
  uint32_t noticeTick = 0;
  LinesTold linesTold;
  size_t jumpsTold = 0;
  RawLog rawLog;                // of the raw log screen, while it shows
  std::string lastMessageText;  // "Sirf msg ..." of binary input, "SENS msg: ..." of a sensor

  // From the last byte of the data until it was drawn.
  uint64_t readoutDelayMicros = 0;
  uint64_t drawnByteMicros = 0;  // the lastByteMicros it was measured for
};

// Whether a fix was received within the last five seconds.
bool hasCurrentFix(const AppState& app);

// Shows one line in the status line for ten seconds.
void showNotice(AppState& app, std::string_view text);
// The notice, or an empty text once its time is over.
std::string_view currentNotice(const AppState& app);

// Asks a yes/no question; No is the default.
bool askQuestion(AppState& app, Text text);

// Redraws the current screen, at most every 800 ms. Returns false if it is too early.
bool repaintThrottled(AppState& app);
// Redraws immediately, after a key or button press.
void repaintNow(AppState& app);

// Updates `logBytes` with the size of the log file.
void measureLog(AppState& app);

// Call this after drawing a screen that shows the fix.
void noteDrawn(AppState& app);

}  // namespace vgps
