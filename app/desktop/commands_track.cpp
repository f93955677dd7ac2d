#include "app/desktop/command_handlers.h"
#include "app/desktop/commands.h"
#include "app/desktop/keeping.h"
#include "base/texts.h"
#include "track/editing.h"
#include "track/thinning.h"
#include "track/track_file.h"

// Commands for the current track while not recording.
namespace vgps {
namespace {

// If the track cannot be edited, tells the user why.
bool canEdit(Desktop& app) {
  if (app.recorder.track.state != kIdle) {
    showNotice(app, textOf(Text::endRecordingFirst));
    return false;
  }
  if (app.recorder.track.points.empty()) {
    showNotice(app, textOf(Text::noTrack));
    return false;
  }
  return true;
}

void tellChanged(Desktop& app) {
  showNotice(app, textWith(Text::pointsNow, std::to_string(app.recorder.track.points.size())));
  repaintThrottled(app);
}

// Loads a track from a file that the user chooses. Returns false if there is none; the user has
// been told then.
bool chooseTrack(Desktop& app, Track& track) {
  const std::string path = app.window.chooseFile({.title = std::string(textOf(Text::chooseTrack)),
                                                  .kind = std::string(textOf(Text::tracks)),
                                                  .pattern = "*.xml"});
  if (path.empty()) return false;
  Window& window = app.window;
  switch (loadTrackFile(path, app.settings.speedUnit, track)) {
    case TrackLoading::whole: return true;
    case TrackLoading::damaged: window.tell(textWith(Text::trackDamaged, path)); return true;
    case TrackLoading::notATrack: window.tellError(textWith(Text::notATrack, path)); break;
    case TrackLoading::noFile:
    case TrackLoading::unreadable: window.tellError(textWith(Text::trackUnreadable, path)); break;
  }
  return false;
}

// Unsaved points are only discarded if the user agrees.
bool mayReplace(Desktop& app) {
  return app.recorder.track.points.empty() || askQuestion(app, Text::askToDiscard);
}

}  // namespace

void thinTrack(Desktop& app, Command) {
  if (!canEdit(app)) return;
  normalize(app.recorder.track, app.recorder.options);
  tellChanged(app);
}

void reverseTrack(Desktop& app, Command) {
  if (!canEdit(app)) return;
  reverse(app.recorder.track);
  tellChanged(app);
}

void joinTrack(Desktop& app, Command) {
  Track other;
  if (!canEdit(app) || !chooseTrack(app, other) || !canEdit(app)) return;
  join(app.recorder.track, other);
  tellChanged(app);
}

void saveTrack(Desktop& app, Command) {
  if (app.recorder.track.state != kIdle) return showNotice(app, textOf(Text::endRecordingFirst));
  if (app.recorder.track.points.empty()) return showNotice(app, textOf(Text::noTrack));
  tellKeeping(app, app.recorder.stop(false));
}

void openTrack(Desktop& app, Command) {
  if (app.recorder.track.state != kIdle) return showNotice(app, textOf(Text::endRecordingFirst));
  Track chosen;
  if (!mayReplace(app) || !chooseTrack(app, chosen)) return;
  if (app.recorder.track.state != kIdle) return showNotice(app, textOf(Text::endRecordingFirst));
  app.recorder.pointsSavedOrDiscarded();
  app.recorder.track = std::move(chosen);
  showNotice(app, textWith(Text::trackRead, std::to_string(app.recorder.track.points.size())));
  repaintThrottled(app);
}

void discardTrack(Desktop& app, Command) {
  if (!canEdit(app) || !askQuestion(app, Text::askToDiscard)) return;
  app.recorder.pointsSavedOrDiscarded();
  app.recorder.track = Track();
  tellChanged(app);
}

// Sent by the program when the track has changed.
void trackChanged(Desktop& app, Command) { repaintThrottled(app); }

bool hasFinishedTrack(const AppState& app, Command) {
  return app.recorder.track.state == kIdle && !app.recorder.track.points.empty();
}

}  // namespace vgps
