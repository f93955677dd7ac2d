#include <algorithm>
#include <array>

#include "app/desktop/command.h"
#include "app/desktop/dialogs.h"
#include "base/number.h"
#include "base/texts.h"
#include "geo/ellipsoids.h"
#include "res/dialog_ids.h"

namespace vgps {
namespace {

constexpr DialogField check(uint16_t control, Text label, Setting setting,
                            std::span<const uint16_t> disables = {}) {
  return {.control = control,
          .label = label,
          .kind = FieldKind::check,
          .setting = setting,
          .disables = disables};
}

constexpr DialogField number(uint16_t control, Text label, Setting setting,
                             Correction correction = {}) {
  return {.control = control,
          .label = label,
          .kind = FieldKind::number,
          .setting = setting,
          .correction = correction};
}

// Zero or an empty value is replaced by the default.
constexpr DialogField aboveZero(uint16_t control, Text label, Setting setting, int32_t standard) {
  return number(control, label, setting, {.lowest = 1, .instead = standard});
}

constexpr DialogField upTo30(uint16_t control, Text label, Setting setting, int32_t standard) {
  return number(control, label, setting, {.lowest = 0, .highest = 30, .instead = standard});
}

constexpr DialogField decimal(uint16_t control, Text label, Setting setting) {
  return {.control = control, .label = label, .kind = FieldKind::decimal, .setting = setting};
}

constexpr DialogField text(uint16_t control, Text label, Setting setting) {
  return {.control = control, .label = label, .kind = FieldKind::text, .setting = setting};
}

constexpr DialogField color(uint16_t control, Text label, Setting setting) {
  return {.control = control, .label = label, .kind = FieldKind::color, .setting = setting};
}

constexpr DialogField list(uint16_t control, Text label, Setting setting,
                           std::span<const DialogChoice> choices) {
  return {.control = control,
          .label = label,
          .kind = FieldKind::list,
          .setting = setting,
          .choices = choices};
}

constexpr DialogField switched(uint16_t control, Text label, Setting setting,
                               uint16_t switchControl) {
  return {.control = control,
          .label = label,
          .kind = FieldKind::switched,
          .switchControl = switchControl,
          .setting = setting};
}

constexpr FileFilter kImageFiles{Text::imageFiles, "*.png;*.jpg;*.jpeg;*.bmp;*.gif;*.tif;*.tiff"};
constexpr FileFilter kSoundFiles{Text::soundFiles, "*.wav"};
constexpr FileFilter kLanguageFiles{Text::languageLibraries, "*.dll"};

constexpr DialogAction chooseFile(uint16_t control, Text label, uint16_t target, FileFilter files) {
  return {.control = control,
          .label = label,
          .kind = ActionKind::chooseFile,
          .target = target,
          .files = files};
}

constexpr DialogAction chooseFolder(uint16_t control, Text label, uint16_t target) {
  return {.control = control, .label = label, .kind = ActionKind::chooseFolder, .target = target};
}

constexpr DialogAction play(uint16_t control, Text label, uint16_t target, const char* sound) {
  return {.control = control,
          .label = label,
          .kind = ActionKind::playSound,
          .target = target,
          .sound = sound};
}

constexpr DialogAction preset(uint16_t control, Text label, const RecordingPreset& preset) {
  return {.control = control, .label = label, .kind = ActionKind::preset, .preset = &preset};
}

// Receiver

// Port numbers that the user can select without searching, and the names of existing ports.
std::vector<DialogItem> portItems(const DialogContext& context) {
  constexpr int kNumbers = 20;
  std::vector<DialogItem> items;
  for (const PortName& port : context.ports) {
    if (port.description.empty()) continue;
    items.push_back({port.name + " - " + port.description, port.name});
  }
  for (int i = 0; i < kNumbers; ++i) {
    const std::string name = "COM" + decimalText(int64_t{i});
    items.push_back({name, name});
  }
  for (const PortName& port : context.ports) {
    const auto named = [&](const DialogItem& item) { return item.value == port.name; };
    if (std::none_of(items.begin(), items.end(), named)) items.push_back({port.name, port.name});
  }
  return items;
}

std::vector<DialogItem> speedItems(const DialogContext&) {
  constexpr const char* kSpeeds[] = {"1200",  "2400",   "4800",   "9600",   "19200", "38400",
                                     "57600", "115200", "230400", "460800", "921600"};
  std::vector<DialogItem> items;
  for (const char* const speed : kSpeeds) items.push_back({speed, speed});
  return items;
}

// While one of these sources is selected, the serial port and the other sources have no effect.
constexpr uint16_t kNotWhenSimulated[] = {CONTROL_PORT, CONTROL_BAUD_RATE, CONTROL_GPS_API,
                                          CONTROL_SENSOR_API};
constexpr uint16_t kNotWithGpsApi[] = {CONTROL_PORT, CONTROL_BAUD_RATE, CONTROL_SIMULATE,
                                       CONTROL_SENSOR_API};
constexpr uint16_t kNotWithSensorApi[] = {CONTROL_PORT, CONTROL_BAUD_RATE, CONTROL_SIMULATE,
                                          CONTROL_GPS_API};

constexpr DialogChoice kEpochButtons[] = {
    {.value = 1, .text = Text::gpsRmc, .control = CONTROL_EPOCH_RMC},
    {.value = 2, .text = Text::gpsGga, .control = CONTROL_EPOCH_GGA},
    {.value = 0, .text = Text::gpsFirstOfBurst, .control = CONTROL_EPOCH_AUTOMATIC},
    {.value = 3, .text = Text::gpsRmcOrGga, .control = CONTROL_EPOCH_BOTH}};

constexpr DialogField kGpsFields[] = {
    {.control = CONTROL_PORT,
     .label = Text::gpsPort,
     .kind = FieldKind::box,
     .setting = &Settings::port,
     .items = portItems},
    {.control = CONTROL_BAUD_RATE,
     .label = Text::gpsBaudRate,
     .kind = FieldKind::box,
     .setting = &Settings::baudRate,
     .correction = {.lowest = 1, .instead = 9600},
     .items = speedItems},
    check(CONTROL_RECONNECT, Text::gpsReconnect, &Settings::reconnect),
    check(CONTROL_SIMULATE, Text::gpsSimulation, &Settings::simulate, kNotWhenSimulated),
    check(CONTROL_GPS_API, Text::gpsInterface, &Settings::useGpsApi, kNotWithGpsApi),
    check(CONTROL_SENSOR_API, Text::gpsLocationSensor, &Settings::useSensorApi, kNotWithSensorApi),
    {.control = CONTROL_EPOCH_RMC,
     .label = Text::gpsFixCompleteWith,
     .kind = FieldKind::radio,
     .setting = &Settings::epochSentenceSetting,
     .choices = kEpochButtons},
};
constexpr DialogAction kGpsActions[] = {{.control = CONTROL_SEARCH_PORTS,
                                         .label = Text::gpsFindPorts,
                                         .kind = ActionKind::searchPorts}};
constexpr SettingGroup kGpsGroups[] = {SettingGroup::gps};

// Maps

constexpr DialogField kMapFields[] = {
    text(CONTROL_MAPS_FOLDER, Text::mapFolderOfOfflineMaps, &Settings::mapsFolder),
    number(CONTROL_MAP_MARGIN, Text::mapMargin, &Settings::mapMargin),
    check(CONTROL_LOAD_DYNAMIC_MAPS, Text::mapLoadDynamicMaps, &Settings::loadDynamicMaps),
    check(CONTROL_SAVE_DYNAMIC_MAPS, Text::mapSaveDynamicMaps, &Settings::saveDynamicMaps),
    check(CONTROL_LOAD_OFFLINE_MAPS, Text::mapLoadOfflineMaps, &Settings::loadOfflineMaps),
    check(CONTROL_MAP_FOLLOWS, Text::mapFollowThePosition, &Settings::mapFollowsPosition),
    check(CONTROL_MAP_ROTATES, Text::mapTurnWithTheCourse, &Settings::mapRotates),
    check(CONTROL_MAP_ROTATES_IMAGES, Text::mapRotateImages, &Settings::mapRotatesImages),
    check(CONTROL_MAP_FIXES_ZOOM, Text::mapKeepTheZoom, &Settings::mapFixesZoom),
    check(CONTROL_MAP_SHOWS_ICONS, Text::mapShowIcons, &Settings::mapShowsIcons),
    check(CONTROL_MAP_SHOWS_COMPASS, Text::mapShowTheCompass, &Settings::mapShowsCompass),
    check(CONTROL_MAP_USES_GRID, Text::mapDrawTheGrid, &Settings::mapUsesGrid),
    check(CONTROL_MAP_REMOVES_GRID, Text::mapNoGridOverImages, &Settings::mapRemovesGrid),
    check(CONTROL_MAP_CUTS_VIEW, Text::mapCutToTheView, &Settings::mapCutsView),
};
constexpr DialogAction kMapActions[] = {
    chooseFolder(CONTROL_CHOOSE_MAPS_FOLDER, Text::mapBrowse, CONTROL_MAPS_FOLDER)};
constexpr SettingGroup kMapGroups[] = {SettingGroup::map};

constexpr DialogField kMap3dFields[] = {
    check(CONTROL_PROJECT_ALTITUDE, Text::map3dProjectTheAltitude, &Settings::projectAltitude),
    check(CONTROL_DRAW_Z_GRID, Text::map3dDrawTheZGrid, &Settings::drawZGrid),
    check(CONTROL_TRACKS_3D, Text::map3dTracks, &Settings::tracksIn3d),
    check(CONTROL_WAYPOINTS_3D, Text::map3dWaypoints, &Settings::waypointsIn3d),
    check(CONTROL_MAP_3D_ROTATES, Text::map3dTurnWithTheCourse, &Settings::map3dRotates),
    decimal(CONTROL_Z_SCALE, Text::map3dScaleOfHeights, &Settings::zScale),
};
constexpr SettingGroup kMap3dGroups[] = {SettingGroup::map3d};

// Units

constexpr DialogChoice kSpeedUnits[] = {{0, Text::kilometersPerHour},
                                        {1, Text::knots},
                                        {2, Text::metersPerSecond},
                                        {3, Text::milesPerHour}};
constexpr DialogField kSpeedFields[] = {
    check(CONTROL_SPEED_WARNING, Text::speedWarn, &Settings::speedWarning),
    number(CONTROL_SPEED_LIMIT, Text::speedMaximum, &Settings::speedLimit),
    list(CONTROL_SPEED_UNIT, Text::speedUnit, &Settings::speedUnit, kSpeedUnits),
};
constexpr SettingGroup kSpeedGroups[] = {SettingGroup::speed};

constexpr DialogChoice kLongUnits[] = {
    {0, Text::kilometers}, {1, Text::statuteMiles}, {2, Text::nauticalMiles}};
constexpr DialogChoice kShortUnits[] = {{0, Text::meters}, {1, Text::inches}, {2, Text::feet}};
constexpr DialogField kDistanceFields[] = {
    list(CONTROL_LONG_UNIT, Text::distanceLongDistances, &Settings::longDistanceUnit, kLongUnits),
    list(CONTROL_SHORT_UNIT, Text::distanceShortDistances, &Settings::shortDistanceUnit,
         kShortUnits),
};
constexpr SettingGroup kDistanceGroups[] = {SettingGroup::distance};

// Display

// The list's placeholder is shown as the ellipsoid that it stands for.
std::vector<DialogItem> ellipsoidItems(const DialogContext&) {
  std::vector<DialogItem> items;
  for (size_t i = 0; i < kEllipsoids; ++i) {
    const auto index = static_cast<int32_t>(i);
    std::string name = ellipsoidOf(index).name;
    name.erase(name.find_last_not_of(' ') + 1);
    if (index == 0) name = textWith(Text::standardEllipsoid, name);
    items.push_back({name, decimalText(int64_t{index})});
  }
  return items;
}

constexpr DialogChoice kPositionFormats[] = {
    {0, Text::degreesMinutesSeconds}, {1, Text::decimalDegrees}, {2, Text::utmGrid}};
constexpr DialogField kDisplayFields[] = {
    list(CONTROL_POSITION_FORMAT, Text::settingsPositionsIn, &Settings::positionFormat,
         kPositionFormats),
    {.control = CONTROL_ELLIPSOID,
     .label = Text::settingsEllipsoidOfTheGrid,
     .kind = FieldKind::list,
     .setting = &Settings::utmEllipsoid,
     .items = ellipsoidItems},
    decimal(CONTROL_FONT_FACTOR, Text::settingsFontFactor, &Settings::fontFactor),
    number(CONTROL_FRAME_SKIP, Text::settingsShowOneOf, &Settings::frameSkip),
    check(CONTROL_AUTO_CONNECT, Text::settingsConnectAtTheStart, &Settings::autoConnect),
    check(CONTROL_SOLID_COMPASS, Text::settingsSolidCompass, &Settings::solidCompass),
    check(CONTROL_SHOW_LETTERS, Text::settingsCompassLetters, &Settings::showLetters),
    check(CONTROL_BACKLIGHT_ON, Text::settingsBacklightStaysOn, &Settings::backlightOn),
    check(CONTROL_TRAY_ICON, Text::settingsIconInTheTray, &Settings::trayIcon),
    check(CONTROL_BIG_WAYPOINTS, Text::settingsBigWaypoints, &Settings::bigWaypoints),
    check(CONTROL_CONTACT_WAYPOINTS, Text::settingsWaypointsOfContacts,
          &Settings::showContactWaypoints),
    check(CONTROL_SAVE_ON_LOW_BATTERY, Text::settingsSaveWhenBatteryLow,
          &Settings::saveOnLowBattery),
    check(CONTROL_LED_FONT, Text::settingsLedDigits, &Settings::useLedFont),
};
constexpr SettingGroup kDisplayGroups[] = {SettingGroup::display};

// Tracks

constexpr DialogField kRecordFields[] = {
    aboveZero(CONTROL_RECORD_SPEED_STEP, Text::recordMinimumSpeed, &Settings::recordMinSpeed,
              RecordingOptions{}.speed),
    aboveZero(CONTROL_RECORD_ANGLE_STEP, Text::recordChangeOfCourse, &Settings::recordAngle,
              RecordingOptions{}.angle),
    aboveZero(CONTROL_RECORD_ALTITUDE_STEP, Text::recordChangeOfHeight, &Settings::recordAltitude,
              RecordingOptions{}.altitude),
    aboveZero(CONTROL_NORMALIZE_METRES, Text::recordThinOutMeters, &Settings::normalizeMeters,
              RecordingOptions{}.normalizeMeters),
    switched(CONTROL_EVERY, Text::recordFixesLeftOut, &Settings::recordEvery, CONTROL_EVERY_ON),
    switched(CONTROL_BES, Text::recordValueWithTrack, &Settings::recordBes, CONTROL_BES_ON),
    check(CONTROL_MANUAL, Text::recordManually, &Settings::manualRecording),
    check(CONTROL_RECORD_SPEED, Text::recordSpeed, &Settings::recordSpeed),
    check(CONTROL_RECORD_TIME, Text::recordTime, &Settings::recordTime),
    check(CONTROL_RECORD_COURSE, Text::recordCourse, &Settings::recordCourse),
    check(CONTROL_RECORD_CELL, Text::recordCell, &Settings::recordCell),
    check(CONTROL_DRAW_PATH, Text::recordDrawPath, &Settings::drawPath),
    number(CONTROL_BACKUP_MINUTES, Text::recordBackupMinutes, &Settings::backupMinutes,
           {.lowest = 0}),
};
constexpr DialogAction kRecordActions[] = {
    preset(CONTROL_PRESET_WALKING, Text::recordWalking, kRecordingPresets[0]),
    preset(CONTROL_PRESET_DRIVING, Text::recordDriving, kRecordingPresets[1]),
    preset(CONTROL_PRESET_FLYING, Text::recordFlying, kRecordingPresets[2]),
};
constexpr SettingGroup kRecordGroups[] = {SettingGroup::recording};

// Before the first recording ever.
constexpr DialogField kFirstRecordFields[] = {
    aboveZero(CONTROL_RECORD_SPEED_STEP, Text::firstMinimumSpeed, &Settings::recordMinSpeed,
              RecordingOptions{}.speed),
    aboveZero(CONTROL_RECORD_ANGLE_STEP, Text::firstChangeOfCourse, &Settings::recordAngle,
              RecordingOptions{}.angle),
    aboveZero(CONTROL_RECORD_ALTITUDE_STEP, Text::firstChangeOfHeight, &Settings::recordAltitude,
              RecordingOptions{}.altitude),
    check(CONTROL_RECORD_TIME, Text::firstTime, &Settings::recordTime),
    check(CONTROL_RECORD_SPEED, Text::firstSpeed, &Settings::recordSpeed),
};
constexpr DialogAction kFirstRecordActions[] = {
    preset(CONTROL_PRESET_WALKING, Text::firstWalking, kRecordingPresets[0]),
    preset(CONTROL_PRESET_DRIVING, Text::firstDriving, kRecordingPresets[1]),
    preset(CONTROL_PRESET_FLYING, Text::firstFlying, kRecordingPresets[2]),
};

constexpr DialogField kTrackStoreFields[] = {
    text(CONTROL_TRACK_STORE, Text::storageFolder, &Settings::trackStorePath)};
constexpr DialogAction kTrackStoreActions[] = {
    chooseFolder(CONTROL_CHOOSE_TRACK_STORE, Text::storageBrowse, CONTROL_TRACK_STORE)};

constexpr DialogField kPlayFields[] = {
    aboveZero(CONTROL_REACH_METRES, Text::playbackWithinMeters, &Settings::reachMeters, 15),
    aboveZero(CONTROL_REACH_SECONDS, Text::playbackOrWithinSeconds, &Settings::reachSeconds, 10),
    upTo30(CONTROL_RECALCULATE, Text::playbackRecalculate, &Settings::recalculateWaypoints, 5),
    check(CONTROL_WARN_TURNS, Text::playbackWarnBeforeTurns, &Settings::warnTurns),
    number(CONTROL_WARN_ANGLE, Text::playbackTurnsAboveDegrees, &Settings::warnAngle),
    number(CONTROL_WARN_METRES, Text::playbackMetersAhead, &Settings::warnMeters),
    number(CONTROL_WARN_SECONDS, Text::playbackSecondsAhead, &Settings::warnSeconds),
    check(CONTROL_MARK_WARNING, Text::playbackAnnounceMarks, &Settings::markWarning),
    check(CONTROL_CENTRE_POSITION, Text::playbackCenterThePosition, &Settings::centrePosition),
    check(CONTROL_VIEW_CELL, Text::playbackShowCell, &Settings::viewCell),
    check(CONTROL_USE_ALTITUDE, Text::playbackDistancesWithHeights, &Settings::useAltitude),
    upTo30(CONTROL_PATH_LINE, Text::playbackPath, &Settings::pathLineSize, 5),
    upTo30(CONTROL_MAP_LINE, Text::playbackMap, &Settings::mapLineSize, 2),
};
// The option to announce marks is saved with the recording settings.
constexpr SettingGroup kPlayGroups[] = {SettingGroup::playback, SettingGroup::recording};

// Looks and sounds

constexpr DialogField kColorFields[] = {
    color(CONTROL_COLOUR_INFORM, Text::colorInform, &Settings::colorInform),
    color(CONTROL_COLOUR_BACKGROUND, Text::colorBackground, &Settings::colorBackground),
    color(CONTROL_COLOUR_SUCCESS, Text::colorSuccess, &Settings::colorSuccess),
    color(CONTROL_COLOUR_FAILURE, Text::colorFailure, &Settings::colorFailure),
    color(CONTROL_COLOUR_GRAY, Text::colorGray, &Settings::colorGray),
    color(CONTROL_COLOUR_LIGHT_GRAY, Text::colorLightGray, &Settings::colorLightGray),
    color(CONTROL_COLOUR_ZONE, Text::colorZone, &Settings::colorZone),
};
constexpr SettingGroup kColorGroups[] = {SettingGroup::color};

constexpr DialogField kBackgroundFields[] = {
    text(CONTROL_BACKGROUND_DAY, Text::backgroundDay, &Settings::backgroundDay),
    text(CONTROL_BACKGROUND_NIGHT, Text::backgroundNight, &Settings::backgroundNight),
    text(CONTROL_BACKGROUND_CUSTOM, Text::backgroundCustom, &Settings::backgroundCustom),
};
constexpr DialogAction kBackgroundActions[] = {
    chooseFile(CONTROL_CHOOSE_BACKGROUND_DAY, Text::backgroundBrowseDay, CONTROL_BACKGROUND_DAY,
               kImageFiles),
    chooseFile(CONTROL_CHOOSE_BACKGROUND_NIGHT, Text::backgroundBrowseNight,
               CONTROL_BACKGROUND_NIGHT, kImageFiles),
    chooseFile(CONTROL_CHOOSE_BACKGROUND_CUSTOM, Text::backgroundBrowseCustom,
               CONTROL_BACKGROUND_CUSTOM, kImageFiles),
};
constexpr SettingGroup kBackgroundGroups[] = {SettingGroup::background};

constexpr DialogChoice kAlignments[] = {
    {0, Text::alignLeft}, {1, Text::alignCenter}, {2, Text::alignRight}};
constexpr DialogField kCameraFields[] = {
    number(CONTROL_CAMERA_LEFT, Text::cameraLeft, &Settings::cameraLeft),
    number(CONTROL_CAMERA_TOP, Text::cameraTop, &Settings::cameraTop),
    number(CONTROL_CAMERA_RIGHT, Text::cameraRight, &Settings::cameraRight),
    number(CONTROL_CAMERA_BOTTOM, Text::cameraBottom, &Settings::cameraBottom),
    color(CONTROL_CAMERA_COLOUR, Text::cameraColor, &Settings::cameraColor),
    list(CONTROL_CAMERA_ALIGN, Text::cameraAlignment, &Settings::cameraAlign, kAlignments),
};
constexpr SettingGroup kCameraGroups[] = {SettingGroup::camera};

constexpr DialogField kSoundFields[] = {
    text(CONTROL_SOUND_SPEED, Text::soundSpeedWarning, &Settings::soundSpeed),
    text(CONTROL_SOUND_OK, Text::soundSuccess, &Settings::soundOk),
    text(CONTROL_SOUND_ERROR, Text::soundFailure, &Settings::soundError),
    text(CONTROL_SOUND_TURN, Text::soundTurn, &Settings::soundTurn),
    text(CONTROL_SOUND_ZONE, Text::soundZone, &Settings::soundZone),
};
constexpr DialogAction kSoundActions[] = {
    chooseFile(CONTROL_CHOOSE_SOUND_SPEED, Text::soundBrowse, CONTROL_SOUND_SPEED, kSoundFiles),
    chooseFile(CONTROL_CHOOSE_SOUND_OK, Text::soundBrowse, CONTROL_SOUND_OK, kSoundFiles),
    chooseFile(CONTROL_CHOOSE_SOUND_ERROR, Text::soundBrowse, CONTROL_SOUND_ERROR, kSoundFiles),
    chooseFile(CONTROL_CHOOSE_SOUND_TURN, Text::soundBrowse, CONTROL_SOUND_TURN, kSoundFiles),
    chooseFile(CONTROL_CHOOSE_SOUND_ZONE, Text::soundBrowse, CONTROL_SOUND_ZONE, kSoundFiles),
    play(CONTROL_PLAY_SOUND_SPEED, Text::soundPlay, CONTROL_SOUND_SPEED, "SPD"),
    play(CONTROL_PLAY_SOUND_OK, Text::soundPlay, CONTROL_SOUND_OK, "OK"),
    play(CONTROL_PLAY_SOUND_ERROR, Text::soundPlay, CONTROL_SOUND_ERROR, "ERR2"),
    play(CONTROL_PLAY_SOUND_TURN, Text::soundPlay, CONTROL_SOUND_TURN, "TURN"),
    play(CONTROL_PLAY_SOUND_ZONE, Text::soundPlay, CONTROL_SOUND_ZONE, "FORBIDDEN"),
};
constexpr SettingGroup kSoundGroups[] = {SettingGroup::sound};

// Reports to others

constexpr Correction kNotNegative{.lowest = 0};
constexpr DialogField kTrackingFields[] = {
    check(CONTROL_TRACKING_ON, Text::trackingReportMyPosition, &Settings::trackingOn),
    number(CONTROL_TRACKING_SECONDS, Text::trackingIntervalSeconds, &Settings::trackingSeconds,
           kNotNegative),
    text(CONTROL_TRACKING_URL, Text::trackingAddress, &Settings::trackingUrl),
    check(CONTROL_SMS_ON, Text::trackingSendMyPosition, &Settings::smsTrackingOn),
    number(CONTROL_SMS_SECONDS, Text::trackingMessageInterval, &Settings::smsTrackingSeconds,
           kNotNegative),
    text(CONTROL_SMS_NUMBER, Text::trackingNumber, &Settings::smsNumber),
    text(CONTROL_SMS_TEXT, Text::trackingText, &Settings::smsText),
};
constexpr SettingGroup kTrackingGroups[] = {SettingGroup::tracking, SettingGroup::smsTracking};

constexpr DialogField kPursueFields[] = {
    check(CONTROL_PURSUE_ON, Text::pursueOn, &Settings::pursueOn),
    number(CONTROL_PURSUE_SECONDS, Text::pursueIntervalSeconds, &Settings::pursueSeconds,
           kNotNegative),
    text(CONTROL_PURSUE_URL, Text::pursueAddress, &Settings::pursueUrl),
};
constexpr SettingGroup kPursueGroups[] = {SettingGroup::pursue};

constexpr DialogField kLanguageFields[] = {
    text(CONTROL_LANGUAGE_FILE, Text::languageLibrary, &Settings::languageFile)};
constexpr DialogAction kLanguageActions[] = {chooseFile(
    CONTROL_CHOOSE_LANGUAGE_FILE, Text::languageBrowse, CONTROL_LANGUAGE_FILE, kLanguageFiles)};
constexpr SettingGroup kLanguageGroups[] = {SettingGroup::language};

constexpr Dialog kDialogs[] = {
    {Command::gpsSetup, "DIALOG_GPS", Text::gpsDialog, kGpsGroups, kGpsFields, kGpsActions},
    {Command::mapOptions, "DIALOG_MAP", Text::mapDialog, kMapGroups, kMapFields, kMapActions},
    {Command::speedOptions, "DIALOG_SPEED", Text::speedDialog, kSpeedGroups, kSpeedFields},
    {Command::settings, "DIALOG_SETTINGS", Text::settingsDialog, kDisplayGroups, kDisplayFields},
    {Command::recordingOptions, "DIALOG_RECORDOPTIONS", Text::recordDialog, kRecordGroups,
     kRecordFields, kRecordActions},
    {Command::distanceViews, "DIALOG_DISTANCE", Text::distanceDialog, kDistanceGroups,
     kDistanceFields},
    {Command::liveTracking, "DIALOG_TRACKING", Text::trackingDialog, kTrackingGroups,
     kTrackingFields},
    {Command::playbackOptions, "DIALOG_PLAYOPTIONS", Text::playbackDialog, kPlayGroups,
     kPlayFields},
    {Command::colors, "DIALOG_COLOURS", Text::colorDialog, kColorGroups, kColorFields},
    {Command::pursue, "DIALOG_PURSUE", Text::pursueDialog, kPursueGroups, kPursueFields},
    {Command::backgrounds, "DIALOG_BACKGROUNDS", Text::backgroundDialog, kBackgroundGroups,
     kBackgroundFields, kBackgroundActions},
    {Command::cameraBox, "DIALOG_CAMERA", Text::cameraDialog, kCameraGroups, kCameraFields},
    {Command::sounds, "DIALOG_SOUNDS", Text::soundDialog, kSoundGroups, kSoundFields,
     kSoundActions},
    {Command::trackStorage, "DIALOG_TRACKSTORE", Text::storageDialog, kRecordGroups,
     kTrackStoreFields, kTrackStoreActions},
    {Command::languages, "DIALOG_LANGUAGE", Text::languageDialog, kLanguageGroups, kLanguageFields,
     kLanguageActions},
    {Command::map3dOptions, "DIALOG_MAP3D", Text::map3dDialog, kMap3dGroups, kMap3dFields},
    {Command::firstRecording, "DIALOG_FIRSTRECORDING", Text::firstDialog, kRecordGroups,
     kFirstRecordFields, kFirstRecordActions},
};

constexpr bool commandsAscend() {
  return std::adjacent_find(std::begin(kDialogs), std::end(kDialogs),
                            [](const Dialog& a, const Dialog& b) {
                              return a.command >= b.command;
                            }) == std::end(kDialogs);
}
static_assert(commandsAscend());

}  // namespace

std::span<const Dialog> dialogs() { return kDialogs; }

}  // namespace vgps
