#include "app/library.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/texts.h"
#include "files/whole_file.h"
#include "library/left_recording.h"
#include "platform/files.h"

namespace vgps {
namespace {

constexpr uint32_t kAskToDelete = 746;
constexpr uint32_t kHoldsSettings = 962;
constexpr uint32_t kLibraryKept = 963;
constexpr uint32_t kHoldsRecording = 986;
constexpr uint32_t kNotDeleted = 987;

enum class Answer : uint8_t { goOn, save, remove, later };

struct AnswerRow {
  Answer answer;
  uint32_t text;
};

// Going on stands in front, because there are times without it; the harmless one behind.
constexpr AnswerRow kAnswers[] = {
    {Answer::goOn, 980}, {Answer::save, 981}, {Answer::remove, 982}, {Answer::later, 983}};

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
  if (!app.platform.window.ask(textWith(kAskToDelete, points))) return left.leave();
  if (!left.discard()) app.platform.window.tellError(textWith(kNotDeleted, left.path()));
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
  if (isSameFile(path, paths.settings)) return textWith(kHoldsSettings, path);
  for (const std::string& journal : journalNames(paths.journal)) {
    if (isSameFile(path, journal)) return textWith(kHoldsRecording, path);
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
