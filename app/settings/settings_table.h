#pragma once

#include <array>

#include "app/settings/settings.h"

// The table of all settings. Include this header to refer to a setting at compile time.
namespace vgps {
namespace setting_rows {

constexpr SettingRow number(const char* path, const char* key, int32_t standard,
                            int32_t Settings::*member, SettingGroup group,
                            RangeRule rule = RangeRule::none) {
  return {path, key, SettingType::integer, double(standard), "", 0, member, group, rule};
}

constexpr SettingRow flag(const char* path, const char* key, int32_t standard,
                          bool Settings::*member, SettingGroup group,
                          RangeRule rule = RangeRule::none) {
  return {path, key, SettingType::flag, double(standard), "", 0, member, group, rule};
}

// Stored like a flag, but counts down program starts.
constexpr SettingRow countdown(const char* path, const char* key, int32_t standard,
                               int32_t Settings::*member, SettingGroup group) {
  return {path, key, SettingType::flag, double(standard), "", 0, member, group, RangeRule::none};
}

constexpr SettingRow decimal(const char* path, const char* key, double standard,
                             float Settings::*member, SettingGroup group, RangeRule rule) {
  return {path, key, SettingType::real, standard, "", 0, member, group, rule};
}

constexpr SettingRow text(const char* path, const char* key, const char* standard,
                          uint16_t characters, std::string Settings::*member, SettingGroup group) {
  return {path, key, SettingType::string, 0, standard, characters, member, group, RangeRule::none};
}

constexpr SettingRow color(const char* path, const char* key, uint32_t standard,
                           uint32_t Settings::*member, SettingGroup group) {
  return {path, key, SettingType::color, double(standard), "", 0, member, group, RangeRule::none};
}

}  // namespace setting_rows

// In loading order.
inline constexpr auto kSettingRows = [] {
  using namespace setting_rows;
  return std::to_array<SettingRow>({
      // clang-format off
    text("cfg\\lang", "file", "", 1000, &Settings::languageFile, SettingGroup::language),
    text("cfg\\gps", "port", "", 10, &Settings::port, SettingGroup::gps),
    number("cfg\\gps", "speed", 9600, &Settings::baudRate, SettingGroup::gps),
    flag("cfg\\gps", "simu", 0, &Settings::simulate, SettingGroup::gps),
    flag("cfg\\gps", "gapi", 0, &Settings::useGpsApi, SettingGroup::gps),
    number("cfg\\gps", "sapi", 0, &Settings::useSensorApi, SettingGroup::gps),
    text("cfg\\gps", "sapiid", "", 1000, &Settings::sensorIdentifier, SettingGroup::gps),
    number("cfg\\gps", "bsm", 0, &Settings::epochSentenceSetting, SettingGroup::gps),
    text("cfg\\vgps", "offlinemaps", ".\\maps", 300, &Settings::mapsFolder, SettingGroup::map),
    text("cfg\\vgps", "bgimaged", "", 300, &Settings::backgroundDay, SettingGroup::background),
    text("cfg\\vgps", "bgimagen", "", 300, &Settings::backgroundNight, SettingGroup::background),
    text("cfg\\vgps", "bgimagec", "", 300, &Settings::backgroundCustom, SettingGroup::background),
    text("cfg\\vgps", "sound_speed", "", 300, &Settings::soundSpeed, SettingGroup::sound),
    text("cfg\\vgps", "sound_ok", "", 300, &Settings::soundOk, SettingGroup::sound),
    text("cfg\\vgps", "sound_error", "", 300, &Settings::soundError, SettingGroup::sound),
    text("cfg\\vgps", "sound_turn", "", 300, &Settings::soundTurn, SettingGroup::sound),
    text("cfg\\vgps", "sound_zone", "", 300, &Settings::soundZone, SettingGroup::sound),
    decimal("cfg\\vgps", "fsf", 1.0, &Settings::fontFactor, SettingGroup::display, RangeRule::upToFive),
    number("cfg\\vgps", "gfs", 0, &Settings::frameSkip, SettingGroup::display, RangeRule::upToTen),
    number("cfg\\vgps", "margin", 20, &Settings::mapMargin, SettingGroup::map, RangeRule::upToFifty),
    flag("cfg\\vgps", "pwa", 0, &Settings::projectAltitude, SettingGroup::map3d),
    flag("cfg\\vgps", "dzg", 0, &Settings::drawZGrid, SettingGroup::map3d),
    flag("cfg\\vgps", "tid", 1, &Settings::tracksIn3d, SettingGroup::map3d),
    flag("cfg\\vgps", "wid", 1, &Settings::waypointsIn3d, SettingGroup::map3d),
    decimal("cfg\\vgps", "mzs", 0.01, &Settings::zScale, SettingGroup::map3d, RangeRule::notZero),
    flag("cfg\\vgps", "lod", 0, &Settings::loadDynamicMaps, SettingGroup::map),
    flag("cfg\\vgps", "mfp", 0, &Settings::mapFollowsPosition, SettingGroup::map),
    flag("cfg\\vgps", "smi", 1, &Settings::mapShowsIcons, SettingGroup::map),
    flag("cfg\\vgps", "slw", 0, &Settings::speedWarning, SettingGroup::speed),
    flag("cfg\\vgps", "dam", 1, &Settings::markWarning, SettingGroup::recording),
    number("cfg\\vgps", "smv", 0, &Settings::speedUnit, SettingGroup::speed),
    number("cfg\\vgps", "sxv", 200, &Settings::speedLimit, SettingGroup::speed),
    number("cfg\\vgps", "dmvl", 0, &Settings::longDistanceUnit, SettingGroup::distance),
    number("cfg\\vgps", "dmvs", 0, &Settings::shortDistanceUnit, SettingGroup::distance),
    flag("cfg\\vgps", "mpc", 0, &Settings::mapShowsCompass, SettingGroup::map),
    flag("cfg\\vgps", "mrp", 1, &Settings::mapRotates, SettingGroup::map),
    flag("cfg\\vgps", "mri", 0, &Settings::mapRotatesImages, SettingGroup::map),
    flag("cfg\\vgps", "mr3p", 1, &Settings::map3dRotates, SettingGroup::map3d),
    flag("cfg\\vgps", "mrg", 1, &Settings::mapRemovesGrid, SettingGroup::map),
    flag("cfg\\vgps", "mug", 1, &Settings::mapUsesGrid, SettingGroup::map),
    flag("cfg\\vgps", "mcv", 0, &Settings::mapCutsView, SettingGroup::map),
    flag("cfg\\vgps", "fmv", 1, &Settings::mapFixesZoom, SettingGroup::map),
    number("cfg\\other", "fzsl", 0, &Settings::zoneSpeedLimit, SettingGroup::other),
    flag("cfg\\vgps", "lof", 0, &Settings::loadOfflineMaps, SettingGroup::map),
    flag("cfg\\vgps", "sdm", 0, &Settings::saveDynamicMaps, SettingGroup::map),
    flag("cfg\\vgps", "agc", 0, &Settings::autoConnect, SettingGroup::display),
    flag("cfg\\vgps", "ics", 1, &Settings::solidCompass, SettingGroup::display),
    flag("cfg\\vgps", "scl", 1, &Settings::showLetters, SettingGroup::display),
    flag("cfg\\vgps", "kbo", 1, &Settings::backlightOn, SettingGroup::display),
    flag("cfg\\vgps", "sti", 1, &Settings::trayIcon, SettingGroup::display),
    flag("cfg\\vgps", "bwd", 0, &Settings::bigWaypoints, SettingGroup::display),
    flag("cfg\\vgps", "scw", 1, &Settings::showContactWaypoints, SettingGroup::display),
    flag("cfg\\vgps", "ssl", 1, &Settings::saveOnLowBattery, SettingGroup::display),
    flag("cfg\\vgps", "ulf", 1, &Settings::useLedFont, SettingGroup::display, RangeRule::forcedOff),
    number("cfg\\vgps", "xmv", 0, &Settings::positionFormat, SettingGroup::display),
    flag("cfg\\vgps", "eit", 0, &Settings::trackingOn, SettingGroup::tracking),
    number("cfg\\vgps", "its", 0, &Settings::trackingSeconds, SettingGroup::tracking),
    flag("cfg\\vgps", "eip", 0, &Settings::pursueOn, SettingGroup::pursue),
    number("cfg\\vgps", "ips", 0, &Settings::pursueSeconds, SettingGroup::pursue),
    flag("cfg\\vgps", "est", 0, &Settings::smsTrackingOn, SettingGroup::smsTracking),
    number("cfg\\vgps", "sts", 0, &Settings::smsTrackingSeconds, SettingGroup::smsTracking),
    flag("cfg\\vgps", "cpc", 1, &Settings::centrePosition, SettingGroup::playback),
    flag("cfg\\vgps", "swt", 1, &Settings::warnTurns, SettingGroup::playback),
    number("cfg\\vgps", "swa", 45, &Settings::warnAngle, SettingGroup::playback),
    number("cfg\\vgps", "muw", 300, &Settings::warnMeters, SettingGroup::playback),
    number("cfg\\vgps", "msw", 10, &Settings::warnSeconds, SettingGroup::playback),
    text("cfg\\vgps", "itu", "", 200, &Settings::trackingUrl, SettingGroup::tracking),
    text("cfg\\vgps", "ipu", "", 200, &Settings::pursueUrl, SettingGroup::pursue),
    text("cfg\\vgps", "stt", "", 200, &Settings::smsText, SettingGroup::smsTracking),
    text("cfg\\vgps", "stn", "", 200, &Settings::smsNumber, SettingGroup::smsTracking),
    number("cfg\\vgps", "ntm", 0, &Settings::normalizeMeters, SettingGroup::recording),
    flag("cfg\\vgps", "rci", 1, &Settings::recordCell, SettingGroup::recording),
    flag("cfg\\vgps", "rsc", 0, &Settings::recordSpeed, SettingGroup::recording),
    flag("cfg\\vgps", "rtc", 0, &Settings::recordTime, SettingGroup::recording),
    flag("cfg\\vgps", "rbc", 0, &Settings::recordCourse, SettingGroup::recording),
    number("cfg\\vgps", "res", 0, &Settings::recordEvery, SettingGroup::recording),
    number("cfg\\vgps", "reseconds", 0, &Settings::recordEverySeconds, SettingGroup::recording),
    number("cfg\\vgps", "remeters", 0, &Settings::recordEveryMeters, SettingGroup::recording),
    flag("cfg\\vgps", "rejumps", 0, &Settings::jumpFilter, SettingGroup::recording),
    number("cfg\\vgps", "bem", 0, &Settings::recordBem, SettingGroup::recording),
    flag("cfg\\vgps", "drp", 1, &Settings::drawPath, SettingGroup::recording),
    flag("cfg\\vgps", "vci", 1, &Settings::viewCell, SettingGroup::playback),
    flag("cfg\\vgps", "uaa", 1, &Settings::useAltitude, SettingGroup::playback),
    number("cfg\\vgps", "rws", 3, &Settings::recalculateWaypoints, SettingGroup::playback),
    number("cfg\\vgps", "wrm", 0, &Settings::reachMeters, SettingGroup::playback),
    number("cfg\\vgps", "wrs", 10, &Settings::reachSeconds, SettingGroup::playback),
    number("cfg\\vgps", "pls", 5, &Settings::pathLineSize, SettingGroup::playback),
    number("cfg\\vgps", "mls", 2, &Settings::mapLineSize, SettingGroup::playback),
    number("cfg\\camera", "left", 2, &Settings::cameraLeft, SettingGroup::camera),
    number("cfg\\camera", "right", 98, &Settings::cameraRight, SettingGroup::camera),
    number("cfg\\camera", "top", 2, &Settings::cameraTop, SettingGroup::camera),
    number("cfg\\camera", "bottom", 20, &Settings::cameraBottom, SettingGroup::camera),
    color("cfg\\camera", "color", 255, &Settings::cameraColor, SettingGroup::camera),
    number("cfg\\camera", "align", 0, &Settings::cameraAlign, SettingGroup::camera),
    number("cfg\\vgps", "cut", 0, &Settings::utmEllipsoid, SettingGroup::display),
    number("cfg\\track", "angle", 10, &Settings::recordAngle, SettingGroup::recording),
    number("cfg\\track", "speed", 5, &Settings::recordMinSpeed, SettingGroup::recording),
    number("cfg\\track", "alt", 30, &Settings::recordAltitude, SettingGroup::recording),
    number("cfg\\vgps", "CompassZ", 0, &Settings::compassZ, SettingGroup::compass),
    number("cfg\\vgps", "CompassX", 0, &Settings::compassX, SettingGroup::compass),
    number("cfg\\vgps", "CompassY", 0, &Settings::compassY, SettingGroup::compass),
    color("cfg\\cc", "c1", 0, &Settings::colorInform, SettingGroup::color),
    color("cfg\\cc", "c2", 0xE9E9E9, &Settings::colorBackground, SettingGroup::color),
    color("cfg\\cc", "c3", 0xFF0000, &Settings::colorSuccess, SettingGroup::color),
    color("cfg\\cc", "c4", 0x0000FF, &Settings::colorFailure, SettingGroup::color),
    color("cfg\\cc", "c5", 0x969696, &Settings::colorGray, SettingGroup::color),
    color("cfg\\cc", "c6", 0xBEBEBE, &Settings::colorLightGray, SettingGroup::color),
    color("cfg\\cc", "c7", 0xFF00FF, &Settings::colorZone, SettingGroup::color),
    countdown("cfg\\vgps", "upd", 0, &Settings::updateCountdown, SettingGroup::update),
    flag("cfg\\vgps", "tde", 0, &Settings::tripDataOn, SettingGroup::tripData),
    flag("cfg\\tdp", "c1", 1, &Settings::tripDataPosition, SettingGroup::tripData),
    flag("cfg\\tdp", "c2", 1, &Settings::tripDataSpeed, SettingGroup::tripData),
    flag("cfg\\tdp", "c3", 1, &Settings::tripDataNearest, SettingGroup::tripData),
    flag("cfg\\tdp", "c4", 1, &Settings::tripDataPlayback, SettingGroup::tripData),
    flag("cfg\\tdp", "c5", 1, &Settings::tripDataSatellites, SettingGroup::tripData),
    flag("cfg\\tdp", "c6", 1, &Settings::tripDataAltitude, SettingGroup::tripData),
    number("cfg\\vgps", "bes", 0, &Settings::recordBes, SettingGroup::recording),
    // Keys of optional features, whose defaults change nothing.
    flag("cfg\\vgps", "lgn", 0, &Settings::logStream, SettingGroup::gps),
    flag("cfg\\vgps", "afg", 0, &Settings::altitudeFromGeoidField, SettingGroup::gps),
    number("cfg\\vgps", "bki", 0, &Settings::backupMinutes, SettingGroup::recording),
    flag("cfg\\vgps", "mnr", 0, &Settings::manualRecording, SettingGroup::recording),
    text("cfg\\vgps", "tlp", "", 300, &Settings::trackStorePath, SettingGroup::recording),
    // Connection settings.
    number("cfg\\gps", "tlk", 0, &Settings::talkers, SettingGroup::gps),
    flag("cfg\\gps", "rcn", 1, &Settings::reconnect, SettingGroup::gps),
    number("cfg\\window", "left", 0, &Settings::windowLeft, SettingGroup::window),
    number("cfg\\window", "top", 0, &Settings::windowTop, SettingGroup::window),
    number("cfg\\window", "width", 0, &Settings::windowWidth, SettingGroup::window),
    number("cfg\\window", "height", 0, &Settings::windowHeight, SettingGroup::window),
    flag("cfg\\window", "maximized", 0, &Settings::windowMaximized, SettingGroup::window),
    number("cfg\\window", "screen", 1, &Settings::windowScreen, SettingGroup::window),
    number("cfg\\window", "scheme", 0, &Settings::windowScheme, SettingGroup::window),
    flag("cfg\\track", "asked", 0, &Settings::recordingExplained, SettingGroup::recording),
    text("cfg\\vgps", "ups", "", 200, &Settings::updateSource, SettingGroup::update),
    flag("cfg\\vgps", "zdec", 0, &Settings::altitudeDecimals, SettingGroup::display),
    flag("cfg\\vgps", "imp", 0, &Settings::importEverything, SettingGroup::other),
      // clang-format on
  });
}();

// Refers to a row by its member. A member without a row does not compile.
class Setting {
 public:
  template <typename Value>
  // NOLINTNEXTLINE(google-explicit-constructor): the member is the name of the setting
  consteval Setting(Value Settings::*member) : row_(&rowOf(member)) {}

  constexpr const SettingRow& operator*() const { return *row_; }
  constexpr const SettingRow* operator->() const { return row_; }
  constexpr bool operator==(const Setting&) const = default;

 private:
  static void thereIsNoSuchSetting();  // not constexpr, so calling it fails to compile

  static constexpr const SettingRow& rowOf(SettingMember member) {
    for (const SettingRow& row : kSettingRows) {
      if (row.member == member) return row;
    }
    thereIsNoSuchSetting();
    return kSettingRows.front();
  }

  const SettingRow* row_;
};

}  // namespace vgps
