#include "app/settings/settings_in_use.h"

#include <algorithm>

#include "app/settings/settings_table.h"

namespace vgps {
namespace {

// Map, reports to others, playback, camera, compass, trip data.
constexpr SettingGroup kUnusedGroups[] = {
    SettingGroup::map,      SettingGroup::map3d,  SettingGroup::background,
    SettingGroup::tracking, SettingGroup::pursue, SettingGroup::smsTracking,
    SettingGroup::playback, SettingGroup::camera, SettingGroup::compass,
    SettingGroup::tripData, SettingGroup::other,
};

constexpr Setting kUnusedSettings[] = {
    &Settings::solidCompass,
    &Settings::showLetters,
    &Settings::backlightOn,
    &Settings::bigWaypoints,
    &Settings::useLedFont,
    &Settings::saveOnLowBattery,
    &Settings::showContactWaypoints,
    &Settings::speedWarning,
    &Settings::speedLimit,
    &Settings::markWarning,
    &Settings::drawPath,
    &Settings::recordCell,
    &Settings::recordBem,
    &Settings::colorZone,
};

}  // namespace

bool isInUse(const SettingRow& row) {
  const auto isRow = [&row](Setting setting) { return setting->member == row.member; };
  return std::find(std::begin(kUnusedGroups), std::end(kUnusedGroups), row.group) ==
             std::end(kUnusedGroups) &&
         std::none_of(std::begin(kUnusedSettings), std::end(kUnusedSettings), isRow);
}

}  // namespace vgps
