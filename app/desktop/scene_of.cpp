#include "app/desktop/scene_of.h"

#include <algorithm>

#include "app/session/connection.h"
#include "app/session/fix_values.h"
#include "app/session/recording_texts.h"
#include "base/texts.h"
#include "geo/units.h"

namespace vgps {

namespace {

ReceiverState stateOf(const AppState& app, uint32_t now) {
  const UiFix& shown = app.shown;
  if (app.link.state() == Link::State::lost) return ReceiverState::lost;
  // The record still contains the fix status of the previous source.
  return receiverState(app.fix.running, shown.dataSeen, now - shown.lastDataTick,
                       shown.fixSeen ? shown.fix.fixStatus : 0);
}

bool isFresh(const LastReceived::Arrival& arrival, uint32_t now) {
  return arrival.ever && now - arrival.tick <= kStaleAfterMs;
}

// A value that no sentence has reported yet (from a receiver that never had a fix) is shown as
// stale at best.
ValueAges agesOf(const UiFix& shown, uint32_t now) {
  const uint32_t unvouched = std::max(now - shown.lastDataTick, kStaleAfterMs + 1);
  const auto age = [&](const LastReceived::Arrival& arrival) {
    return arrival.ever ? now - arrival.tick : unvouched;
  };
  const LastReceived& arrivals = shown.arrivals;
  return {.position = age(arrivals.position),
          .motion = age(arrivals.motion),
          .altitude = age(arrivals.altitude),
          .time = age(arrivals.time),
          .used = age(arrivals.used),
          .view = age(arrivals.view),
          .dilution = age(arrivals.dilution)};
}

// Maps any number in a document to a valid unit.
int32_t altitudeUnitOf(int32_t setting) {
  return setting == kInches || setting == kFeet ? setting : kMeters;
}

bool messageHolds(const AppState& app) {
  return app.fix.running && app.pendingDisplay.messageCountdown > 0 &&
         app.pendingDisplay.messageSource == app.gps.readers.generation;
}

Palette paletteOf(const AppState& app) {
  const Settings& settings = app.settings;
  switch (app.scheme) {
    case ColorScheme::day: return dayPalette();
    case ColorScheme::night: return nightPalette();
    case ColorScheme::custom: break;
  }
  return customPalette({.inform = settings.colorInform,
                        .background = settings.colorBackground,
                        .success = settings.colorSuccess,
                        .failure = settings.colorFailure,
                        .gray = settings.colorGray,
                        .lightGray = settings.colorLightGray});
}

SceneStatistics statisticsOf(const AppState& app) {
  const Statistics& counted = app.statistics;
  return {.totalSeconds = static_cast<double>(counted.totalSeconds),
          .connectedSeconds = static_cast<double>(counted.connectedSeconds),
          .recordingSeconds = static_cast<double>(counted.recordingSeconds),
          .movingSeconds = static_cast<double>(counted.tripMovingSeconds),
          .stoppedSeconds = static_cast<double>(counted.tripStoppedSeconds),
          .distance = app.recorder.recording().distance(),
          .distance3d = app.recorder.recording().distance3d(),
          .distanceUnit = app.recorder.options.distanceUnit};
}

SceneRawLog rawLogOf(const RawLog& log) {
  SceneRawLog shown = {.rows = {},
                       .kept = log.size(),
                       .matching = log.matching(),
                       .newer = log.newer(),
                       .filter = log.filter(),
                       .paused = log.isPaused()};
  for (RawLogRow& row : log.view(kMostRawLogRows)) {
    shown.rows.push_back({std::move(row.time), std::move(row.text)});
  }
  return shown;
}

}  // namespace

Scene makeScene(const AppState& app) {
  const UiFix& shown = app.shown;
  const uint32_t now = app.platform.clock.tick();
  Scene scene;
  scene.fix = shown.fix;
  scene.fix.fixStatus = currentQuality(shown, now);
  if (app.settings.altitudeDecimals) scene.fix.altitude = shown.fix.preciseAltitude();
  if (const auto accuracy = currentAccuracy(shown, now)) scene.accuracy = accuracy->horizontal;
  scene.satellites = shown.satellites;
  scene.satellitesInUseKnown = shown.satellitesInUseKnown;
  scene.view = shown.view;
  scene.stats = shown.stats;
  scene.maxSpeed = speedInUnit(shown.fastest, app.gps.options.speedUnit);
  scene.maxAltitude = app.settings.altitudeDecimals ? shown.exactHighest : shown.highest;
  scene.newMaxSpeed = app.pendingDisplay.maximumCountdown > 0 && app.pendingDisplay.newMaxSpeed;
  scene.newMaxAltitude =
      app.pendingDisplay.maximumCountdown > 0 && app.pendingDisplay.newMaxAltitude;
  scene.speedUnit = app.gps.options.speedUnit;
  scene.altitudeUnit = altitudeUnitOf(app.settings.shortDistanceUnit);
  scene.positionFormat = app.settings.positionFormat;
  scene.utmEllipsoid = app.settings.utmEllipsoid;
  scene.fontFactor = app.settings.fontFactor;
  scene.utcOffsetMinutes = app.gps.options.utcOffsetMinutes;
  scene.state = stateOf(app, now);
  scene.source = sourceInUse(app);
  scene.notice = std::string(currentNotice(app));
  const bool noise = isFresh(shown.arrivals.noise, now);
  if (scene.state == ReceiverState::noData && noise && scene.notice.empty()) {
    scene.notice = textOf(Text::probablyWrongSpeed);
  }
  if (messageHolds(app)) scene.message = app.lastMessageText;
  scene.logging = app.gps.options.logNmea;
  scene.logBytes = app.logBytes;
  scene.fixSeen = shown.fixSeen;
  scene.fixAgeMs = now - shown.lastFixTick;
  scene.ages = agesOf(shown, now);
  scene.trackState = app.recorder.track.state;
  scene.trackPoints = app.recorder.track.points.size();
  scene.trackLength =
      distanceText(app.recorder.recording().distance(), app.recorder.options.distanceUnit);
  scene.trackWaiting = waitingText(app.recorder);
  for (const KindStats& kind : shown.stats.kinds) {
    scene.sentencesPerSecond += kind.rate.perSecond(now);
  }
  scene.screen = app.currentScreen;
  scene.statistics = statisticsOf(app);
  if (app.currentScreen == Screen::rawLog) scene.rawLog = rawLogOf(app.rawLog);
  scene.readoutDelayMicros = app.readoutDelayMicros;
  scene.palette = paletteOf(app);
  return scene;
}

bool isNightHour(const DateTime& local) { return local.hour > 19 || local.hour < 6; }

}  // namespace vgps
