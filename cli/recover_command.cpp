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
#include "app/settings/config_store.h"
#include "app/settings/settings.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/live_fixes.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/files.h"

// What a start of the desktop program asks about a recording that did not end, for scripts and for
// computers without a window.
namespace vgps {
namespace {

using RecoverAction = RecoverOptions::Action;

constexpr int kInUse = 2;  // exit status

// Between tries to write, and between looks whether the person gives up.
constexpr int kTryAgainMs = 3000;
constexpr int kLookMs = 100;

std::string folderOf(const std::string& path) {
  const size_t separator = path.find_last_of("/\\");
  if (separator == std::string::npos) return ".";
  return separator == 0 ? path.substr(0, 1) : path.substr(0, separator);
}

void say(const std::string& text) { std::printf("%s\n", text.c_str()); }

// The settings beside which journals and library lie, and what records there.
class Place : public RecorderHooks {
 public:
  // Settings that nobody can read are the standard ones: the recording matters more.
  explicit Place(const std::string& file) {
    std::string path = file.empty() ? programFolder() : file;
    if (isFolder(path)) path = pathIn(path, "vgps.xml");
    ConfigStore store;
    if (!store.open(path)) fail(path + " cannot be read; the standard settings are taken");
    const Settings settings = loadSettings(store);
    folder = folderOf(path);
    places_ = {.library = trackLibraryPath(settings.trackStorePath, folder),
               .journal = pathsOf(folder).journal,
               .settings = path};
    recorder.options = recordingOptionsOf(settings);
    recorder.options.manual = false;  // nobody is there who could ask for a point
  }

  RecorderPlaces places() const override { return places_; }
  void journalFailed() override {
    fail("the disk does not take the points; recording goes on in memory");
  }

  std::string folder;
  Recorder recorder{*this, systemClock()};

 private:
  RecorderPlaces places_;
};

int failedWith(JournalResult result, const LeftRecording& left) {
  const int status = fail(left.message(result));
  return result == JournalResult::inUse ? kInUse : status;
}

std::string pointsText(size_t count) {
  return std::to_string(count) + (count == 1 ? " point" : " points");
}

// As it stands in front of a full stop: "./.." would not be seen to be a folder there.
std::string shownPath(std::string path) {
  const auto isSeparator = [](char c) { return c == '/' || c == '\\'; };
  while (path.size() > 2 && path[0] == '.' && isSeparator(path[1])) path.erase(0, 2);
  while (path.size() > 2 && path.back() == '.' && isSeparator(path[path.size() - 2])) {
    path.erase(path.size() - 2);
  }
  if (path == "." || path == "./") return "the current folder";
  return path.back() == '.' ? '"' + path + '"' : path;
}

std::string refusalOf(const Keeping& keeping) {
  const LibraryOpening& library = keeping.library;
  const std::string place = placeMessage(library);
  if (!place.empty()) return place;
  if (!library.usable()) return libraryMessage(library.state, library.path);
  return keeping.result == LibraryResult::notWritten ? "cannot write " + library.path
                                                     : libraryMessage(keeping.result, library.path);
}

int statusOf(const Keeping& keeping) { return keeping.result == LibraryResult::inUse ? kInUse : 1; }

// Says that so many points of the journal at `path` are in the library. The exit status.
int tellSaved(const Keeping& keeping, size_t points, const std::string& path) {
  if (keeping.library.isNew && keeping.library.state == LibraryState::damaged) {
    fail(libraryMessage(LibraryState::damaged, keeping.library.path));
  }
  if (!keeping.damagedKeptAs.empty()) {
    fail("the damaged library was kept as " + keeping.damagedKeptAs);
  }
  say("Saved " + pointsText(points) + " in " + shownPath(keeping.library.path) + ".");
  return fileExists(path) ? fail("cannot delete " + path + "; it was saved all the same") : 0;
}

int saveRecording(LeftRecording& left, Recorder& recorder) {
  const size_t points = left.points();
  const Keeping keeping = recorder.keepLeft(left);
  if (keeping.outcome == Keeping::Outcome::kept) {
    if (!left.keptAs().empty()) fail("the damaged recording was kept as " + left.keptAs());
    return tellSaved(keeping, points, left.path());
  }
  fail(refusalOf(keeping));
  fail("the recording stays in " + left.path());
  return statusOf(keeping);
}

// Ends a recording that was continued, and says how. The disk may be full: until the user gives up
// it is tried again.
class Ending {
 public:
  Ending(Recorder& recorder, const std::string& path) : recorder_(recorder), path_(path) {}

  int run() {
    if (isOver()) return status_;
    holdNextStopRequest();
    fail(refusalOf(end_.keeping));
    fail("the disk does not take the last " + pointsText(end_.lacking) +
         "; trying again every 3 seconds. Ctrl-C gives up and loses them");
    do {
      for (int waited = 0; waited < kTryAgainMs; waited += kLookMs) {
        if (stopRequestWasHeld()) return fail("given up: " + pointsText(end_.lacking) + " lost");
        std::this_thread::sleep_for(std::chrono::milliseconds(kLookMs));
      }
    } while (!isOver());
    return status_;
  }

