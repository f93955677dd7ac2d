#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace vgps {

// All settings of the program, with their keys in the document. The table in settings_table.h
// defines where each is stored and its default.
struct Settings {
  std::string languageFile{};      // "file"
  std::string port{};              // "port"
  int32_t baudRate{};              // "speed"
  bool simulate{};                 // "simu"
  bool useGpsApi{};                // "gapi"
  bool reconnect{};                // "rcn"
  bool importEverything{};         // "imp": of tracks of other programs
  bool altitudeDecimals{};         // "zdec": the read-out shows the decimals of the height
  int32_t useSensorApi{};          // "sapi"
  std::string sensorIdentifier{};  // "sapiid"
  int32_t epochSentenceSetting{};  // "bsm"
  std::string mapsFolder{};        // "offlinemaps"
  std::string backgroundDay{};     // "bgimaged"
  std::string backgroundNight{};   // "bgimagen"
  std::string backgroundCustom{};  // "bgimagec"
  std::string soundSpeed{};        // "sound_speed"
  std::string soundOk{};           // "sound_ok"
  std::string soundError{};        // "sound_error"
  std::string soundTurn{};         // "sound_turn"
  std::string soundZone{};         // "sound_zone"
  float fontFactor{};              // "fsf"
  int32_t frameSkip{};             // "gfs"
  int32_t mapMargin{};             // "margin"
  bool projectAltitude{};          // "pwa"
  bool drawZGrid{};                // "dzg"
  bool tracksIn3d{};               // "tid"
  bool waypointsIn3d{};            // "wid"
  float zScale{};                  // "mzs"
  bool loadDynamicMaps{};          // "lod"
  bool mapFollowsPosition{};       // "mfp"
  bool mapShowsIcons{};            // "smi"
  bool speedWarning{};             // "slw"
  bool markWarning{};              // "dam"
  int32_t speedUnit{};             // "smv"
  int32_t speedLimit{};            // "sxv"
  int32_t longDistanceUnit{};      // "dmvl"
  int32_t shortDistanceUnit{};     // "dmvs"
  bool mapShowsCompass{};          // "mpc"
  bool mapRotates{};               // "mrp"
  bool mapRotatesImages{};         // "mri"
  bool map3dRotates{};             // "mr3p"
  bool mapRemovesGrid{};           // "mrg"
  bool mapUsesGrid{};              // "mug"
  bool mapCutsView{};              // "mcv"
  bool mapFixesZoom{};             // "fmv"
  int32_t zoneSpeedLimit{};        // "fzsl"
  bool loadOfflineMaps{};          // "lof"
  bool saveDynamicMaps{};          // "sdm"
  bool autoConnect{};              // "agc"
  bool solidCompass{};             // "ics"
  bool showLetters{};              // "scl"
  bool backlightOn{};              // "kbo"
  bool trayIcon{};                 // "sti"
  bool bigWaypoints{};             // "bwd"
  bool showContactWaypoints{};     // "scw"
  bool saveOnLowBattery{};         // "ssl"
  bool useLedFont{};               // "ulf"
  int32_t positionFormat{};        // "xmv"
  bool trackingOn{};               // "eit"
  int32_t trackingSeconds{};       // "its"
  bool pursueOn{};                 // "eip"
  int32_t pursueSeconds{};         // "ips"
  bool smsTrackingOn{};            // "est"
  int32_t smsTrackingSeconds{};    // "sts"
  bool centrePosition{};           // "cpc"
  bool warnTurns{};                // "swt"
  int32_t warnAngle{};             // "swa"
  int32_t warnMeters{};            // "muw"
  int32_t warnSeconds{};           // "msw"
  std::string trackingUrl{};       // "itu"
  std::string pursueUrl{};         // "ipu"
  std::string smsText{};           // "stt"
  std::string smsNumber{};         // "stn"
  int32_t normalizeMeters{};       // "ntm"
  bool recordCell{};               // "rci"
  bool recordSpeed{};              // "rsc"
  bool recordTime{};               // "rtc"
  bool recordCourse{};             // "rbc"
  int32_t recordEvery{};           // "res"
  int32_t recordEverySeconds{};    // "reseconds"
  int32_t recordEveryMeters{};     // "remeters"
  bool jumpFilter{};               // "rejumps"
  int32_t recordBem{};             // "bem"
  bool drawPath{};                 // "drp"
  bool viewCell{};                 // "vci"
  bool useAltitude{};              // "uaa"
  int32_t recalculateWaypoints{};  // "rws"
  int32_t reachMeters{};           // "wrm"
  int32_t reachSeconds{};          // "wrs"
  int32_t pathLineSize{};          // "pls"
  int32_t mapLineSize{};           // "mls"
  int32_t cameraLeft{};            // "left"
  int32_t cameraRight{};           // "right"
  int32_t cameraTop{};             // "top"
  int32_t cameraBottom{};          // "bottom"
  uint32_t cameraColor{};          // "color"
  int32_t cameraAlign{};           // "align"
  int32_t utmEllipsoid{};          // "cut"
  int32_t recordAngle{};           // "angle"
  int32_t recordMinSpeed{};        // "speed"
  int32_t recordAltitude{};        // "alt"
  int32_t compassZ{};              // "CompassZ"
  int32_t compassX{};              // "CompassX"
  int32_t compassY{};              // "CompassY"
  uint32_t colorInform{};          // "c1"
  uint32_t colorBackground{};      // "c2"
  uint32_t colorSuccess{};         // "c3"
  uint32_t colorFailure{};         // "c4"
  uint32_t colorGray{};            // "c5"
  uint32_t colorLightGray{};       // "c6"
  uint32_t colorZone{};            // "c7"
  int32_t updateCountdown{};       // "upd"
  bool tripDataOn{};               // "tde"
  bool tripDataPosition{};         // "c1"
  bool tripDataSpeed{};            // "c2"
  bool tripDataNearest{};          // "c3"
  bool tripDataPlayback{};         // "c4"
  bool tripDataSatellites{};       // "c5"
  bool tripDataAltitude{};         // "c6"
  int32_t recordBes{};             // "bes"
  bool logStream{};                // "lgn"
  bool altitudeFromGeoidField{};   // "afg"
  int32_t backupMinutes{};         // "bki"
  bool manualRecording{};          // "mnr"
  std::string trackStorePath{};    // "tlp"
  int32_t talkers{};               // "tlk"
  bool recordingExplained{};       // "asked": the question before the first recording was shown
  std::string updateSource{};      // "ups"
  int32_t windowLeft{};            // "left", pixels, like the three below
  int32_t windowTop{};             // "top"
  int32_t windowWidth{};           // "width"; 0 until the program has ended once
  int32_t windowHeight{};          // "height"
  bool windowMaximized{};          // "maximized"
  int32_t windowScreen{};          // "screen": Screen
  int32_t windowScheme{};          // "scheme": ColorScheme

