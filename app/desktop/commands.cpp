#include "app/desktop/commands.h"

#include <algorithm>
#include <array>

#include "app/desktop/command_handlers.h"
#include "app/desktop/dialogs.h"
#include "base/texts.h"

namespace vgps {
namespace {

constexpr CommandRow one(Command command, CommandHandler handler,
                         CommandPredicate checked = nullptr, CommandPredicate enabled = nullptr) {
  return {command, command, handler, checked, enabled};
}

// Either the handler uses the number as an argument, or the numbers have no meaning yet.
constexpr CommandRow range(Command first, Command last, CommandHandler handler) {
  return {first, last, handler};
}

constexpr CommandRow view(Command command) { return one(command, showScreen, isScreen); }

constexpr CommandRow missing(Command command) { return one(command, notImplemented); }

constexpr CommandRow missing(Command first, Command last) {
  return range(first, last, notImplemented);
}

// Where families overlap, the number belongs to the more specific row: calculators among the views,
// "go to" and waypoints among the views of tracks and zones.
constexpr auto kRows = std::to_array<CommandRow>({
    // clang-format off
    one(Command::gpsSetup, openOptionDialog),
    one(Command::connect, connectFromSettings, nullptr, isDisconnected),
    one(Command::disconnect, disconnect, nullptr, isConnected),
    one(Command::gpsTimeToSystem, gpsTimeToSystem, nullptr, hasFix),
    one(Command::findReceiver, openOptionDialog),
    one(Command::startSimulation, connectSimulation, isSimulating),

    missing(Command::supportForum),
    missing(Command::donate),
    one(Command::checkForUpdates, tellAboutUpdates),
    one(Command::about, showAbout),
    one(Command::shutdown, closeProgram),

    view(Command::viewGps),
    range(Command::viewsBeforeMap, Command::viewsBeforeMapLast, ignoreView),
    view(Command::viewMap),
    view(Command::viewSatellites),
    view(Command::viewTracks),
    view(Command::viewWaypoints),
    range(Command::viewsBeforeStatistics, Command::viewsBeforeStatisticsLast, ignoreView),
    view(Command::viewStatistics),
    view(Command::viewCustomMaps),
    view(Command::viewSun),
    view(Command::viewMoon),
    view(Command::viewPath),
    view(Command::viewCompass),
    view(Command::viewSpeedometer),
    view(Command::viewNearWaypoints),
    view(Command::viewContacts),
    view(Command::viewSpaceWaypoints),
    view(Command::viewFlight),
    range(Command::viewsBeforeCalculators, Command::viewsBeforeCalculatorsLast, ignoreView),
    missing(Command::distanceCalculator),
    missing(Command::areaCalculator),
    missing(Command::volumeCalculator),
    range(Command::viewsBeforeDrive, Command::viewsBeforeDriveLast, ignoreView),
    view(Command::viewDrive),
    range(Command::viewsBeforeSport, Command::viewsBeforeSportLast, ignoreView),
    view(Command::viewSport),
    view(Command::viewAccelerometer),
    view(Command::viewRawLog),

    one(Command::dayColors, chooseColors, isColorScheme),
    one(Command::nightColors, chooseColors, isColorScheme),
    one(Command::customColors, chooseColors, isColorScheme),

    missing(Command::zoomIn),
    missing(Command::zoomOut),
    missing(Command::moveLeft),
    missing(Command::moveRight),
    missing(Command::moveUp),
    missing(Command::moveDown),
    missing(Command::rotateLeft),
    missing(Command::rotateRight),
    missing(Command::wholeMap),
    missing(Command::centerPosition),
    one(Command::cartesian2d, chooseProjection, isProjection),
    one(Command::polar2d, chooseProjection, isProjection),
    missing(Command::mapsBeforeCartesian3d, Command::mapsBeforeCartesian3dLast),
    one(Command::cartesian3d, show3dMap, isProjection),
    missing(Command::mapsBeforePolar3d, Command::mapsBeforePolar3dLast),
    one(Command::polar3d, chooseProjection, isProjection),
    missing(Command::sendPositionAsWaypoint),
    one(Command::logOn, switchLog, isLogState),
    one(Command::logOff, switchLog, isLogState),
    one(Command::simulateTapping, chooseSimulationMode, isSimulationMode),
    one(Command::simulateByTimer, chooseSimulationMode, isSimulationMode),
    one(Command::simulatePoint, chooseSimulationMode, isSimulationMode),
    missing(Command::editSimulation),
    one(Command::loadSimulation, loadSimulation),
    missing(Command::saveSimulation),
    one(Command::stepSimulation, stepSimulation, nullptr, waitsForStep),
    missing(Command::simulationReserved, Command::simulationReservedLast),
    one(Command::clearRawLog, clearRawLog, nullptr, hasRawLog),

    missing(Command::switchToSirf),
    missing(Command::switchToNmea),
    missing(Command::sirfReserved, Command::sirfReservedLast),
    missing(Command::debugNmeaOn),
    missing(Command::debugNmeaOff),
    missing(Command::sirfBeforeRates, Command::sirfBeforeRatesLast),
    missing(Command::rateOfGga),
    missing(Command::rateOfGll),
    missing(Command::rateOfGsa),
    missing(Command::rateOfGsv),
    missing(Command::rateOfRmc),
    missing(Command::rateOfVtg),
    missing(Command::sirfBeforeResets, Command::sirfBeforeResetsLast),
    missing(Command::resetCold),
    missing(Command::resetWarm),
    missing(Command::resetHot),
    missing(Command::resetFactory),
    missing(Command::sirfBeforeWaas, Command::sirfBeforeWaasLast),
    missing(Command::waasOn),
    missing(Command::waasOff),

    missing(Command::camera),
    missing(Command::geotagging, Command::geotaggingLast),

    one(Command::size240x320, resizeScreen),
    one(Command::size320x240, resizeScreen),
    one(Command::size240x240, resizeScreen),
    one(Command::size320x320, resizeScreen),
    one(Command::size640x480, resizeScreen),
    one(Command::size320x480, resizeScreen),

    one(Command::confirmPopup, confirmPopup),
    one(Command::goBack, goBack),

    missing(Command::measuringPoints, Command::measuringPointsLast),

    one(Command::startRecording, startRecording, nullptr, isIdle),
    one(Command::pauseOrResume, pauseOrResumeRecording, isPaused, isNotPlaying),
    one(Command::endRecording, endRecording, nullptr, isNotIdle),
    missing(Command::goToWaypoint),
    missing(Command::goToPoint),
    missing(Command::goHome),
    one(Command::thinTrack, thinTrack, nullptr, hasFinishedTrack),
    one(Command::reverseTrack, reverseTrack, nullptr, hasFinishedTrack),
    one(Command::joinTrack, joinTrack, nullptr, hasFinishedTrack),
    missing(Command::splitTrack),
    one(Command::saveTrack, saveTrack, nullptr, hasFinishedTrack),
    one(Command::openTrack, openTrack, nullptr, isIdle),
    one(Command::discardTrack, discardTrack, nullptr, hasFinishedTrack),
    one(Command::markPoint, markPoint, nullptr, takesMarks),
    one(Command::recordPointNow, recordPointNow, nullptr, canRecordPoint),
    missing(Command::trimTrack),
    missing(Command::playTrack),
    missing(Command::recordingReserved, Command::recordingReservedLast),
    one(Command::presetWalking, choosePreset, isPreset),
    one(Command::presetDriving, choosePreset, isPreset),
    one(Command::presetFlying, choosePreset, isPreset),
    missing(Command::returnTrip),
    missing(Command::trackViews, Command::trackViewsLast),
    missing(Command::addWaypoint),
    missing(Command::editWaypoint),
    missing(Command::deleteWaypoint),
    missing(Command::addCategory),
    missing(Command::deleteCategory),
    missing(Command::planRoute),
    missing(Command::waypointsReserved, Command::waypointsReservedLast),
    missing(Command::goTo),
    missing(Command::zoneViews, Command::zoneViewsLast),
    missing(Command::routePlanning, Command::routePlanningLast),
    missing(Command::moreTrackViews, Command::moreTrackViewsLast),
    one(Command::wanderAround, wanderAround, nullptr, isIdle),
    one(Command::trackChanged, trackChanged),

    one(Command::exportKml, exportFile),
    one(Command::importKml, importFile),
    missing(Command::kmlReserved, Command::kmlReservedLast),
    one(Command::exportLoc, exportFile),
    one(Command::importLoc, importFile),
    missing(Command::locReserved, Command::locReservedLast),
    one(Command::exportGpx, exportFile),
    one(Command::importGpx, importFile),
    missing(Command::gpxReserved, Command::gpxReservedLast),
    missing(Command::associations, Command::associationsLast),
    missing(Command::onlineMap),
    missing(Command::livePosition),
    missing(Command::sportRun),
    missing(Command::sportRuns, Command::sportRunsLast),
    missing(Command::onlineMapAtPosition),

    one(Command::mapOptions, openOptionDialog),
    one(Command::speedOptions, openOptionDialog),
    one(Command::settings, openOptionDialog),
    one(Command::recordingOptions, openOptionDialog),
    one(Command::distanceViews, openOptionDialog),
    one(Command::liveTracking, openOptionDialog),
    one(Command::playbackOptions, openOptionDialog),
    one(Command::colors, openOptionDialog),
    one(Command::pursue, openOptionDialog),
    one(Command::backgrounds, openOptionDialog),
    one(Command::cameraBox, openOptionDialog),
    one(Command::sounds, openOptionDialog),
    missing(Command::waypointAlarms),
    one(Command::trackStorage, openOptionDialog),
    one(Command::languages, openOptionDialog),
    one(Command::map3dOptions, openOptionDialog),
    missing(Command::optionsReserved, Command::optionsReservedLast),
    one(Command::hiddenOption, openOptionDialog),
    missing(Command::allOptions),

    missing(Command::userScreens, Command::userScreensLast),
    missing(Command::camera3d, Command::camera3dLast),  // Z, X, Y, rX, rY, rZ, each up and down
    missing(Command::camera3dReserved, Command::camera3dReservedLast),
    one(Command::nextScreen, showNextScreen),
    one(Command::switchDayAndNight, switchDayAndNight),
    one(Command::pauseRawLog, pauseRawLog, isRawLogPaused, showsRawLog),
    one(Command::copyRawLog, copyRawLog, nullptr, hasRawLog),
    one(Command::resetTrip, resetTrip),
    one(Command::firstRecording, openOptionDialog),
    one(Command::renameTrack, renameTrack, nullptr, hasSavedTrack),
    one(Command::restoreDiscarded, restoreDiscarded),
    one(Command::exportTrackFiles, exportTrackFiles),
    // clang-format on
});

constexpr bool inOrderWithoutOverlap() {
  for (size_t i = 0; i < kRows.size(); ++i) {
    if (kRows[i].last < kRows[i].command) return false;
    if (i > 0 && kRows[i].command <= kRows[i - 1].last) return false;
  }
  return true;
}
static_assert(inOrderWithoutOverlap());

// What each handler needs to work; handlers without a row need nothing.
struct NeedRow {
  CommandHandler handler;
  bool (*isThere)(Command command);
};
constexpr NeedRow kNeeds[] = {
    {notImplemented, [](Command) { return false; }},
    {ignoreView, [](Command) { return false; }},
    {showScreen, isViewDrawn},
    {show3dMap, isMapDrawn},
    {chooseProjection, isMapDrawn},
    {openOptionDialog, hasDialogInUse},
};

}  // namespace

std::span<const CommandRow> commandRows() { return kRows; }

const CommandRow* findCommand(Command command) {
  const auto found =
      std::lower_bound(kRows.begin(), kRows.end(), command,
                       [](const CommandRow& row, Command wanted) { return row.last < wanted; });
  return found == kRows.end() || command < found->command ? nullptr : &*found;
}

bool runCommand(Desktop& app, Command command) {
  const CommandRow* const row = findCommand(command);
  if (row == nullptr) return false;
  row->handler(app, command);
  return true;
}

bool isAvailable(Command command) {
  const CommandRow* const row = findCommand(command);
  if (row == nullptr) return false;
  const auto* const need =
      std::find_if(std::begin(kNeeds), std::end(kNeeds),
                   [row](const NeedRow& candidate) { return candidate.handler == row->handler; });
  return need == std::end(kNeeds) || need->isThere(command);
}

bool runHotKey(Desktop& app, Command command) {
  app.repaints.reset(app.platform.clock.tick());
  app.commandFromHotKey = true;
  const bool known = runCommand(app, command);
  app.commandFromHotKey = false;
  return known;
}

void notImplemented(Desktop& app, Command) { showNotice(app, textOf(Text::notAvailable)); }

}  // namespace vgps
