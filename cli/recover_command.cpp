#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/session/apply_settings.h"
#include "app/session/paths.h"
#include "app/session/recorder.h"
#include "app/session/recording_texts.h"
#include "app/settings/config_store.h"
#include "app/settings/settings.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/live_fixes.h"
#include "library/discarded_recordings.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/files.h"

// Handles unfinished recordings, which the desktop program asks about at startup, for scripts and
// for computers without a window.
namespace vgps {
namespace {

using RecoverAction = RecoverOptions::Action;

constexpr int kInUse = 2;  // exit status

// The intervals for retrying to write and for checking whether the user wants to stop.
constexpr int kTryAgainMs = 3000;
constexpr int kStopCheckMs = 100;

std::string folderOf(const std::string& path) {
  const size_t separator = path.find_last_of("/\\");
  if (separator == std::string::npos) return ".";
  return separator == 0 ? path.substr(0, 1) : path.substr(0, separator);
}

void say(const std::string& text) { std::printf("%s\n", text.c_str()); }

// The folder with the settings, the journals, and the library, and the recorder that uses them.
class Place : public RecorderHooks {
 public:
  // Unreadable settings count as default ones: the recording matters more.
  Place(const std::string& file, const std::string& journal) {
    std::string path = file.empty() ? programFolder() : file;
    if (isFolder(path)) path = pathIn(path, "vgps.xml");
    ConfigStore store;
    if (!store.open(path)) fail(cannotRead(path) + "; using default settings");
    const Settings settings = loadSettings(store);
    folder = folderOf(path);
    places_ = {.library = trackLibraryPath(settings.trackStorePath, folder),
               .journal = journal.empty() ? pathsOf(folder).journal : journal,
               .settings = path,
               .discarded = folder};
    recorder.options = recordingOptionsOf(settings);
    recorder.options.manual = false;  // no one can request points
  }

  RecorderPaths places() const override { return places_; }
  void journalFailed() override {
    fail("cannot write points to disk; recording continues in memory");
  }
  void journalWorks() override { warn("points are written to disk again"); }

  std::string folder;
  Recorder recorder{*this, systemClock()};

 private:
  RecorderPaths places_;
};

int failedWith(JournalResult result, const UnfinishedRecording& unfinished) {
  const int status = fail(unfinished.message(result));
  return result == JournalResult::inUse ? kInUse : status;
}

std::string pointsText(size_t count) {
  return std::to_string(count) + (count == 1 ? " point" : " points");
}

// A path for use at the end of a sentence: "./.." plus a period would be misread.
std::string shownPath(std::string path) {
  const auto isSeparator = [](char c) { return c == '/' || c == '\\'; };
  while (path.size() > 2 && path[0] == '.' && isSeparator(path[1])) path.erase(0, 2);
  while (path.size() > 2 && path.back() == '.' && isSeparator(path[path.size() - 2])) {
    path.erase(path.size() - 2);
  }
  if (path == "." || path == "./") return "the current folder";
  return path.back() == '.' ? '"' + path + '"' : path;
}

std::string refusalOf(const SaveResult& keeping) {
  const LibraryOpening& library = keeping.library;
  const std::string place = placeMessage(library);
  if (!place.empty()) return place;
  if (!library.usable()) return libraryMessage(library.state, library.path);
  return keeping.result == LibraryResult::notWritten ? "cannot write " + library.path
                                                     : libraryMessage(keeping.result, library.path);
}

int statusOf(const SaveResult& keeping) {
  const bool busy =
      keeping.result == LibraryResult::inUse || keeping.result == LibraryResult::changed;
  return busy ? kInUse : 1;
}

// Reports that the points of the journal at `path` were saved to the library. Returns the exit
// status.
int tellSaved(const SaveResult& keeping, size_t points, const std::string& path) {
  if (keeping.library.isNew && keeping.library.state == LibraryState::damaged) {
    fail(libraryMessage(LibraryState::damaged, keeping.library.path));
  }
  if (!keeping.damagedBackupPath.empty()) {
    fail("the damaged library was saved as " + keeping.damagedBackupPath);
  }
  say("Saved " + pointsText(points) + " in " + shownPath(keeping.library.path) + ".");
  return fileExists(path) ? fail("cannot delete " + path + "; the recording was saved anyway") : 0;
}

int saveRecording(UnfinishedRecording& unfinished, Recorder& recorder) {
  const size_t points = unfinished.points();
  const SaveResult keeping = recorder.saveUnfinished(unfinished);
  if (keeping.outcome == SaveResult::Outcome::saved) {
    if (!unfinished.backupPath().empty())
      fail("the damaged recording was saved as " + unfinished.backupPath());
    return tellSaved(keeping, points, unfinished.path());
  }
  fail(refusalOf(keeping));
  fail("the recording is still in " + unfinished.path());
  return statusOf(keeping);
}

// Ends a continued recording and reports the result. If the disk is full, keeps retrying until the
// user stops it.
class Ending {
 public:
  Ending(Recorder& recorder, const std::string& path) : recorder_(recorder), path_(path) {}

