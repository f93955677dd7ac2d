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

constexpr DialogField check(uint16_t control, Setting setting,
                            std::span<const uint16_t> disables = {}) {
  return {.control = control, .kind = FieldKind::check, .setting = setting, .disables = disables};
}

constexpr DialogField number(uint16_t control, Setting setting, Correction correction = {}) {
  return {
      .control = control, .kind = FieldKind::number, .setting = setting, .correction = correction};
}

// A zero or empty value becomes the default.
constexpr DialogField aboveZero(uint16_t control, Setting setting, int32_t standard) {
  return number(control, setting, {.lowest = 1, .instead = standard});
}

constexpr DialogField upTo30(uint16_t control, Setting setting, int32_t standard) {
  return number(control, setting, {.lowest = 0, .highest = 30, .instead = standard});
}

constexpr DialogField decimal(uint16_t control, Setting setting) {
  return {.control = control, .kind = FieldKind::decimal, .setting = setting};
}

constexpr DialogField text(uint16_t control, Setting setting) {
  return {.control = control, .kind = FieldKind::text, .setting = setting};
}

constexpr DialogField colour(uint16_t control, Setting setting) {
  return {.control = control, .kind = FieldKind::colour, .setting = setting};
}

constexpr DialogField list(uint16_t control, Setting setting,
                           std::span<const DialogChoice> choices) {
  return {.control = control, .kind = FieldKind::list, .setting = setting, .choices = choices};
}

constexpr DialogField switched(uint16_t control, Setting setting, uint16_t switchControl) {
  return {.control = control,
          .kind = FieldKind::switched,
          .switchControl = switchControl,
          .setting = setting};
}

constexpr FileFilter kImageFiles{Text::imageFiles, "*.png;*.jpg;*.jpeg;*.bmp;*.gif;*.tif;*.tiff"};
constexpr FileFilter kSoundFiles{Text::soundFiles, "*.wav"};
constexpr FileFilter kLanguageFiles{Text::languageLibraries, "*.dll"};

constexpr DialogAction chooseFile(uint16_t control, uint16_t target, FileFilter files) {
  return {.control = control, .kind = ActionKind::chooseFile, .target = target, .files = files};
}

constexpr DialogAction chooseFolder(uint16_t control, uint16_t target) {
  return {.control = control, .kind = ActionKind::chooseFolder, .target = target};
}

constexpr DialogAction play(uint16_t control, uint16_t target, const char* sound) {
  return {.control = control, .kind = ActionKind::playSound, .target = target, .sound = sound};
}

constexpr DialogAction preset(uint16_t control, const RecordingPreset& preset) {
  return {.control = control, .kind = ActionKind::preset, .preset = &preset};
}

// Receiver

// The numbers that a person may type without looking, and the ports that are there, by name.
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
  return {{"1200", "1200"}, {"2400", "2400"},   {"4800", "4800"},
          {"9600", "9600"}, {"19200", "19200"}, {"38400", "38400"}};
}

// A source of its own makes the serial line and the other two meaningless.
constexpr uint16_t kNotWhenSimulated[] = {CONTROL_PORT, CONTROL_BAUD_RATE, CONTROL_GPS_API,
                                          CONTROL_SENSOR_API};
constexpr uint16_t kNotWithGpsApi[] = {CONTROL_PORT, CONTROL_BAUD_RATE, CONTROL_SIMULATE,
                                       CONTROL_SENSOR_API};
constexpr uint16_t kNotWithSensorApi[] = {CONTROL_PORT, CONTROL_BAUD_RATE, CONTROL_SIMULATE,
                                          CONTROL_GPS_API};

constexpr DialogChoice kEpochButtons[] = {{.value = 1, .control = CONTROL_EPOCH_RMC},
                                          {.value = 2, .control = CONTROL_EPOCH_GGA},
                                          {.value = 0, .control = CONTROL_EPOCH_AUTOMATIC},
                                          {.value = 3, .control = CONTROL_EPOCH_BOTH}};

