#include "app/desktop/menus.h"

#include <array>
#include <vector>

#include "app/desktop/commands.h"
#include "base/texts.h"

namespace vgps {
namespace {

constexpr MenuRow popup(Text text) { return {.kind = MenuRow::popup, .text = text}; }
constexpr MenuRow item(Command command) { return {.kind = MenuRow::item, .command = command}; }
constexpr MenuRow kLine = {.kind = MenuRow::separator};
constexpr MenuRow kEnd = {.kind = MenuRow::end};

constexpr auto kMenu = std::to_array<MenuRow>({
    // clang-format off
    popup(Text::menuGps),
      item(Command::gpsSetup), item(Command::findReceiver), item(Command::startSimulation), kLine,
      item(Command::connect), item(Command::disconnect), kLine,
      item(Command::gpsTimeToSystem), item(Command::sendPositionAsWaypoint), kLine,
      item(Command::shutdown),
    kEnd,
    popup(Text::menuView),
      item(Command::viewGps), item(Command::viewMap), item(Command::viewSatellites),
      item(Command::viewTracks), item(Command::viewWaypoints), item(Command::viewStatistics),
      kLine,
      popup(Text::menuMoreScreens),
        item(Command::viewCustomMaps), item(Command::viewSun), item(Command::viewMoon),
        item(Command::viewPath), item(Command::viewCompass), item(Command::viewSpeedometer),
        item(Command::viewNearWaypoints), item(Command::viewContacts),
        item(Command::viewSpaceWaypoints), item(Command::viewFlight), item(Command::viewDrive),
        item(Command::viewSport), item(Command::viewAccelerometer),
      kEnd,
      item(Command::viewRawLog), item(Command::nextScreen), item(Command::resetTrip), kLine,
      item(Command::dayColors), item(Command::nightColors), item(Command::customColors),
      item(Command::switchDayAndNight), kLine,
      popup(Text::menuWindowSize),
        item(Command::size240x320), item(Command::size320x240), item(Command::size240x240),
        item(Command::size320x320), item(Command::size640x480), item(Command::size320x480),
      kEnd,
    kEnd,
    popup(Text::menuMap),
      item(Command::zoomIn), item(Command::zoomOut), item(Command::moveLeft),
      item(Command::moveRight), item(Command::moveUp), item(Command::moveDown),
      item(Command::rotateLeft), item(Command::rotateRight),
      item(Command::wholeMap), item(Command::centerPosition), kLine,
      item(Command::cartesian2d), item(Command::polar2d), item(Command::cartesian3d),
      item(Command::polar3d), kLine,
      item(Command::onlineMap), item(Command::livePosition),
    kEnd,
    popup(Text::menuTrack),
      item(Command::startRecording), item(Command::pauseOrResume), item(Command::markPoint),
      item(Command::recordPointNow), item(Command::endRecording), kLine,
      popup(Text::menuRecordingPresets),
        item(Command::presetWalking), item(Command::presetDriving), item(Command::presetFlying),
      kEnd,
      item(Command::wanderAround), item(Command::returnTrip), kLine,
      item(Command::openTrack), item(Command::saveTrack), item(Command::thinTrack),
      item(Command::reverseTrack), item(Command::joinTrack), item(Command::splitTrack),
      item(Command::trimTrack), item(Command::renameTrack),
      item(Command::discardTrack), item(Command::restoreDiscarded),
    kEnd,
    popup(Text::menuRoute),
      item(Command::playTrack), item(Command::goToWaypoint), item(Command::goToPoint),
      item(Command::goHome), item(Command::planRoute),
    kEnd,
    popup(Text::menuWaypoints),
      item(Command::addWaypoint), item(Command::editWaypoint), item(Command::deleteWaypoint),
      kLine,
      item(Command::addCategory), item(Command::deleteCategory),
    kEnd,
    popup(Text::menuFiles),
      item(Command::exportKml), item(Command::importKml), kLine,
      item(Command::exportLoc), item(Command::importLoc), kLine,
      item(Command::exportGpx), item(Command::importGpx), kLine,
      item(Command::exportTrackFiles),
    kEnd,
    popup(Text::menuTools),
      item(Command::distanceCalculator), item(Command::areaCalculator),
      item(Command::volumeCalculator), kLine,
      item(Command::sportRun), item(Command::camera),
    kEnd,
    popup(Text::menuOptions),
      item(Command::mapOptions), item(Command::speedOptions), item(Command::settings),
      item(Command::recordingOptions), item(Command::distanceViews), item(Command::liveTracking),
      item(Command::playbackOptions),
      item(Command::colors), item(Command::pursue), item(Command::backgrounds),
      item(Command::cameraBox), item(Command::sounds), item(Command::waypointAlarms),
      item(Command::trackStorage),
      item(Command::languages), item(Command::map3dOptions), kLine,
      item(Command::allOptions),
    kEnd,
    popup(Text::menuDebug),
      item(Command::logOn), item(Command::logOff), item(Command::clearRawLog),
      item(Command::pauseRawLog), item(Command::copyRawLog), kLine,
      item(Command::simulateTapping), item(Command::simulateByTimer),
      item(Command::simulatePoint), item(Command::stepSimulation), kLine,
      item(Command::editSimulation), item(Command::loadSimulation), item(Command::saveSimulation),
    kEnd,
    popup(Text::menuSirf),
      item(Command::switchToSirf), item(Command::switchToNmea), kLine,
      item(Command::debugNmeaOn), item(Command::debugNmeaOff), kLine,
      popup(Text::menuSentenceRates),
        item(Command::rateOfGga), item(Command::rateOfGll), item(Command::rateOfGsa),
        item(Command::rateOfGsv), item(Command::rateOfRmc), item(Command::rateOfVtg),
      kEnd,
      item(Command::resetCold), item(Command::resetWarm), item(Command::resetHot),
      item(Command::resetFactory), kLine,
      item(Command::waasOn), item(Command::waasOff),
    kEnd,
    popup(Text::menuHelp),
      item(Command::supportForum), item(Command::donate), item(Command::checkForUpdates), kLine,
      item(Command::about),
    kEnd,
    // clang-format on
});

// Separators remain only between items; empty popups are removed together with their end.
std::vector<MenuRow> withoutUnavailable(std::span<const MenuRow> rows) {
  std::vector<MenuRow> kept;
  const auto endsWith = [&](MenuRow::Kind kind) {
    return !kept.empty() && kept.back().kind == kind;
  };
  for (const MenuRow& row : rows) {
    const bool atStart = kept.empty() || endsWith(MenuRow::popup);
    switch (row.kind) {
      case MenuRow::item:
        if (isAvailable(row.command)) kept.push_back(row);
        break;
      case MenuRow::separator:
        if (!atStart && !endsWith(MenuRow::separator)) kept.push_back(row);
        break;
      case MenuRow::popup: kept.push_back(row); break;
      case MenuRow::end:
        if (endsWith(MenuRow::separator)) kept.pop_back();
        if (endsWith(MenuRow::popup)) {
          kept.pop_back();
        } else {
          kept.push_back(row);
        }
        break;
    }
  }
  return kept;
}

constexpr uint16_t kPause = 0x13;
constexpr uint16_t kF1 = 0x70;
constexpr uint16_t functionKey(int number) { return static_cast<uint16_t>(kF1 + number - 1); }

constexpr auto kAccelerators = std::to_array<KeyRow>({
    // key, control, shift, alt, command
    {functionKey(1), false, false, false, Command::about},
    {functionKey(2), false, false, false, Command::viewGps},
    {functionKey(3), false, false, false, Command::viewSatellites},
    {functionKey(4), false, false, false, Command::viewMap},
    {functionKey(5), false, false, false, Command::connect},
    {functionKey(5), false, true, false, Command::disconnect},
    {functionKey(6), false, false, false, Command::viewRawLog},
    {functionKey(9), false, false, false, Command::startRecording},
    {functionKey(9), false, true, false, Command::endRecording},
    {functionKey(11), false, false, false, Command::pauseOrResume},
    {functionKey(12), false, false, false, Command::markPoint},
    {kPause, false, false, false, Command::pauseRawLog},
    {'C', true, false, false, Command::copyRawLog},
    {'D', true, false, false, Command::dayColors},
    {'F', true, false, false, Command::findReceiver},
    {'G', true, false, false, Command::gpsSetup},
    {'L', true, false, false, Command::logOn},
    {'N', true, false, false, Command::nightColors},
    {'O', true, false, false, Command::openTrack},
    {'S', true, false, false, Command::saveTrack},
    {'T', true, false, false, Command::allOptions},
});

// Combined with Ctrl, Alt, and Shift, which other programs rarely use.
constexpr auto kHotKeys = std::to_array<KeyRow>({
    {'C', true, true, true, Command::connect},
    {'R', true, true, true, Command::startRecording},
    {'P', true, true, true, Command::pauseOrResume},
    {'E', true, true, true, Command::endRecording},
    {'M', true, true, true, Command::markPoint},
    {'V', true, true, true, Command::nextScreen},
    {'N', true, true, true, Command::switchDayAndNight},
});

}  // namespace

std::span<const MenuRow> menuRows() { return kMenu; }
std::span<const MenuRow> offeredMenuRows() {
  static const std::vector<MenuRow> kOffered = withoutUnavailable(kMenu);
  return kOffered;
}
std::span<const KeyRow> acceleratorRows() { return kAccelerators; }
std::span<const KeyRow> hotKeyRows() { return kHotKeys; }

std::string keyText(const KeyRow& row) {
  std::string text;
  if (row.control) text += textOf(Text::keyControl);
  if (row.alt) text += textOf(Text::keyAlt);
  if (row.shift) text += textOf(Text::keyShift);
  if (row.key == kPause) return text + std::string(textOf(Text::keyPause));
  if (row.key >= kF1) return text + 'F' + std::to_string(row.key - kF1 + 1);
  return text + static_cast<char>(row.key);
}

std::string menuItemText(Command command) {
  std::string text(textOf(itemText(command)));
  for (const KeyRow& row : kAccelerators) {
    if (row.command == command) return text + '\t' + keyText(row);
  }
  return text;
}

bool menuItemChecked(const AppState& app, Command command) {
  const CommandRow* const row = findCommand(command);
  return row != nullptr && row->checked != nullptr && row->checked(app, command);
}

bool menuItemEnabled(const AppState& app, Command command) {
  const CommandRow* const row = findCommand(command);
  return row != nullptr && (row->enabled == nullptr || row->enabled(app, command));
}

}  // namespace vgps
