#include "app/library.h"

#include <memory>
#include <string>
#include <utility>

#include "base/texts.h"
#include "library/left_recording.h"

namespace vgps {
namespace {

constexpr uint32_t kAskToGoOn = 744;
constexpr uint32_t kAskToKeep = 745;
constexpr uint32_t kAskToDelete = 746;
constexpr uint32_t kPartDamaged = 747;
constexpr uint32_t kHoldsSettings = 962;
constexpr uint32_t kLibraryKept = 963;

// False when the answer was no; then the recording is still unanswered.
bool goOn(AppState& app, LeftRecording& left, const std::string& points) {
  const bool free = app.track.state == kIdle && app.track.points.empty();
  if (!free || !app.platform.window.ask(textWith(kAskToGoOn, points))) return false;
  app.recordingHooks.continueJournal(left.continueInto(app.track));
  app.recording.start();
  return true;
}

bool keep(AppState& app, LeftRecording& left, const std::string& points) {
  if (!app.platform.window.ask(textWith(kAskToKeep, points))) return false;
  if (!openLibrary(app)) {
    left.leave();
    return true;
  }
  const LibraryResult result =
      left.save(app.library, app.recordingOptions, app.platform.clock.local());
  if (result == LibraryResult::done) return true;
  app.platform.window.tellError(libraryMessage(result, app.library.path()));
  left.leave();
  return true;
}

void answer(AppState& app, LeftRecording& left) {
  if (left.damaged()) app.platform.window.tell(textWith(kPartDamaged, left.path()));
  const std::string points = std::to_string(left.points());
  if (goOn(app, left, points) || keep(app, left, points)) return;
  if (app.platform.window.ask(textWith(kAskToDelete, points))) {
    left.discard();
  } else {
    left.leave();
  }
}

}  // namespace

bool openLibrary(AppState& app) {
  const std::string path = trackLibraryPath(app.settings.trackStorePath, app.paths.folder);
  if (app.library.isOpen() && app.library.path() == path) return true;
  if (path == app.paths.settings) {  // also before that is there
    app.platform.window.tellError(textWith(kHoldsSettings, path));
    return false;
  }
  const LibraryState state = app.library.open(path);
  if (state == LibraryState::whole || state == LibraryState::missing) return true;
  const bool usable = state == LibraryState::damaged;
  if (usable) {
    app.platform.window.tell(app.library.message());
  } else {
    app.platform.window.tellError(app.library.message());
  }
  return usable;
}

bool addToLibrary(AppState& app, Track& track) {
  if (!openLibrary(app)) return false;
  const DateTime local = app.platform.clock.local();
  const std::string keptBefore = app.library.keptAs();
  const LibraryResult result = app.library.add(track, app.recordingOptions, local);
  if (app.library.keptAs() != keptBefore) {
    showNotice(app, textWith(kLibraryKept, app.library.keptAs()));
  }
  if (result == LibraryResult::done) return true;
  app.platform.window.tellError(libraryMessage(result, app.library.path()));
  return false;
}

void offerRecovery(AppState& app) {
  if (app.paths.journal.empty()) return;
  for (const std::string& path : journalsAt(app.paths.journal)) {
    LeftRecording left(app.recordingHooks.journalSettings());
    const JournalResult result = left.open(path);
    if (result == JournalResult::open) {
      answer(app, left);
    } else if (result != JournalResult::inUse) {  // another copy of the program records there
      const std::string message = left.message(result);
      if (!message.empty()) app.platform.window.tellError(message);
    }
  }
}

}  // namespace vgps