  Settings();  // sets the defaults of the table
};

enum class SettingType : uint8_t { integer, flag, real, string, color };

// What the loader does with a value that is out of range; other values are used unchanged.
enum class RangeRule : uint8_t {
  none,
  upToFive,   // above 5, zero or negative: the default
  upToTen,    // above 10: 0
  upToFifty,  // above 50: the default
  notZero,    // exactly 0: the default
  forcedOff,  // off at every start, regardless of the document
};

// The settings that one dialog saves.
enum class SettingGroup : uint8_t {
  language,
  gps,
  map,
  background,
  sound,
  display,
  map3d,
  speed,
  recording,
  distance,
  other,
  tracking,
  pursue,
  smsTracking,
  playback,
  camera,
  compass,
  color,
  update,
  tripData,
  window,
};

using SettingMember = std::variant<int32_t Settings::*, bool Settings::*, float Settings::*,
                                   std::string Settings::*, uint32_t Settings::*>;

struct SettingRow {
  const char* path;  // element names separated by backslashes
  const char* key;
  SettingType type;
  double number;        // the default, except for strings
  const char* text;     // the default of a string
  uint16_t characters;  // maximum length of a string, in UTF-16 units
  SettingMember member;
  SettingGroup group;
  RangeRule rule;
};

// All settings in the order in which they are loaded.
std::span<const SettingRow> settingRows();

// Access to the member of a row. Numbers of every type are passed as double, flags as 0 or 1.
double numberOf(const Settings& settings, const SettingRow& row);
void setNumber(Settings& settings, const SettingRow& row, double value);
const std::string& textOf(const Settings& settings, const SettingRow& row);
void setText(Settings& settings, const SettingRow& row, std::string value);

// Returns null if there is no such setting. Case-sensitive: "Cfg\\Other" is not "cfg\\other".
const SettingRow* findSetting(std::string_view path, std::string_view key);

}  // namespace vgps
