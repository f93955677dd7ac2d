#include "app/command_handlers.h"
#include "app/commands.h"
#include "base/texts.h"
#include "track/editing.h"
#include "track/thinning.h"
#include "track/track_file.h"

// The current track while nothing is being recorded.
namespace vgps {
namespace {

constexpr uint32_t kTrackChangedCommand = 1286;

constexpr uint32_t kNoTrack = 727;
constexpr uint32_t kNotWhileRecording = 728;
constexpr uint32_t kTrackRead = 729;
constexpr uint32_t kTrackDamaged = 730;
constexpr uint32_t kNotATrack = 731;
constexpr uint32_t kTrackUnreadable = 732;
constexpr uint32_t kAskToDiscard = 733;
constexpr uint32_t kPointsNow = 734;
constexpr uint32_t kChooseTrack = 760;
constexpr uint32_t kTracks = 762;

// Says why when there is nothing to work on.
bool canEdit(AppState& app) {
  if (app.track.state != kIdle) {
    showNotice(app, textOf(kNotWhileRecording));
    return false;
  }
  if (app.track.points.empty()) {
    showNotice(app, textOf(kNoTrack));
    return false;
  }
  return true;
}

void tellChanged(AppState& app) {
  showNotice(app, textWith(kPointsNow, std::to_string(app.track.points.size())));
  runCommand(app, kTrackChangedCommand);
}

// The track of a file that the person chooses. False when there is none; that is told then.
bool chooseTrack(AppState& app, Track& track) {
  const std::string path =
      app.platform.window.chooseFile({.title = std::string(textOf(kChooseTrack)),
                                      .kind = std::string(textOf(kTracks)),
                                      .pattern = "*.xml"});
  if (path.empty()) return false;
  Window& window = app.platform.window;
  switch (loadTrackFile(path, app.settings.speedUnit, track)) {
    case TrackLoading::whole: return true;
    case TrackLoading::damaged: window.tell(textWith(kTrackDamaged, path)); return true;
    case TrackLoading::notATrack: window.tellError(textWith(kNotATrack, path)); break;
    case TrackLoading::noFile:
    case TrackLoading::unreadable: window.tellError(textWith(kTrackUnreadable, path)); break;
  }
  return false;
}

// What was recorded and not saved goes only when the person says so.
bool mayReplace(AppState& app) {
  return app.track.points.empty() || askQuestion(app, kAskToDiscard);
}

}  // namespace

void thinTrack(AppState& app, uint32_t) {
  if (!canEdit(app)) return;
  normalize(app.track, app.recordingOptions);
  tellChanged(app);
}

void reverseTrack(AppState& app, uint32_t) {
  if (!canEdit(app)) return;
  reverse(app.track);
  tellChanged(app);
}

void joinTrack(AppState& app, uint32_t) {
  Track other;
  if (!canEdit(app) || !chooseTrack(app, other) || !canEdit(app)) return;
  join(app.track, other);
  tellChanged(app);
}

void saveTrack(AppState& app, uint32_t) {
  if (app.track.state != kIdle) return showNotice(app, textOf(kNotWhileRecording));
  if (app.track.points.empty()) return showNotice(app, textOf(kNoTrack));
  app.recording.stop(nullptr, false);
}

void openTrack(AppState& app, uint32_t) {
  if (app.track.state != kIdle) return showNotice(app, textOf(kNotWhileRecording));
  Track chosen;
  if (!mayReplace(app) || !chooseTrack(app, chosen)) return;
  if (app.track.state != kIdle) return showNotice(app, textOf(kNotWhileRecording));
  app.recordingHooks.pointsSettled();
  app.track = std::move(chosen);
  showNotice(app, textWith(kTrackRead, std::to_string(app.track.points.size())));
  runCommand(app, kTrackChangedCommand);
}

void discardTrack(AppState& app, uint32_t) {
  if (!canEdit(app) || !askQuestion(app, kAskToDiscard)) return;
  app.recordingHooks.pointsSettled();
  app.track = Track();
  tellChanged(app);
}

// Sent to the screens that show the track.
void trackChanged(AppState& app, uint32_t) { repaintThrottled(app); }

bool hasFinishedTrack(const AppState& app, uint32_t) {
  return app.track.state == kIdle && !app.track.points.empty();
}

}  // namespace vgps