constexpr DialogField kGpsFields[] = {
    {.control = CONTROL_PORT,
     .kind = FieldKind::box,
     .setting = &Settings::port,
     .items = portItems},
    {.control = CONTROL_BAUD_RATE,
     .kind = FieldKind::box,
     .setting = &Settings::baudRate,
     .correction = {.lowest = 1, .instead = 9600},
     .items = speedItems},
    check(CONTROL_RECONNECT, &Settings::reconnect),
    check(CONTROL_SIMULATE, &Settings::simulate, kNotWhenSimulated),
    check(CONTROL_GPS_API, &Settings::useGpsApi, kNotWithGpsApi),
    check(CONTROL_SENSOR_API, &Settings::useSensorApi, kNotWithSensorApi),
    {.control = CONTROL_EPOCH_RMC,
     .kind = FieldKind::radio,
     .setting = &Settings::epochSentenceSetting,
     .choices = kEpochButtons},
};
constexpr DialogAction kGpsActions[] = {
    {.control = CONTROL_SEARCH_PORTS, .kind = ActionKind::searchPorts}};
constexpr SettingGroup kGpsGroups[] = {SettingGroup::gps};

// Maps

constexpr DialogField kMapFields[] = {
    text(CONTROL_MAPS_FOLDER, &Settings::mapsFolder),
    number(CONTROL_MAP_MARGIN, &Settings::mapMargin),
    check(CONTROL_LOAD_DYNAMIC_MAPS, &Settings::loadDynamicMaps),
    check(CONTROL_SAVE_DYNAMIC_MAPS, &Settings::saveDynamicMaps),
    check(CONTROL_LOAD_OFFLINE_MAPS, &Settings::loadOfflineMaps),
    check(CONTROL_MAP_FOLLOWS, &Settings::mapFollowsPosition),
    check(CONTROL_MAP_ROTATES, &Settings::mapRotates),
    check(CONTROL_MAP_ROTATES_IMAGES, &Settings::mapRotatesImages),
    check(CONTROL_MAP_FIXES_ZOOM, &Settings::mapFixesZoom),
    check(CONTROL_MAP_SHOWS_ICONS, &Settings::mapShowsIcons),
    check(CONTROL_MAP_SHOWS_COMPASS, &Settings::mapShowsCompass),
    check(CONTROL_MAP_USES_GRID, &Settings::mapUsesGrid),
    check(CONTROL_MAP_REMOVES_GRID, &Settings::mapRemovesGrid),
    check(CONTROL_MAP_CUTS_VIEW, &Settings::mapCutsView),
};
constexpr DialogAction kMapActions[] = {
    chooseFolder(CONTROL_CHOOSE_MAPS_FOLDER, CONTROL_MAPS_FOLDER)};
constexpr SettingGroup kMapGroups[] = {SettingGroup::map};

constexpr DialogField kMap3dFields[] = {
    check(CONTROL_PROJECT_ALTITUDE, &Settings::projectAltitude),
    check(CONTROL_DRAW_Z_GRID, &Settings::drawZGrid),
    check(CONTROL_TRACKS_3D, &Settings::tracksIn3d),
    check(CONTROL_WAYPOINTS_3D, &Settings::waypointsIn3d),
    check(CONTROL_MAP_3D_ROTATES, &Settings::map3dRotates),
    decimal(CONTROL_Z_SCALE, &Settings::zScale),
};
constexpr SettingGroup kMap3dGroups[] = {SettingGroup::map3d};

// Units

constexpr DialogChoice kSpeedUnits[] = {{0, Text::kilometersPerHour},
                                        {1, Text::knots},
                                        {2, Text::metersPerSecond},
                                        {3, Text::milesPerHour}};
