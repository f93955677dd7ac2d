#include "app/commands.h"

#include <algorithm>
#include <array>

#include "app/command_handlers.h"
#include "base/texts.h"

namespace vgps {
namespace {

constexpr uint32_t kNotAvailable = 700;

constexpr CommandRow one(uint32_t number, CommandHandler handler, const char* what,
                         CommandPredicate checked = nullptr, CommandPredicate enabled = nullptr) {
  return {number, number, handler, what, checked, enabled};
}

// The number itself is the argument, or nobody has given the numbers a meaning.
constexpr CommandRow range(uint32_t first, uint32_t last, CommandHandler handler,
                           const char* what) {
  return {first, last, handler, what, nullptr, nullptr};
}

constexpr CommandRow view(uint32_t number, const char* what) {
  return one(number, showScreen, what, isScreen);
}

constexpr CommandRow missing(uint32_t number, const char* what) {
  return one(number, notBuilt, what);
}

constexpr CommandRow missing(uint32_t first, uint32_t last, const char* what) {
  return range(first, last, notBuilt, what);
}

// Where families overlap the more specific row has the number: calculators among the views, go-to
// and waypoints among the views of tracks and zones.
constexpr auto kRows = std::to_array<CommandRow>({
    // clang-format off
    one(101, openOptionDialog, "GPS setup"),
    one(102, connectFromSettings, "connect", nullptr, isDisconnected),
    one(103, disconnect, "disconnect", nullptr, isConnected),
    one(104, gpsTimeToSystem, "GPS time to system", nullptr, hasFix),
    one(105, openOptionDialog, "find my receiver"),
    one(106, connectSimulation, "start the simulation", isSimulating),

    missing(195, "support forum"),
    missing(196, "donate"),
    missing(197, "check for updates"),
    one(198, showAbout, "about"),
    one(199, closeProgram, "shutdown"),

    view(201, "GPS"),
    range(202, 203, ignoreView, "no screen"),
    view(204, "map"),
    view(205, "satellites"),
    view(206, "tracks"),
    view(207, "waypoints"),
    range(208, 208, ignoreView, "no screen"),
    view(209, "statistics"),
    view(210, "custom maps"),
    view(211, "sun"),
    view(212, "moon"),
    view(213, "path"),
    view(214, "compass"),
    view(215, "speedometer"),
    view(216, "near waypoints"),
    view(217, "contacts"),
    view(218, "space waypoints"),
    view(219, "flight"),
    range(220, 220, ignoreView, "no screen"),
    missing(221, "distance calculator"),
    missing(222, "area calculator"),
    missing(223, "volume calculator"),
    range(224, 228, ignoreView, "no screen"),
    view(229, "drive"),
    range(230, 230, ignoreView, "no screen"),
    view(231, "sport"),
    view(232, "accelerometer"),
    view(299, "raw log"),

    one(321, chooseColours, "day colours", isColourScheme),
    one(322, chooseColours, "night colours", isColourScheme),
    one(323, chooseColours, "custom colours", isColourScheme),

    missing(331, "zoom in"),
    missing(332, "zoom out"),
    missing(333, "move left"),
    missing(334, "move right"),
    missing(335, "move up"),
    missing(336, "move down"),
    missing(337, "rotate left"),
    missing(338, "rotate right"),
    missing(339, "whole map"),
    missing(340, "centre the position"),
    one(341, chooseProjection, "Cartesian 2D", isProjection),
    one(342, chooseProjection, "polar 2D", isProjection),
    missing(343, 349, "map, without a meaning yet"),
    one(350, show3dMap, "3D map, Cartesian 3D", isProjection),
    missing(351, 359, "map, without a meaning yet"),
    one(360, chooseProjection, "polar 3D", isProjection),
    missing(361, "send position as GPWPL"),
    one(371, switchLog, "GPS log on", isLogState),
    one(372, switchLog, "GPS log off", isLogState),
    one(378, chooseSimulationMode, "simulation: tapping", isSimulationMode),
    one(379, chooseSimulationMode, "simulation: timer", isSimulationMode),
    one(380, chooseSimulationMode, "simulation: point", isSimulationMode),
    missing(381, "simulation data: edit"),
    one(382, loadSimulation, "simulation data: load"),
    missing(383, "simulation data: save"),
    one(384, stepSimulation, "simulation: next step"),
    missing(385, 389, "simulation, without a meaning yet"),
    one(399, clearRawLog, "log clear"),

    missing(401, "switch to SiRF binary"),
    missing(402, "switch to NMEA"),
    missing(403, 403, "SiRF, without a meaning yet"),
    missing(404, "debug NMEA on"),
    missing(405, "debug NMEA off"),
    missing(406, 410, "SiRF, without a meaning yet"),
    missing(411, "rate of GGA"),
    missing(412, "rate of GLL"),
    missing(413, "rate of GSA"),
    missing(414, "rate of GSV"),
    missing(415, "rate of RMC"),
    missing(416, "rate of VTG"),
    missing(417, 420, "SiRF, without a meaning yet"),
    missing(421, "reset cold"),
    missing(422, "reset warm"),
    missing(423, "reset hot"),
    missing(424, "reset factory"),
    missing(425, 427, "SiRF, without a meaning yet"),
    missing(428, "WAAS on"),
    missing(429, "WAAS off"),

    missing(501, "camera"),
    missing(502, 507, "camera and geotagging"),

    one(801, resizeScreen, "240x320"),
    one(802, resizeScreen, "320x240"),
    one(803, resizeScreen, "240x240"),
    one(804, resizeScreen, "320x320"),
    one(805, resizeScreen, "640x480"),
    one(806, resizeScreen, "320x480"),

    one(998, confirmPopup, "OK of a pop-up menu"),
    one(999, goBack, "back of a pop-up menu"),

    missing(1101, 1106, "measuring points"),

    one(1202, startRecording, "start recording", nullptr, isIdle),
    one(1203, pauseOrResumeRecording, "pause or resume", isPaused, isNotPlaying),
    one(1204, endRecording, "end recording or playing", nullptr, isNotIdle),
    missing(1205, "go to waypoint"),
    missing(1206, "go to point"),
    missing(1207, "go home"),
    one(1208, thinTrack, "thin", nullptr, hasFinishedTrack),
    one(1209, reverseTrack, "reverse", nullptr, hasFinishedTrack),
    one(1210, joinTrack, "join", nullptr, hasFinishedTrack),
    missing(1211, "split"),
    one(1212, saveTrack, "save", nullptr, hasFinishedTrack),
    one(1213, openTrack, "open a track file", nullptr, isIdle),
    one(1214, discardTrack, "discard", nullptr, hasFinishedTrack),
    one(1215, markPoint, "mark", nullptr, takesMarks),
    one(1216, recordPointNow, "record this position", nullptr, takesMarks),
    missing(1217, "trim"),
    missing(1218, "play"),
    missing(1219, 1220, "recording, without a meaning yet"),
    one(1221, choosePreset, "walking", isPreset),
    one(1222, choosePreset, "driving", isPreset),
    one(1223, choosePreset, "flying", isPreset),
    missing(1224, "return trip"),
    missing(1230, 1239, "track and zone views"),
    missing(1240, "add waypoint"),
    missing(1241, "edit waypoint"),
    missing(1242, "delete waypoint"),
    missing(1243, "add category"),
    missing(1244, "delete category"),
    missing(1245, "go to, route planning"),
    missing(1246, 1249, "waypoints, without a meaning yet"),
    missing(1250, "go to, route planning"),
    missing(1251, 1260, "track and zone views"),
    missing(1261, 1277, "go to, route planning"),
    missing(1278, 1284, "track and zone views"),
    one(1285, wanderAround, "wander around", nullptr, isIdle),
    one(1286, trackChanged, "a track has changed, between the parts of the program"),

    missing(1301, "KML export"),
    missing(1302, "KML import"),
    missing(1303, 1310, "KML, without a meaning yet"),
    missing(1311, "LOC export"),
    missing(1312, "LOC import"),
    missing(1313, 1320, "LOC, without a meaning yet"),
    missing(1321, "GPX export"),
    missing(1322, "GPX import"),
    missing(1323, 1333, "GPX, without a meaning yet"),
    missing(1351, 1363, "associations, sightseeing lists"),
    missing(1399, "online map"),
    missing(1400, "live position"),
    missing(1501, "sport run"),
    missing(1502, 1523, "sport runs"),
    missing(1891, "online map at the position"),

    one(1901, openOptionDialog, "map options"),
    one(1902, openOptionDialog, "speed options"),
    one(1903, openOptionDialog, "settings"),
    one(1904, openOptionDialog, "recording options"),
    one(1905, openOptionDialog, "distance views"),
    one(1906, openOptionDialog, "tracking"),
    one(1907, openOptionDialog, "playback options"),
    one(1908, openOptionDialog, "colours"),
    one(1909, openOptionDialog, "pursue"),
    one(1910, openOptionDialog, "backgrounds"),
    one(1911, openOptionDialog, "camera box"),
    one(1912, openOptionDialog, "sounds"),
    missing(1913, "waypoint alarms"),
    one(1914, openOptionDialog, "track storage"),
    one(1915, openOptionDialog, "languages"),
    one(1916, openOptionDialog, "3D map options"),
    missing(1917, 1997, "options, without a meaning yet"),
    one(1998, openOptionDialog, "a hidden option"),
    missing(1999, "all options"),

    missing(4991, 4999, "user screens"),
    missing(11001, 11012, "3D camera: Z, X, Y, rX, rY, rZ, each up and down"),
    missing(11013, 11016, "3D camera, without a meaning yet"),
    one(20001, showNextScreen, "next screen"),
    one(20002, switchDayAndNight, "day or night colours"),
    // clang-format on
});

constexpr bool inOrderWithoutOverlap() {
  for (size_t i = 0; i < kRows.size(); ++i) {
    if (kRows[i].last < kRows[i].number) return false;
    if (i > 0 && kRows[i].number <= kRows[i - 1].last) return false;
  }
  return true;
}
static_assert(inOrderWithoutOverlap());

}  // namespace

std::span<const CommandRow> commandRows() { return kRows; }

const CommandRow* findCommand(uint32_t number) {
  const auto found =
      std::lower_bound(kRows.begin(), kRows.end(), number,
                       [](const CommandRow& row, uint32_t wanted) { return row.last < wanted; });
  return found == kRows.end() || number < found->number ? nullptr : &*found;
}

bool runCommand(AppState& app, uint32_t number) {
  const CommandRow* const row = findCommand(number);
  if (row == nullptr) return false;
  row->handler(app, number);
  return true;
}

bool runHotKey(AppState& app, uint32_t number) {
  app.repaints.reset(app.platform.clock.tick());
  app.commandFromHotKey = true;
  const bool known = runCommand(app, number);
  app.commandFromHotKey = false;
  return known;
}

void notBuilt(AppState& app, uint32_t) { showNotice(app, textOf(kNotAvailable)); }

}  // namespace vgps