  int run() {
    if (isOver()) return status_;
    deferNextStopRequest();
    fail(refusalOf(end_.keeping));
    fail("cannot write to disk: " + pointsText(end_.unsavedPoints) +
         " not saved; retrying every 3 seconds. Press Ctrl+C to give up");
    do {
      for (int waited = 0; waited < kTryAgainMs; waited += kStopCheckMs) {
        if (stopRequestWasDeferred())
          return fail("gave up: " + pointsText(end_.unsavedPoints) + " lost");
        std::this_thread::sleep_for(std::chrono::milliseconds(kStopCheckMs));
      }
    } while (!isOver());
    return status_;
  }

 private:
  // Returns false while some points exist only in memory.
  bool isOver() {
    const size_t points = recorder_.track.points.size();
    end_ = recorder_.end();
    if (end_.journal != JournalResult::open && !std::exchange(gone_, true)) {
      fail(end_.journal == JournalResult::missing ? path_ + " no longer exists"
                                                  : journalMessage(end_.journal, path_));
      fail("using the copy of the track in memory");
    }
    if (end_.keeping.outcome == SaveResult::Outcome::saved) {
      status_ = tellSaved(end_.keeping, points, path_);
      return true;
    }
    status_ = statusOf(end_.keeping);
    if (end_.unsavedPoints > 0) return false;
    fail(refusalOf(end_.keeping));
    fail("the recording is still in " + path_);
    return true;
  }

