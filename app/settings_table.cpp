#include <array>
#include <type_traits>
#include <utility>

#include "app/settings.h"

namespace vgps {
namespace {

constexpr SettingRow number(const char* path, const char* key, int32_t standard,
                            int32_t Settings::*member, SettingGroup group, const char* label,
                            RangeRule rule = RangeRule::none) {
  return {path, key, SettingType::integer, double(standard), "", 0, member, group, label, rule};
}

constexpr SettingRow flag(const char* path, const char* key, int32_t standard,
                          bool Settings::*member, SettingGroup group, const char* label,
                          RangeRule rule = RangeRule::none) {
  return {path, key, SettingType::flag, double(standard), "", 0, member, group, label, rule};
}

// Stored like a flag, but it counts down program starts.
constexpr SettingRow countdown(const char* path, const char* key, int32_t standard,
                               int32_t Settings::*member, SettingGroup group, const char* label) {
  return {path,  key,   SettingType::flag, double(standard), "", 0, member,
          group, label, RangeRule::none};
}

constexpr SettingRow decimal(const char* path, const char* key, double standard,
                             float Settings::*member, SettingGroup group, const char* label,
                             RangeRule rule) {
  return {path, key, SettingType::real, standard, "", 0, member, group, label, rule};
}

constexpr SettingRow text(const char* path, const char* key, const char* standard,
                          uint16_t characters, std::string Settings::*member, SettingGroup group,
                          const char* label) {
  return {path,  key,   SettingType::string, 0, standard, characters, member,
          group, label, RangeRule::none};
}

constexpr SettingRow colour(const char* path, const char* key, uint32_t standard,
                            uint32_t Settings::*member, SettingGroup group, const char* label) {
  return {path,  key,   SettingType::colour, double(standard), "", 0, member,
          group, label, RangeRule::none};
}

constexpr auto kRows = std::to_array<SettingRow>({
    // clang-format off
    text("cfg\\lang", "file", "", 1000, &Settings::languageFile, SettingGroup::language, ""),
    text("cfg\\gps", "port", "", 10, &Settings::port, SettingGroup::gps, "GPS - COM Port"),
    number("cfg\\gps", "speed", 9600, &Settings::baudRate, SettingGroup::gps, "GPS - Baud"),
    flag("cfg\\gps", "simu", 0, &Settings::simulate, SettingGroup::gps, "GPS - Simulation"),
    flag("cfg\\gps", "gapi", 0, &Settings::useGpsApi, SettingGroup::gps, "GPS - GPSApi"),
    number("cfg\\gps", "sapi", 0, &Settings::useSensorApi, SettingGroup::gps, ""),
    text("cfg\\gps", "sapiid", "", 1000, &Settings::sensorIdentifier, SettingGroup::gps, ""),
    number("cfg\\gps", "bsm", 0, &Settings::epochSentenceSetting, SettingGroup::gps, ""),
    text("cfg\\vgps", "offlinemaps", ".\\maps", 300, &Settings::mapsFolder, SettingGroup::map, "MAP - Maps Directory"),
    text("cfg\\vgps", "bgimaged", "", 300, &Settings::backgroundDay, SettingGroup::background, "BG - Day"),
    text("cfg\\vgps", "bgimagen", "", 300, &Settings::backgroundNight, SettingGroup::background, "BG - Night"),
    text("cfg\\vgps", "bgimagec", "", 300, &Settings::backgroundCustom, SettingGroup::background, "BG - Custom"),
    text("cfg\\vgps", "sound_speed", "", 300, &Settings::soundSpeed, SettingGroup::sound, ""),
    text("cfg\\vgps", "sound_ok", "", 300, &Settings::soundOk, SettingGroup::sound, ""),
    text("cfg\\vgps", "sound_error", "", 300, &Settings::soundError, SettingGroup::sound, ""),
    text("cfg\\vgps", "sound_turn", "", 300, &Settings::soundTurn, SettingGroup::sound, ""),
    text("cfg\\vgps", "sound_zone", "", 300, &Settings::soundZone, SettingGroup::sound, ""),
    decimal("cfg\\vgps", "fsf", 1.0, &Settings::fontFactor, SettingGroup::display, "VGPS - Font Factor", RangeRule::upToFive),
    number("cfg\\vgps", "gfs", 0, &Settings::frameSkip, SettingGroup::display, "", RangeRule::upToTen),
    number("cfg\\vgps", "margin", 20, &Settings::mapMargin, SettingGroup::map, "", RangeRule::upToFifty),
    flag("cfg\\vgps", "pwa", 0, &Settings::projectAltitude, SettingGroup::map3d, "3D MAP - Project Altitude"),
    flag("cfg\\vgps", "dzg", 0, &Settings::drawZGrid, SettingGroup::map3d, "3D MAP - Draw Z Grid"),
    flag("cfg\\vgps", "tid", 1, &Settings::tracksIn3d, SettingGroup::map3d, "3D MAP - 3D Tracks"),
    flag("cfg\\vgps", "wid", 1, &Settings::waypointsIn3d, SettingGroup::map3d, "3D MAP - 3D Wpts"),
    decimal("cfg\\vgps", "mzs", 0.01, &Settings::zScale, SettingGroup::map3d, "3D MAP - Z Scaling", RangeRule::notZero),
    flag("cfg\\vgps", "lod", 0, &Settings::loadDynamicMaps, SettingGroup::map, "MAP - Load Dynamic Maps"),
    flag("cfg\\vgps", "mfp", 0, &Settings::mapFollowsPosition, SettingGroup::map, "MAP - Map Follows Pos"),
    flag("cfg\\vgps", "smi", 1, &Settings::mapShowsIcons, SettingGroup::map, "MAP - Show Icons"),
    flag("cfg\\vgps", "slw", 0, &Settings::speedWarning, SettingGroup::speed, "SPEED - Speed Warning"),
    flag("cfg\\vgps", "dam", 1, &Settings::markWarning, SettingGroup::recording, ""),
    number("cfg\\vgps", "smv", 0, &Settings::speedUnit, SettingGroup::speed, "SPEED - Speed Mode View"),
    number("cfg\\vgps", "sxv", 200, &Settings::speedLimit, SettingGroup::speed, "SPEED - Max Spd Value"),
    number("cfg\\vgps", "dmvl", 0, &Settings::longDistanceUnit, SettingGroup::distance, "DST - Long View"),
    number("cfg\\vgps", "dmvs", 0, &Settings::shortDistanceUnit, SettingGroup::distance, "DST - Short View"),
    flag("cfg\\vgps", "mpc", 0, &Settings::mapShowsCompass, SettingGroup::map, "MAP - Map Shows Compass"),
    flag("cfg\\vgps", "mrp", 1, &Settings::mapRotates, SettingGroup::map, "MAP - Map Rotates Pos"),
    flag("cfg\\vgps", "mri", 0, &Settings::mapRotatesImages, SettingGroup::map, "MAP - Rotate Images"),
    flag("cfg\\vgps", "mr3p", 1, &Settings::map3dRotates, SettingGroup::map3d, ""),
    flag("cfg\\vgps", "mrg", 1, &Settings::mapRemovesGrid, SettingGroup::map, "MAP - Map Removes Grid"),
    flag("cfg\\vgps", "mug", 1, &Settings::mapUsesGrid, SettingGroup::map, "MAP - Map Uses Grid"),
    flag("cfg\\vgps", "mcv", 0, &Settings::mapCutsView, SettingGroup::map, "MAP - Map Cuts View"),
    flag("cfg\\vgps", "fmv", 1, &Settings::mapFixesZoom, SettingGroup::map, "MAP - Fix Map Zoom"),
    number("cfg\\other", "fzsl", 0, &Settings::zoneSpeedLimit, SettingGroup::other, ""),
    flag("cfg\\vgps", "lof", 0, &Settings::loadOfflineMaps, SettingGroup::map, "MAP - Load Offline Maps"),
    flag("cfg\\vgps", "sdm", 0, &Settings::saveDynamicMaps, SettingGroup::map, "MAP - Save Dynamic Maps"),
    flag("cfg\\vgps", "agc", 0, &Settings::autoConnect, SettingGroup::display, "VGPS - Autoconnect"),
    flag("cfg\\vgps", "ics", 1, &Settings::solidCompass, SettingGroup::display, "VGPS - Solid Compass"),
    flag("cfg\\vgps", "scl", 1, &Settings::showLetters, SettingGroup::display, "VGPS - Show Letters"),
    flag("cfg\\vgps", "kbo", 1, &Settings::backlightOn, SettingGroup::display, "VGPS - Backlight on"),
    flag("cfg\\vgps", "sti", 1, &Settings::trayIcon, SettingGroup::display, ""),
    flag("cfg\\vgps", "bwd", 0, &Settings::bigWaypoints, SettingGroup::display, "VGPS - Big Waypoints"),
    flag("cfg\\vgps", "scw", 1, &Settings::showContactWaypoints, SettingGroup::display, "VGPS - Show Contact WP"),
    flag("cfg\\vgps", "ssl", 1, &Settings::saveOnLowBattery, SettingGroup::display, "VGPS - Save stuff LowB"),
    flag("cfg\\vgps", "ulf", 1, &Settings::useLedFont, SettingGroup::display, "VGPS - Use Led Font", RangeRule::forcedOff),
    number("cfg\\vgps", "xmv", 0, &Settings::positionFormat, SettingGroup::display, "VGPS - Decimal XY"),
    flag("cfg\\vgps", "eit", 0, &Settings::trackingOn, SettingGroup::tracking, "TRK - Enable"),
    number("cfg\\vgps", "its", 0, &Settings::trackingSeconds, SettingGroup::tracking, "TRK - Seconds"),
    flag("cfg\\vgps", "eip", 0, &Settings::pursueOn, SettingGroup::pursue, "PRS - Enable"),
    number("cfg\\vgps", "ips", 0, &Settings::pursueSeconds, SettingGroup::pursue, "PRS - Seconds"),
    flag("cfg\\vgps", "est", 0, &Settings::smsTrackingOn, SettingGroup::smsTracking, "SMSTRK - Enable"),
    number("cfg\\vgps", "sts", 0, &Settings::smsTrackingSeconds, SettingGroup::smsTracking, "SMSTRK - Seconds"),
    flag("cfg\\vgps", "cpc", 1, &Settings::centrePosition, SettingGroup::playback, "PLAY - Center Position"),
    flag("cfg\\vgps", "swt", 1, &Settings::warnTurns, SettingGroup::playback, "PLAY - Warn Turns"),
    number("cfg\\vgps", "swa", 45, &Settings::warnAngle, SettingGroup::playback, "PLAY - Warn Angle"),
    number("cfg\\vgps", "muw", 300, &Settings::warnMetres, SettingGroup::playback, "PLAY - Min Unit Warn"),
    number("cfg\\vgps", "msw", 10, &Settings::warnSeconds, SettingGroup::playback, "PLAY - Min Sec Warn"),
    text("cfg\\vgps", "itu", "", 200, &Settings::trackingUrl, SettingGroup::tracking, "TRK - URL"),
    text("cfg\\vgps", "ipu", "", 200, &Settings::pursueUrl, SettingGroup::pursue, "PRS - URL"),
    text("cfg\\vgps", "stt", "", 200, &Settings::smsText, SettingGroup::smsTracking, "SMSTRK - Text"),
    text("cfg\\vgps", "stn", "", 200, &Settings::smsNumber, SettingGroup::smsTracking, "SMSTRK - Number"),
    number("cfg\\vgps", "ntm", 0, &Settings::normalizeMetres, SettingGroup::recording, "REC - Normalize Meters"),
    flag("cfg\\vgps", "rci", 1, &Settings::recordCell, SettingGroup::recording, "REC - Record Cell"),
    flag("cfg\\vgps", "rsc", 0, &Settings::recordSpeed, SettingGroup::recording, "REC - Record Speed"),
    flag("cfg\\vgps", "rtc", 0, &Settings::recordTime, SettingGroup::recording, "REC - Record Time"),
    flag("cfg\\vgps", "rbc", 0, &Settings::recordCourse, SettingGroup::recording, ""),
    number("cfg\\vgps", "res", 0, &Settings::recordEvery, SettingGroup::recording, ""),
    number("cfg\\vgps", "bem", 0, &Settings::recordBem, SettingGroup::recording, ""),
    flag("cfg\\vgps", "drp", 1, &Settings::drawPath, SettingGroup::recording, "REC - Draw Path"),
    flag("cfg\\vgps", "vci", 1, &Settings::viewCell, SettingGroup::playback, "PLAY - View Cell"),
    flag("cfg\\vgps", "uaa", 1, &Settings::useAltitude, SettingGroup::playback, ""),
    number("cfg\\vgps", "rws", 3, &Settings::recalculateWaypoints, SettingGroup::playback, "PLAY - Recalculate Wps"),
    number("cfg\\vgps", "wrm", 0, &Settings::reachMetres, SettingGroup::playback, "PLAY - Reach Meters"),
    number("cfg\\vgps", "wrs", 10, &Settings::reachSeconds, SettingGroup::playback, "PLAY - Reach Seconds"),
    number("cfg\\vgps", "pls", 5, &Settings::pathLineSize, SettingGroup::playback, "PLAY - Path Line Size"),
    number("cfg\\vgps", "mls", 2, &Settings::mapLineSize, SettingGroup::playback, "PLAY - Map Line Size"),
    number("cfg\\camera", "left", 2, &Settings::cameraLeft, SettingGroup::camera, "CAM - Left"),
    number("cfg\\camera", "right", 98, &Settings::cameraRight, SettingGroup::camera, "CAM - Right"),
    number("cfg\\camera", "top", 2, &Settings::cameraTop, SettingGroup::camera, "CAM - Top"),
    number("cfg\\camera", "bottom", 20, &Settings::cameraBottom, SettingGroup::camera, "CAM - Bottom"),
    colour("cfg\\camera", "color", 255, &Settings::cameraColour, SettingGroup::camera, "CAM - Color"),
    number("cfg\\camera", "align", 0, &Settings::cameraAlign, SettingGroup::camera, "CAM - Mode"),
    number("cfg\\vgps", "cut", 0, &Settings::utmEllipsoid, SettingGroup::display, "VGPS - UTM Type"),
    number("cfg\\track", "angle", 10, &Settings::recordAngle, SettingGroup::recording, "REC - Track Change Angle"),
    number("cfg\\track", "speed", 5, &Settings::recordMinSpeed, SettingGroup::recording, "REC - Track Change Speed"),
    number("cfg\\track", "alt", 30, &Settings::recordAltitude, SettingGroup::recording, "REC - Track Change Alt"),
    number("cfg\\vgps", "CompassZ", 0, &Settings::compassZ, SettingGroup::compass, ""),
    number("cfg\\vgps", "CompassX", 0, &Settings::compassX, SettingGroup::compass, ""),
    number("cfg\\vgps", "CompassY", 0, &Settings::compassY, SettingGroup::compass, ""),
    colour("cfg\\cc", "c1", 0, &Settings::colourInform, SettingGroup::colour, "CLR - Inform"),
    colour("cfg\\cc", "c2", 0xE9E9E9, &Settings::colourBackground, SettingGroup::colour, "CLR - Background"),
    colour("cfg\\cc", "c3", 0xFF0000, &Settings::colourSuccess, SettingGroup::colour, "CLR - Success"),
    colour("cfg\\cc", "c4", 0x0000FF, &Settings::colourFailure, SettingGroup::colour, "CLR - Failure"),
    colour("cfg\\cc", "c5", 0x969696, &Settings::colourGray, SettingGroup::colour, "CLR - Gray"),
    colour("cfg\\cc", "c6", 0xBEBEBE, &Settings::colourLightGray, SettingGroup::colour, "CLR - Light Gray"),
    colour("cfg\\cc", "c7", 0xFF00FF, &Settings::colourZone, SettingGroup::colour, "CLR - Zone"),
    countdown("cfg\\vgps", "upd", 0, &Settings::updateCountdown, SettingGroup::update, ""),
    flag("cfg\\vgps", "tde", 0, &Settings::tripDataOn, SettingGroup::tripData, "TD - Enable"),
    flag("cfg\\tdp", "c1", 1, &Settings::tripDataPosition, SettingGroup::tripData, "TD - XY"),
    flag("cfg\\tdp", "c2", 1, &Settings::tripDataSpeed, SettingGroup::tripData, "TD - Speed"),
    flag("cfg\\tdp", "c3", 1, &Settings::tripDataNearest, SettingGroup::tripData, "TD - Nearest"),
    flag("cfg\\tdp", "c4", 1, &Settings::tripDataPlayback, SettingGroup::tripData, "TD - Playback"),
    flag("cfg\\tdp", "c5", 1, &Settings::tripDataSatellites, SettingGroup::tripData, "TD - Sats"),
    flag("cfg\\tdp", "c6", 1, &Settings::tripDataAltitude, SettingGroup::tripData, "TD - Z,Bearing"),
    number("cfg\\vgps", "bes", 0, &Settings::recordBes, SettingGroup::recording, ""),
    // Keys of single features, whose defaults change nothing.
    flag("cfg\\vgps", "lgn", 0, &Settings::logStream, SettingGroup::gps, ""),
    flag("cfg\\vgps", "afg", 0, &Settings::altitudeFromGeoidField, SettingGroup::gps, ""),
    number("cfg\\vgps", "bki", 0, &Settings::backupMinutes, SettingGroup::recording, ""),
    flag("cfg\\vgps", "mnr", 0, &Settings::manualRecording, SettingGroup::recording, ""),
    text("cfg\\vgps", "tlp", "", 300, &Settings::trackStorePath, SettingGroup::recording, ""),
    // Our own.
    number("cfg\\gps", "tlk", 0, &Settings::talkers, SettingGroup::gps, ""),
    flag("cfg\\gps", "rcn", 1, &Settings::reconnect, SettingGroup::gps, ""),
    // clang-format on
});

// Compilers count the steps of such an evaluation: each text is measured once.
constexpr bool keysAreUnique() {
  std::array<std::string_view, kRows.size()> keys;
  for (size_t i = 0; i < kRows.size(); ++i) {
    keys[i] = kRows[i].key;
    for (size_t k = 0; k < i; ++k) {
      if (keys[k] == keys[i] && std::string_view(kRows[k].path) == kRows[i].path) return false;
    }
  }
  return true;
}
static_assert(keysAreUnique());

}  // namespace

Settings::Settings() {
  for (const SettingRow& row : kRows) {
    if (row.type == SettingType::string) {
      setText(*this, row, row.text);
    } else {
      setNumber(*this, row, row.number);
    }
  }
}

double numberOf(const Settings& settings, const SettingRow& row) {
  return std::visit(
      [&](auto member) -> double {
        if constexpr (std::is_same_v<decltype(member), std::string Settings::*>) {
          return 0;
        } else {
          return static_cast<double>(settings.*member);
        }
      },
      row.member);
}

void setNumber(Settings& settings, const SettingRow& row, double value) {
  std::visit(
      [&](auto member) {
        using Value = std::remove_reference_t<decltype(settings.*member)>;
        if constexpr (std::is_same_v<Value, bool>) {
          settings.*member = value != 0;
        } else if constexpr (!std::is_same_v<Value, std::string>) {
          settings.*member = static_cast<Value>(value);
        }
      },
      row.member);
}

const std::string& textOf(const Settings& settings, const SettingRow& row) {
  static const std::string kNone;
  const auto* const member = std::get_if<std::string Settings::*>(&row.member);
  return member == nullptr ? kNone : settings.**member;
}

void setText(Settings& settings, const SettingRow& row, std::string value) {
  if (const auto* const member = std::get_if<std::string Settings::*>(&row.member)) {
    settings.** member = std::move(value);
  }
}

std::span<const SettingRow> settingRows() { return kRows; }

const SettingRow* findSetting(std::string_view path, std::string_view key) {
  for (const SettingRow& row : kRows) {
    if (path == row.path && key == row.key) return &row;
  }
  return nullptr;
}

}  // namespace vgps
