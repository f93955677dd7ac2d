#include "app/session/library.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/texts.h"
#include "geo/units.h"
#include "library/left_recording.h"
#include "platform/files.h"
#include "track/track_simulation.h"
#include "track/whole_file.h"

namespace vgps {
namespace {

enum class Answer : uint8_t { goOn, save, remove, later };

struct AnswerRow {
  Answer answer;
  Text text;
};

// Going on stands in front, because there are times without it; the harmless one behind.
constexpr AnswerRow kAnswers[] = {{Answer::goOn, Text::recoverContinue},
                                  {Answer::save, Text::recoverSave},
                                  {Answer::remove, Text::recoverDelete},
                                  {Answer::later, Text::recoverLater}};

// Those that a recording may take, whether they are there or not.
std::vector<std::string> journalNames(const std::string& first) {
  if (first.empty()) return {};
  const std::string stem = withoutExtension(first);
  std::vector<std::string> names = {first};
  for (char number = '2'; number <= '9'; ++number) {
    names.push_back(stem + '-' + number + first.substr(stem.size()));
  }
  return names;
}

Answer ask(AppState& app, const LeftRecording& left) {
  const bool free = app.track.state == kIdle && app.track.points.empty();
  const std::span<const AnswerRow> rows = std::span(kAnswers).subspan(free ? 0 : 1);
  std::vector<std::string_view> texts;
  for (const AnswerRow& row : rows) texts.push_back(textOf(row.text));
  return rows[app.platform.window.choose(left.question(), texts)].answer;
}

void save(AppState& app, LeftRecording& left) {
  if (!openLibrary(app)) return left.leave();
  const LibraryResult result =
      left.save(app.library, app.recordingOptions, app.platform.clock.local());
  if (result == LibraryResult::done) return;
  app.platform.window.tellError(libraryMessage(result, app.library.path()));
  left.leave();
}

void remove(AppState& app, LeftRecording& left) {
  const std::string points = std::to_string(left.points());
  if (!app.platform.window.ask(textWith(Text::askToDelete, points))) return left.leave();
  if (!left.discard()) app.platform.window.tellError(textWith(Text::notDeleted, left.path()));
}

void answer(AppState& app, LeftRecording& left) {
  switch (ask(app, left)) {
    case Answer::goOn:
      app.recordingHooks.continueJournal(left.continueInto(app.track));
      app.recording.goOn();
      break;
    case Answer::save: save(app, left); break;
    case Answer::remove: remove(app, left); break;
    case Answer::later: left.leave(); break;
  }
}

}  // namespace

std::string libraryRefusal(const std::string& path, const AppPaths& paths) {
  if (isSameFile(path, paths.settings)) return textWith(Text::pathHoldsSettings, path);
  for (const std::string& journal : journalNames(paths.journal)) {
    if (isSameFile(path, journal)) return textWith(Text::pathHoldsRecording, path);
  }
  return {};
}

std::string libraryPath(const AppState& app) {
  return trackLibraryPath(app.settings.trackStorePath, app.paths.folder);
}

bool openLibrary(AppState& app) {
  const std::string path = libraryPath(app);
  if (app.library.isOpen() && app.library.path() == path) return true;
  const std::string refusal = libraryRefusal(path, app.paths);
  if (!refusal.empty()) {
    app.platform.window.tellError(refusal);
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
    showNotice(app, textWith(Text::libraryKeptAs, app.library.keptAs()));
  }
  if (result == LibraryResult::done) return true;
  app.platform.window.tellError(libraryMessage(result, app.library.path()));
  return false;
}

bool simulationFromLibrary(AppState& app, std::vector<std::string>& lines) {
  if (!openLibrary(app) || app.library.tracks().empty()) return false;
  Track track;
  const size_t last = app.library.tracks().size() - 1;
  if (app.library.load(last, kKmh, track) != LibraryResult::done) return false;
  lines = simulationLines(track);
  return !lines.empty();
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
