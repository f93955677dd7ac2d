#include "app/desktop/command_handlers.h"
#include "app/desktop/commands.h"
#include "app/desktop/save_messages.h"
#include "app/session/recording_texts.h"
#include "base/texts.h"
#include "library/discarded_recordings.h"
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

// The track of a library document that the user chooses; of one track that one. False when there is
// none; what is not the user's choice is told then.
bool chooseFromLibrary(Desktop& app, const std::string& path, Track& track) {
  TrackLibrary library;
  const LibraryState state = library.open(path);
  if (state != LibraryState::whole && state != LibraryState::damaged) {
    app.window.tellError(textWith(Text::notATrack, path));
    return false;
  }
  if (library.tracks().empty()) {
    app.window.tellError(textWith(Text::noTracksInside, path));
    return false;
  }
  std::vector<std::string> rows;
  for (const TrackSummary& row : library.tracks()) {
    rows.push_back(trackRowText(row, app.recorder.options.distanceUnit));
  }
  std::optional<size_t> chosen = 0;
  if (rows.size() > 1) chosen = app.window.chooseRow(textOf(Text::chooseTrack), rows);
  if (!chosen) return false;
  const LibraryResult result = library.load(*chosen, app.settings.speedUnit, track);
  if (result != LibraryResult::done) {
    app.window.tellError(libraryMessage(result, path));
    return false;
  }
  if (library.tracks()[*chosen].damaged) app.window.tell(textWith(Text::trackDamaged, path));
  return true;
}

// The track of a file that the user chooses. False when there is none; that is told then.
bool chooseTrack(Desktop& app, Track& track) {
  const std::string path =
      app.window.chooseFile({.title = std::string(textOf(Text::chooseTrack)),
                             .kind = std::string(textOf(Text::tracks)),
                             .pattern = "*.xml",
                             .folder = trackFolder(app.settings.trackStorePath, app.paths.folder)});
  if (path.empty()) return false;
  Window& window = app.window;
  if (isLibraryFile(path)) return chooseFromLibrary(app, path, track);
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
  reportSaveResult(app, app.recorder.stop(false));
}

void openTrack(Desktop& app, Command) {
  if (app.recorder.track.state != kIdle) return showNotice(app, textOf(Text::endRecordingFirst));
  Track chosen;
  if (!mayReplace(app) || !chooseTrack(app, chosen)) return;
  if (app.recorder.track.state != kIdle) return showNotice(app, textOf(Text::endRecordingFirst));
  app.recorder.discardTrack();
  app.recorder.track = std::move(chosen);
  showNotice(app, textWith(Text::trackRead, std::to_string(app.recorder.track.points.size())));
  repaintThrottled(app);
}

void discardTrack(Desktop& app, Command) {
  if (!canEdit(app) || !askQuestion(app, Text::askToDiscard)) return;
  app.recorder.discardTrack();
  tellChanged(app);
}

void renameTrack(Desktop& app, Command) {
  const std::string& old = app.recorder.lastSavedName();
  if (old.empty()) return showNotice(app, textOf(Text::nothingSaved));
  const std::optional<std::string> name = app.window.askText(textOf(Text::askTrackName), old);
  if (!name) return;
  const LibraryResult result = app.recorder.renameLastSaved(*name);
  if (result != LibraryResult::done) {
    return app.window.tellError(libraryMessage(result, app.recorder.library.path()));
  }
  showNotice(app, textWith(Text::trackRenamed, app.recorder.lastSavedName()));
}

void restoreDiscarded(Desktop& app, Command) {
  const std::vector<DiscardedRecording> found = discardedRecordings(app.paths.folder);
  if (found.empty()) return showNotice(app, textOf(Text::nothingDiscarded));
  std::vector<std::string> rows;
  for (const DiscardedRecording& one : found) {
    TrackSummary summary = summaryOfDiscarded(one);
    summary.name = startText(one.utc);
    summary.startUtc = 0;
    rows.push_back(trackRowText(summary, app.recorder.options.distanceUnit));
  }
  const std::optional<size_t> chosen = app.window.chooseRow(textOf(Text::chooseDiscarded), rows);
  if (!chosen) return;
  UnfinishedRecording unfinished(app.recorder.journalSettings());
  const JournalResult result = unfinished.open(found[*chosen].path);
  if (result != JournalResult::open) return app.window.tellError(unfinished.message(result));
  const SaveResult keeping = app.recorder.saveUnfinished(unfinished);
  if (keeping.outcome != SaveResult::Outcome::saved) unfinished.keepForLater();
  reportSaveResult(app, keeping);
}

bool hasSavedTrack(const AppState& app, Command) { return !app.recorder.lastSavedName().empty(); }

// Sent to the screens that show the track.
void trackChanged(Desktop& app, Command) { repaintThrottled(app); }

bool hasFinishedTrack(const AppState& app, Command) {
  return app.recorder.track.state == kIdle && !app.recorder.track.points.empty();
}

}  // namespace vgps