constexpr DialogField kSpeedFields[] = {
    check(CONTROL_SPEED_WARNING, &Settings::speedWarning),
    number(CONTROL_SPEED_LIMIT, &Settings::speedLimit),
    list(CONTROL_SPEED_UNIT, &Settings::speedUnit, kSpeedUnits),
};
constexpr SettingGroup kSpeedGroups[] = {SettingGroup::speed};

constexpr DialogChoice kLongUnits[] = {
    {0, Text::kilometers}, {1, Text::statuteMiles}, {2, Text::nauticalMiles}};
constexpr DialogChoice kShortUnits[] = {{0, Text::meters}, {1, Text::inches}, {2, Text::feet}};
constexpr DialogField kDistanceFields[] = {
    list(CONTROL_LONG_UNIT, &Settings::longDistanceUnit, kLongUnits),
    list(CONTROL_SHORT_UNIT, &Settings::shortDistanceUnit, kShortUnits),
};
constexpr SettingGroup kDistanceGroups[] = {SettingGroup::distance};

// Display

// The placeholder of the list stands for the ellipsoid that it is taken as.
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
    list(CONTROL_POSITION_FORMAT, &Settings::positionFormat, kPositionFormats),
    {.control = CONTROL_ELLIPSOID,
     .kind = FieldKind::list,
     .setting = &Settings::utmEllipsoid,
     .items = ellipsoidItems},
    decimal(CONTROL_FONT_FACTOR, &Settings::fontFactor),
    number(CONTROL_FRAME_SKIP, &Settings::frameSkip),
    check(CONTROL_AUTO_CONNECT, &Settings::autoConnect),
    check(CONTROL_SOLID_COMPASS, &Settings::solidCompass),
    check(CONTROL_SHOW_LETTERS, &Settings::showLetters),
    check(CONTROL_BACKLIGHT_ON, &Settings::backlightOn),
    check(CONTROL_TRAY_ICON, &Settings::trayIcon),
    check(CONTROL_BIG_WAYPOINTS, &Settings::bigWaypoints),
    check(CONTROL_CONTACT_WAYPOINTS, &Settings::showContactWaypoints),
    check(CONTROL_SAVE_ON_LOW_BATTERY, &Settings::saveOnLowBattery),
    check(CONTROL_LED_FONT, &Settings::useLedFont),
};
constexpr SettingGroup kDisplayGroups[] = {SettingGroup::display};

// Tracks

constexpr DialogField kRecordFields[] = {
    aboveZero(CONTROL_RECORD_SPEED_STEP, &Settings::recordMinSpeed, RecordingOptions{}.speed),
    aboveZero(CONTROL_RECORD_ANGLE_STEP, &Settings::recordAngle, RecordingOptions{}.angle),
    aboveZero(CONTROL_RECORD_ALTITUDE_STEP, &Settings::recordAltitude, RecordingOptions{}.altitude),
    aboveZero(CONTROL_NORMALIZE_METRES, &Settings::normalizeMetres,
              RecordingOptions{}.normalizeMetres),
    switched(CONTROL_EVERY, &Settings::recordEvery, CONTROL_EVERY_ON),
    switched(CONTROL_BES, &Settings::recordBes, CONTROL_BES_ON),
    check(CONTROL_MANUAL, &Settings::manualRecording),
    check(CONTROL_RECORD_SPEED, &Settings::recordSpeed),
    check(CONTROL_RECORD_TIME, &Settings::recordTime),
    check(CONTROL_RECORD_COURSE, &Settings::recordCourse),
    check(CONTROL_RECORD_CELL, &Settings::recordCell),
    check(CONTROL_DRAW_PATH, &Settings::drawPath),
    number(CONTROL_BACKUP_MINUTES, &Settings::backupMinutes, {.lowest = 0}),
};
constexpr DialogAction kRecordActions[] = {
    preset(CONTROL_PRESET_WALKING, kRecordingPresets[0]),
    preset(CONTROL_PRESET_DRIVING, kRecordingPresets[1]),
    preset(CONTROL_PRESET_FLYING, kRecordingPresets[2]),
};
constexpr SettingGroup kRecordGroups[] = {SettingGroup::recording};