 private:
  // False as long as points are in memory alone.
  bool isOver() {
    const size_t points = recorder_.track.points.size();
    end_ = recorder_.end();
    if (end_.journal != JournalResult::open && !std::exchange(gone_, true)) {
      fail(end_.journal == JournalResult::missing ? path_ + " has gone"
                                                  : journalMessage(end_.journal, path_));
      fail("the track is taken from memory");
    }
    if (end_.keeping.outcome == Keeping::Outcome::kept) {
      status_ = tellSaved(end_.keeping, points, path_);
      return true;
    }
    status_ = statusOf(end_.keeping);
    if (end_.lacking > 0) return false;
    fail(refusalOf(end_.keeping));
    fail("the recording stays in " + path_);
    return true;
  }

  Recorder& recorder_;
  const std::string path_;
  RecordingEnd end_;
  bool gone_ = false;
  int status_ = 0;
};

// Records on into the journal until it is stopped; then the whole track is saved.
int continueRecording(LeftRecording& left, Recorder& recorder, const RecoverOptions& options) {
  recorder.continueFrom(left);
  const size_t before = recorder.track.points.size();
  say("Going on behind " + pointsText(before) + "; Ctrl-C ends and saves.");
  std::fflush(stdout);
  readLiveFixes(
      {options.port, options.speed, options.simulate, options.seconds},
      [&](const FixRecord& fix) { recorder.offer(fix); },
      [](const std::string& text) { fail(text); });
  const size_t more = recorder.track.points.size() - before;
  say("Recorded " + std::to_string(more) + (more == 1 ? " more point." : " more points."));
  return Ending(recorder, left.path()).run();
}

int answer(LeftRecording& left, Recorder& recorder, const RecoverOptions& options) {
  switch (options.action) {
    case RecoverAction::tell:
      say(left.path() + ": " + left.question());
      left.leave();
      return 0;
    case RecoverAction::save: return saveRecording(left, recorder);
    case RecoverAction::discard:
      if (!left.discard()) return fail("cannot delete " + left.path());
      say("Discarded " + pointsText(left.points()) + ".");
      return 0;
    case RecoverAction::goOn: return continueRecording(left, recorder, options);
  }
  return 0;
}

}  // namespace

void addRecoverCommand(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<RecoverOptions>();
  CLI::App* const command = program.add_subcommand(
      "recover",
      "Tell whether a recording was cut short by a crash or a power cut, "
      "and go on with it, save or "
      "discard it. Ends with 2 when a running program still records, or changes "
      "the track library.");
  command
      ->add_option("--file", options->file,
                   "The settings beside which it lies, or their folder (vgps.xml)")
      ->check(aName())
      ->option_text("FILE");
  const auto action = [options](RecoverAction wanted) {
    return [options, wanted] { options->action = wanted; };
  };
  CLI::Option* const save = command->add_flag_callback("--save", action(RecoverAction::save),
                                                       "Put it into the track library");
  CLI::Option* const discard =
      command->add_flag_callback("--discard", action(RecoverAction::discard), "Delete it");
  CLI::Option* const goOn = command->add_flag_callback(
      "--continue", action(RecoverAction::goOn),
      "Go on recording into it until Ctrl-C, then put it into the track library");
  save->excludes(discard)->excludes(goOn);
  discard->excludes(goOn);
  command->add_option("--port", options->port, "The receiver's port, to continue from")
      ->needs(goOn)
      ->option_text("DEV");
  command->add_option("--speed", options->speed, "Its line speed in baud")
      ->needs(goOn)
      ->check(above0())
      ->option_text("N (9600)");
  command->add_flag("--simulate", options->simulate, "Continue from the built-in trip")
      ->needs(goOn);
  command->add_option("--for", options->seconds, "End after so many seconds")
      ->needs(goOn)
      ->check(above0())
      ->option_text("SECONDS");
  command->callback([options, &chosen] { chosen = [options] { return runRecover(*options); }; });
}

int runRecover(const RecoverOptions& options) {
  if (options.action == RecoverAction::goOn && options.port.empty() && !options.simulate) {
    return fail("recover --continue needs --port DEV or --simulate");
  }
  Place place(options.file);
  const std::vector<std::string> journals = journalsAt(place.places().journal);
  int worst = 0;
  size_t found = 0;
  bool goneOn = false;  // the others are only told of
  for (const std::string& path : journals) {
    LeftRecording left(place.recorder.journalSettings());
    const JournalResult result = left.open(path);
    if (result == JournalResult::missing) continue;
    ++found;
    if (goneOn) {
      const bool open = result == JournalResult::open;
      say(path + ": " + (open ? left.question() : left.message(result)));
      left.leave();
      continue;
    }
    const int status = result == JournalResult::open ? answer(left, place.recorder, options)
                                                     : failedWith(result, left);
    if (worst == 0) worst = status;
    goneOn =
        options.action == RecoverAction::goOn && result == JournalResult::open;  // one is enough
  }
  if (found == 0) say("No recording was left in " + shownPath(place.folder) + ".");
  const int written = finishOutput();
  return worst != 0 ? worst : written;
}

}  // namespace vgps