  Recorder& recorder_;
  const std::string path_;
  RecordingEnd end_;
  bool gone_ = false;
  int status_ = 0;
};

// Records into the journal until stopped, then saves the whole track.
int continueRecording(UnfinishedRecording& unfinished, Recorder& recorder,
                      const RecoverOptions& options) {
  recorder.continueFrom(unfinished);
  const size_t before = recorder.track.points.size();
  say("Continuing after " + pointsText(before) + "; press Ctrl+C to stop and save.");
  std::fflush(stdout);
  readLiveFixes(
      {options.port, options.speed, options.simulate, options.seconds},
      [&](const FixRecord& fix) { recorder.offer(fix); },
      [](const std::string& text) { fail(text); });
  const size_t more = recorder.track.points.size() - before;
  say("Recorded " + std::to_string(more) + (more == 1 ? " more point." : " more points."));
  return Ending(recorder, unfinished.path()).run();
}

int answer(UnfinishedRecording& unfinished, Recorder& recorder, const RecoverOptions& options) {
  switch (options.action) {
    case RecoverAction::tell:
      say(unfinished.path() + ": " + unfinished.question());
      unfinished.keepForLater();
      return 0;
    case RecoverAction::save: return saveRecording(unfinished, recorder);
    case RecoverAction::discard:
      if (!unfinished.discard()) return fail("cannot delete " + unfinished.path());
      say("Discarded " + pointsText(unfinished.points()) + ".");
      return 0;
    case RecoverAction::continueRecording: return continueRecording(unfinished, recorder, options);
  }
  return 0;
}

// "2: discarded 2010-07-05 07:03 UTC, 88 points, 8.50 Km"
void sayDiscarded(const DiscardedRecording& one, size_t number, int32_t unit) {
  TrackSummary summary = summaryOfDiscarded(one);
  summary.name = "discarded " + startText(one.utc);
  summary.startUtc = 0;
  say(std::to_string(number) + ": " + trackRowText(summary, unit));
}

int recoverDiscarded(Place& place, const RecoverOptions& options) {
  const std::vector<DiscardedRecording> found = discardedRecordings(place.folder);
  if (options.number > found.size()) {
    return fail("discarded recording " + std::to_string(options.number) +
                " does not exist; number of discarded recordings: " + std::to_string(found.size()));
  }
  if (found.empty())
    say("No recently discarded recording was found in " + shownPath(place.folder) + ".");
  int worst = 0;
  for (size_t number = 1; number <= found.size(); ++number) {
    if (options.number != 0 && options.number != number) continue;
    const DiscardedRecording& one = found[number - 1];
    if (options.action == RecoverAction::tell) {
      sayDiscarded(one, number, place.recorder.options.distanceUnit);
      continue;
    }
    UnfinishedRecording unfinished(place.recorder.journalSettings());
    const JournalResult result = unfinished.open(one.path);
    if (result == JournalResult::missing) continue;
    const int status = result == JournalResult::open ? answer(unfinished, place.recorder, options)
                                                     : failedWith(result, unfinished);
    if (worst == 0) worst = status;
  }
  const int written = finishOutput();
  return worst != 0 ? worst : written;
}

}  // namespace

void addRecoverCommand(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<RecoverOptions>();
  CLI::App* const command = program.add_subcommand(
      "recover",
      "Check for a recording that was cut short by a crash or power failure, and continue, save, "
      "or discard it. Exits with status 2 when another program is still recording or is changing "
      "the track library.");
  command
      ->add_option("--file", options->file,
                   "Settings file next to the recording, or its folder (default: vgps.xml next to "
                   "the program)")
      ->check(nonEmptyName())
      ->option_text("FILE");
  command
      ->add_option("--journal", options->journal,
                   "Recording of vgps record that was cut short: TRACK.journal")
      ->check(nonEmptyName())
      ->option_text("JOURNAL");
  const auto action = [options](RecoverAction wanted) {
    return [options, wanted] { options->action = wanted; };
  };
  CLI::Option* const save = command->add_flag_callback("--save", action(RecoverAction::save),
                                                       "Save it to the track library");
  CLI::Option* const discard =
      command->add_flag_callback("--discard", action(RecoverAction::discard), "Delete it");
  CLI::Option* const continueOption = command->add_flag_callback(
      "--continue", action(RecoverAction::continueRecording),
      "Continue recording until Ctrl+C, then save it to the track library");
  save->excludes(discard)->excludes(continueOption);
  discard->excludes(continueOption);
  CLI::Option* const discarded = command->add_flag(
      "--discarded", options->discarded,
      "List the recently discarded recordings instead; with --save or --discard, all of them, or "
      "the one that --number names");
  discarded->excludes(continueOption);
  command->add_option("--number", options->number, "Number of a discarded recording in the list")
      ->needs(discarded)
      ->check(positiveNumber())
      ->option_text("N");
  command->add_option("--port", options->port, "Port of the receiver to continue with")
      ->needs(continueOption)
      ->option_text("DEV");
  command->add_option("--speed", options->speed, "Baud rate of the receiver")
      ->needs(continueOption)
      ->check(positiveNumber())
      ->option_text("N (9600)");
  command->add_flag("--simulate", options->simulate, "Continue with the built-in trip")
      ->needs(continueOption);
  command->add_option("--for", options->seconds, "Stop after this many seconds")
      ->needs(continueOption)
      ->check(positiveNumber())
      ->option_text("SECONDS");
  command->callback([options, &chosen] { chosen = [options] { return runRecover(*options); }; });
}

int runRecover(const RecoverOptions& options) {
  if (options.action == RecoverAction::continueRecording && options.port.empty() &&
      !options.simulate) {
    return fail("--continue requires --port DEV or --simulate");
  }
  Place place(options.file, options.journal);
  if (options.discarded) return recoverDiscarded(place, options);
  const std::vector<std::string> journals = existingJournals(place.places().journal);
  int worst = 0;
  size_t found = 0;
  bool continued = false;  // only one is continued; the others are just listed
  for (const std::string& path : journals) {
    UnfinishedRecording unfinished(place.recorder.journalSettings());
    const JournalResult result = unfinished.open(path);
    if (result == JournalResult::missing) continue;
    ++found;
    if (continued) {
      const bool open = result == JournalResult::open;
      say(path + ": " + (open ? unfinished.question() : unfinished.message(result)));
      unfinished.keepForLater();
      continue;
    }
    const int status = result == JournalResult::open ? answer(unfinished, place.recorder, options)
                                                     : failedWith(result, unfinished);
    if (worst == 0) worst = status;
    continued = options.action == RecoverAction::continueRecording &&
                result == JournalResult::open;  // one is enough
  }
  if (found == 0) {
    say("No unfinished recording was found in " +
        shownPath(options.journal.empty() ? place.folder : options.journal) + ".");
  }
  const int written = finishOutput();
  return worst != 0 ? worst : written;
}

}  // namespace vgps
