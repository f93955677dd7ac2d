#include "app/scene_of.h"

namespace vgps {

Scene sceneOf(const AppState& app) {
  const UiFix& shown = app.shown;
  const uint32_t now = app.platform.clock.tick();
  Scene scene;
  scene.fix = shown.fix;
  scene.satellites = shown.satellites;
  scene.satellitesInUseKnown = shown.satellitesInUseKnown;
  scene.view = shown.view;
  scene.stats = shown.stats;
  scene.maxSpeed = shown.maxSpeed;
  scene.maxAltitude = shown.maxAltitude;
  scene.speedUnit = app.gps.options.speedUnit;
  scene.utcOffsetMinutes = app.gps.options.utcOffsetMinutes;
  scene.state =
      receiverState(app.fix.running, shown.dataSeen, now - shown.lastDataTick, shown.fix.fixStatus);
  scene.source = app.sourceName;
  scene.notice = std::string(currentNotice(app));
  scene.fixSeen = shown.fixSeen;
  scene.fixAgeMs = now - shown.lastFixTick;
  for (const KindStats& kind : shown.stats.kinds) {
    scene.sentencesPerSecond += kind.rate.perSecond(now);
  }
  scene.palette = app.scheme == ColourScheme::night ? nightPalette() : dayPalette();
  return scene;
}

bool isNightHour(const DateTime& local) { return local.hour > 19 || local.hour < 6; }

}  // namespace vgps