constexpr DialogField kTrackStoreFields[] = {text(CONTROL_TRACK_STORE, &Settings::trackStorePath)};
constexpr DialogAction kTrackStoreActions[] = {
    chooseFolder(CONTROL_CHOOSE_TRACK_STORE, CONTROL_TRACK_STORE)};

constexpr DialogField kPlayFields[] = {
    aboveZero(CONTROL_REACH_METRES, &Settings::reachMetres, 15),
    aboveZero(CONTROL_REACH_SECONDS, &Settings::reachSeconds, 10),
    upTo30(CONTROL_RECALCULATE, &Settings::recalculateWaypoints, 5),
    check(CONTROL_WARN_TURNS, &Settings::warnTurns),
    number(CONTROL_WARN_ANGLE, &Settings::warnAngle),
    number(CONTROL_WARN_METRES, &Settings::warnMetres),
    number(CONTROL_WARN_SECONDS, &Settings::warnSeconds),
    check(CONTROL_MARK_WARNING, &Settings::markWarning),
    check(CONTROL_CENTRE_POSITION, &Settings::centrePosition),
    check(CONTROL_VIEW_CELL, &Settings::viewCell),
    check(CONTROL_USE_ALTITUDE, &Settings::useAltitude),
    upTo30(CONTROL_PATH_LINE, &Settings::pathLineSize, 5),
    upTo30(CONTROL_MAP_LINE, &Settings::mapLineSize, 2),
};
// The announcement of marks is kept with the recording.
constexpr SettingGroup kPlayGroups[] = {SettingGroup::playback, SettingGroup::recording};

// Looks and sounds

constexpr DialogField kColourFields[] = {
    colour(CONTROL_COLOUR_INFORM, &Settings::colourInform),
    colour(CONTROL_COLOUR_BACKGROUND, &Settings::colourBackground),
    colour(CONTROL_COLOUR_SUCCESS, &Settings::colourSuccess),
    colour(CONTROL_COLOUR_FAILURE, &Settings::colourFailure),
    colour(CONTROL_COLOUR_GRAY, &Settings::colourGray),
    colour(CONTROL_COLOUR_LIGHT_GRAY, &Settings::colourLightGray),
    colour(CONTROL_COLOUR_ZONE, &Settings::colourZone),
};
constexpr SettingGroup kColourGroups[] = {SettingGroup::colour};

constexpr DialogField kBackgroundFields[] = {
    text(CONTROL_BACKGROUND_DAY, &Settings::backgroundDay),
    text(CONTROL_BACKGROUND_NIGHT, &Settings::backgroundNight),
    text(CONTROL_BACKGROUND_CUSTOM, &Settings::backgroundCustom),
};
constexpr DialogAction kBackgroundActions[] = {
    chooseFile(CONTROL_CHOOSE_BACKGROUND_DAY, CONTROL_BACKGROUND_DAY, kImageFiles),
    chooseFile(CONTROL_CHOOSE_BACKGROUND_NIGHT, CONTROL_BACKGROUND_NIGHT, kImageFiles),
    chooseFile(CONTROL_CHOOSE_BACKGROUND_CUSTOM, CONTROL_BACKGROUND_CUSTOM, kImageFiles),
};
constexpr SettingGroup kBackgroundGroups[] = {SettingGroup::background};

constexpr DialogChoice kAlignments[] = {
    {0, Text::alignLeft}, {1, Text::alignCenter}, {2, Text::alignRight}};
