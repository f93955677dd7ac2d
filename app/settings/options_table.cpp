#include "app/settings/options_table.h"

#include <array>

namespace vgps {
namespace {

constexpr const char* kProgram = "cfg\\vgps";
constexpr const char* kGps = "cfg\\gps";
constexpr const char* kTrack = "cfg\\track";
constexpr const char* kColors = "cfg\\cc";
constexpr const char* kTripData = "cfg\\tdp";
constexpr const char* kCamera = "cfg\\camera";

constexpr const char* kYesNo = "0|||1";
// The trailing separator adds an empty choice: no port.
constexpr const char* kPorts =
    "COM1|||COM2|||COM3|||COM4|||COM5|||COM6|||COM7|||COM8|||COM9|||COM10|||"
    "COM11|||COM12|||COM13|||COM14|||COM15|||COM16|||COM17|||COM18|||COM19|||COM20|||";

constexpr OptionRow kSeparator = {"*", "", "", ""};

constexpr auto kRows = std::to_array<OptionRow>({
    // clang-format off
    {"GPS - COM Port", kPorts, kGps, "port"},
    {"GPS - Baud", "2400|||4800|||9600|||19200", kGps, "speed"},
    {"GPS - Simulation", kYesNo, kGps, "simu"},
    {"GPS - GPSApi", kYesNo, kGps, "gapi"},
    kSeparator,
    {"VGPS - Autoconnect", kYesNo, kProgram, "agc"},
    {"VGPS - Solid Compass", kYesNo, kProgram, "ics"},
    {"VGPS - Show Letters", kYesNo, kProgram, "scl"},
    {"VGPS - Decimal XY", kYesNo, kProgram, "xmv"},
    {"VGPS - Backlight on", kYesNo, kProgram, "kbo"},
    {"VGPS - Big Waypoints", kYesNo, kProgram, "bwd"},
    {"VGPS - Show Contact WP", kYesNo, kProgram, "scw"},
    {"VGPS - Save stuff LowB", kYesNo, kProgram, "ssl"},
    {"VGPS - Use Led Font", kYesNo, kProgram, "ulf"},
    {"VGPS - UTM Type", "", kProgram, "cut"},
    {"VGPS - Font Factor", "", kProgram, "fsf"},
    kSeparator,
    {"3D MAP - Project Altitude", kYesNo, kProgram, "pwa"},
    {"3D MAP - Draw Z Grid", kYesNo, kProgram, "dzg"},
    {"3D MAP - Z Scaling", "", kProgram, "mzs"},
    {"3D MAP - 3D Tracks", kYesNo, kProgram, "tid"},
    {"3D MAP - 3D Wpts", kYesNo, kProgram, "wid"},
    kSeparator,
    {"MAP - Load Dynamic Maps", kYesNo, kProgram, "lod"},
    {"MAP - Map Follows Pos", kYesNo, kProgram, "mfp"},
    {"MAP - Map Shows Compass", kYesNo, kProgram, "mpc"},
    {"MAP - Load Offline Maps", kYesNo, kProgram, "lof"},
    {"MAP - Save Dynamic Maps", kYesNo, kProgram, "sdm"},
    {"MAP - Map Rotates Pos", kYesNo, kProgram, "mrp"},
    {"MAP - Map Uses Grid", kYesNo, kProgram, "mug"},
    {"MAP - Map Removes Grid", kYesNo, kProgram, "mrg"},
    {"MAP - Map Cuts View", kYesNo, kProgram, "mcv"},
    {"MAP - Fix Map Zoom", kYesNo, kProgram, "fmv"},
    {"MAP - Show Icons", kYesNo, kProgram, "smi"},
    {"MAP - Rotate Images", kYesNo, kProgram, "mri"},
    {"MAP - Maps Directory", "", kProgram, "offlinemaps"},
    kSeparator,
    {"SPEED - Speed Warning", kYesNo, kProgram, "slw"},
    {"SPEED - Max Spd Value", "", kProgram, "sxv"},
    {"SPEED - Speed Mode View", "0|||1|||2|||3", kProgram, "smv"},
    kSeparator,
    {"REC - Track Change Speed", "", kTrack, "speed"},
    {"REC - Track Change Angle", "", kTrack, "angle"},
    {"REC - Track Change Alt", "", kTrack, "alt"},
    {"REC - Normalize Meters", "", kProgram, "ntm"},
    {"REC - Record Cell", kYesNo, kProgram, "rci"},
    {"REC - Draw Path", kYesNo, kProgram, "drp"},
    {"REC - Record Speed", kYesNo, kProgram, "rsc"},
    {"REC - Record Time", kYesNo, kProgram, "rtc"},
    kSeparator,
    {"PLAY - Recalculate Wps", "", kProgram, "rws"},
    {"PLAY - Reach Meters", "", kProgram, "wrm"},
    {"PLAY - Reach Seconds", "", kProgram, "wrs"},
    {"PLAY - Center Position", "", kProgram, "cpc"},
    {"PLAY - Warn Turns", kYesNo, kProgram, "swt"},
    {"PLAY - Warn Angle", "", kProgram, "swa"},
    {"PLAY - View Cell", kYesNo, kProgram, "vci"},
    {"PLAY - Min Unit Warn", "", kProgram, "muw"},
    {"PLAY - Min Sec Warn", "", kProgram, "msw"},
    {"PLAY - Path Line Size", "", kProgram, "pls"},
    {"PLAY - Map Line Size", "", kProgram, "mls"},
    kSeparator,
    {"DST - Long View", "0|||1|||2", kProgram, "dmvl"},
    {"DST - Short View", "0|||1|||2", kProgram, "dmvs"},
    kSeparator,
    {"TRK - Enable", kYesNo, kProgram, "eit"},
    {"TRK - Seconds", "", kProgram, "its"},
    {"TRK - URL", "", kProgram, "itu"},
    kSeparator,
    {"PRS - Enable", kYesNo, kProgram, "eip"},
    {"PRS - Seconds", "", kProgram, "ips"},
    {"PRS - URL", "", kProgram, "ipu"},
    kSeparator,
    {"SMSTRK - Enable", kYesNo, kProgram, "est"},
    {"SMSTRK - Seconds", "", kProgram, "sts"},
    {"SMSTRK - Number", "", kProgram, "stn"},
    {"SMSTRK - Text", "", kProgram, "stt"},
    kSeparator,
    {"CLR - Inform", "", kColors, "c1"},
    {"CLR - Background", "", kColors, "c2"},
    {"CLR - Success", "", kColors, "c3"},
    {"CLR - Failure", "", kColors, "c4"},
    {"CLR - Gray", "", kColors, "c5"},
    {"CLR - Light Gray", "", kColors, "c6"},
    {"CLR - Zone", "", kColors, "c7"},
    kSeparator,
    {"BG - Day", "", kProgram, "bgimaged"},
    {"BG - Night", "", kProgram, "bgimagen"},
    {"BG - Custom", "", kProgram, "bgimagec"},
    kSeparator,
    {"TD - Enable", kYesNo, kProgram, "tde"},
    {"TD - XY", kYesNo, kTripData, "c1"},
    {"TD - Speed", kYesNo, kTripData, "c2"},
    {"TD - Nearest", kYesNo, kTripData, "c3"},
    {"TD - Playback", kYesNo, kTripData, "c4"},
    {"TD - Sats", kYesNo, kTripData, "c5"},
    {"TD - Z,Bearing", kYesNo, kTripData, "c6"},
    kSeparator,
    {"CAM - Left", "", kCamera, "left"},
    {"CAM - Top", "", kCamera, "top"},
    {"CAM - Right", "", kCamera, "right"},
    {"CAM - Bottom", "", kCamera, "bottom"},
    {"CAM - Mode", "0|||1|||2", kCamera, "align"},
    {"CAM - Color", "", kCamera, "color"},
    kSeparator,
    // clang-format on
});

}  // namespace

std::span<const OptionRow> optionRows() { return kRows; }

std::vector<std::string_view> choicesOf(const OptionRow& row) {
  constexpr std::string_view kBetween = "|||";
  std::vector<std::string_view> choices;
  std::string_view rest = row.choices;
  if (rest.empty()) return choices;
  for (size_t at = rest.find(kBetween); at != std::string_view::npos; at = rest.find(kBetween)) {
    choices.push_back(rest.substr(0, at));
    rest.remove_prefix(at + kBetween.size());
  }
  choices.push_back(rest);
  return choices;
}

const char* optionLabel(std::string_view path, std::string_view key) {
  for (const OptionRow& row : kRows) {
    if (!row.isSeparator() && path == row.path && key == row.key) return row.label;
  }
  return "";
}

std::string optionText(ConfigStore& store, const OptionRow& row) {
  return row.isSeparator() ? std::string() : store.other(row.path, row.key);
}

bool setOption(ConfigStore& store, const OptionRow& row, const std::string& text) {
  if (row.isSeparator()) return false;
  store.setOther(row.path, row.key, text);
  return true;
}

}  // namespace vgps
