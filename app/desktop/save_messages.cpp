#include "app/desktop/save_messages.h"

#include <span>
#include <string_view>

#include "base/texts.h"
#include "geo/units.h"
#include "track/track_simulation.h"

namespace vgps {
namespace {

enum class Recovery : uint8_t { resume, save, remove, later };

struct AnswerRow {
  Recovery answer;
  Text text;
};

// "Continue" comes first, because it is sometimes left out; the harmless answer comes last.
constexpr AnswerRow kAnswers[] = {{Recovery::resume, Text::recoverContinue},
                                  {Recovery::save, Text::recoverSave},
                                  {Recovery::remove, Text::recoverDelete},
                                  {Recovery::later, Text::recoverLater}};

Recovery askHow(AppState& app, const UnfinishedRecording& unfinished) {
  const Track& track = app.recorder.track;
  const bool free = track.state == kIdle && track.points.empty();
  const std::span<const AnswerRow> rows = std::span(kAnswers).subspan(free ? 0 : 1);
  std::vector<std::string_view> texts;
  for (const AnswerRow& row : rows) texts.push_back(textOf(row.text));
  return rows[app.platform.window.choose(unfinished.question(), texts, texts.size() - 1)].answer;
}

void save(AppState& app, UnfinishedRecording& unfinished) {
  const SaveResult keeping = app.recorder.saveUnfinished(unfinished);
  reportSaveResult(app, keeping);
  if (keeping.outcome != SaveResult::Outcome::saved) unfinished.keepForLater();
}

void remove(AppState& app, UnfinishedRecording& unfinished) {
  const std::string points = std::to_string(unfinished.points());
  if (!app.platform.window.ask(textWith(Text::askToDelete, points)))
    return unfinished.keepForLater();
  if (!unfinished.discard())
    app.platform.window.tellError(textWith(Text::notDeleted, unfinished.path()));
}

void answer(AppState& app, UnfinishedRecording& unfinished) {
  switch (askHow(app, unfinished)) {
    case Recovery::resume: app.recorder.continueFrom(unfinished); break;
    case Recovery::save: save(app, unfinished); break;
    case Recovery::remove: remove(app, unfinished); break;
    case Recovery::later: unfinished.keepForLater(); break;
  }
}

}  // namespace

bool reportLibrary(AppState& app, const LibraryOpening& opening) {
  Window& window = app.platform.window;
  const std::string refusal = placeMessage(opening);
  if (!refusal.empty()) {
    window.tellError(refusal);
  } else if (opening.isNew && !app.recorder.library.message().empty()) {
    if (opening.usable()) {
      window.tell(app.recorder.library.message());
    } else {
      window.tellError(app.recorder.library.message());
    }
  }
  return opening.usable();
}

void reportSaveResult(AppState& app, const SaveResult& keeping) {
  if (keeping.outcome != SaveResult::Outcome::saved &&
      keeping.outcome != SaveResult::Outcome::refused) {
    return;
  }
  if (!reportLibrary(app, keeping.library)) return;
  if (!keeping.damagedBackupPath.empty()) {
    showNotice(app, textWith(Text::libraryKeptAs, keeping.damagedBackupPath));
  }
  if (keeping.result != LibraryResult::done) {
    app.platform.window.tellError(libraryMessage(keeping.result, keeping.library.path));
  } else if (keeping.damagedBackupPath.empty()) {
    showNotice(app, textWith(Text::trackSavedAs, keeping.name));
  }
}

void offerRecovery(AppState& app) {
  if (app.paths.journal.empty()) return;
  for (const std::string& path : existingJournals(app.paths.journal)) {
    UnfinishedRecording unfinished(app.recorder.journalSettings());
    const JournalResult result = unfinished.open(path);
    if (result == JournalResult::open) {
      answer(app, unfinished);
    } else if (result != JournalResult::inUse) {  // another copy of the program is recording there
      const std::string message = unfinished.message(result);
      if (!message.empty()) app.platform.window.tellError(message);
    }
  }
}

bool simulationFromLibrary(AppState& app, std::vector<std::string>& lines) {
  TrackLibrary& library = app.recorder.library;
  if (!reportLibrary(app, app.recorder.openLibrary()) || library.tracks().empty()) return false;
  Track track;
  const size_t last = library.tracks().size() - 1;
  if (library.load(last, kKmh, track) != LibraryResult::done) return false;
  lines = simulationLines(track);
  return !lines.empty();
}

}  // namespace vgps