constexpr DialogField kCameraFields[] = {
    number(CONTROL_CAMERA_LEFT, &Settings::cameraLeft),
    number(CONTROL_CAMERA_TOP, &Settings::cameraTop),
    number(CONTROL_CAMERA_RIGHT, &Settings::cameraRight),
    number(CONTROL_CAMERA_BOTTOM, &Settings::cameraBottom),
    colour(CONTROL_CAMERA_COLOUR, &Settings::cameraColour),
    list(CONTROL_CAMERA_ALIGN, &Settings::cameraAlign, kAlignments),
};
constexpr SettingGroup kCameraGroups[] = {SettingGroup::camera};

constexpr DialogField kSoundFields[] = {
    text(CONTROL_SOUND_SPEED, &Settings::soundSpeed),
    text(CONTROL_SOUND_OK, &Settings::soundOk),
    text(CONTROL_SOUND_ERROR, &Settings::soundError),
    text(CONTROL_SOUND_TURN, &Settings::soundTurn),
    text(CONTROL_SOUND_ZONE, &Settings::soundZone),
};
constexpr DialogAction kSoundActions[] = {
    chooseFile(CONTROL_CHOOSE_SOUND_SPEED, CONTROL_SOUND_SPEED, kSoundFiles),
    chooseFile(CONTROL_CHOOSE_SOUND_OK, CONTROL_SOUND_OK, kSoundFiles),
    chooseFile(CONTROL_CHOOSE_SOUND_ERROR, CONTROL_SOUND_ERROR, kSoundFiles),
    chooseFile(CONTROL_CHOOSE_SOUND_TURN, CONTROL_SOUND_TURN, kSoundFiles),
    chooseFile(CONTROL_CHOOSE_SOUND_ZONE, CONTROL_SOUND_ZONE, kSoundFiles),
    play(CONTROL_PLAY_SOUND_SPEED, CONTROL_SOUND_SPEED, "SPD"),
    play(CONTROL_PLAY_SOUND_OK, CONTROL_SOUND_OK, "OK"),
    play(CONTROL_PLAY_SOUND_ERROR, CONTROL_SOUND_ERROR, "ERR2"),
    play(CONTROL_PLAY_SOUND_TURN, CONTROL_SOUND_TURN, "TURN"),
    play(CONTROL_PLAY_SOUND_ZONE, CONTROL_SOUND_ZONE, "FORBIDDEN"),
};
constexpr SettingGroup kSoundGroups[] = {SettingGroup::sound};

// Reports to others

constexpr Correction kNotNegative{.lowest = 0};
constexpr DialogField kTrackingFields[] = {
    check(CONTROL_TRACKING_ON, &Settings::trackingOn),
    number(CONTROL_TRACKING_SECONDS, &Settings::trackingSeconds, kNotNegative),
    text(CONTROL_TRACKING_URL, &Settings::trackingUrl),
    check(CONTROL_SMS_ON, &Settings::smsTrackingOn),
    number(CONTROL_SMS_SECONDS, &Settings::smsTrackingSeconds, kNotNegative),
    text(CONTROL_SMS_NUMBER, &Settings::smsNumber),
    text(CONTROL_SMS_TEXT, &Settings::smsText),
};
constexpr SettingGroup kTrackingGroups[] = {SettingGroup::tracking, SettingGroup::smsTracking};

constexpr DialogField kPursueFields[] = {
    check(CONTROL_PURSUE_ON, &Settings::pursueOn),
    number(CONTROL_PURSUE_SECONDS, &Settings::pursueSeconds, kNotNegative),
    text(CONTROL_PURSUE_URL, &Settings::pursueUrl),
};
constexpr SettingGroup kPursueGroups[] = {SettingGroup::pursue};

constexpr DialogField kLanguageFields[] = {text(CONTROL_LANGUAGE_FILE, &Settings::languageFile)};
constexpr DialogAction kLanguageActions[] = {
    chooseFile(CONTROL_CHOOSE_LANGUAGE_FILE, CONTROL_LANGUAGE_FILE, kLanguageFiles)};
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
    {Command::colors, "DIALOG_COLOURS", Text::colorDialog, kColourGroups, kColourFields},
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
