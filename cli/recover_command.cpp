#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/apply_settings.h"
#include "app/config_store.h"
#include "app/library.h"
#include "app/paths.h"
#include "app/settings.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/live_fixes.h"
#include "library/left_recording.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/files.h"
#include "track/recording.h"

// What a start of the desktop program asks about a recording that did not end, for scripts and for
// computers without a window.
namespace vgps {
namespace {

using Action = RecoverOptions::Action;

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

// The settings beside which journals and library lie.
struct Place {
  AppPaths paths;
  std::string library;
  RecordingOptions recording;
};

// Settings that nobody can read are the standard ones: the recording matters more.
Place findPlace(const std::string& file) {
  Place place;
  std::string path = file.empty() ? programFolder() : file;
  if (isFolder(path)) path = pathIn(path, "vgps.xml");
  ConfigStore store;
  if (!store.open(path)) fail(path + " cannot be read; the standard settings are taken");
  const Settings settings = loadSettings(store);
  place.paths = pathsOf(folderOf(path));
  place.paths.settings = path;
  place.library = trackLibraryPath(settings.trackStorePath, place.paths.folder);
  place.recording = recordingOptionsOf(settings);
  place.recording.manual = false;  // nobody is there who could ask for a point
  return place;
}

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

struct Saving {
  bool done = false;
  int status = 0;
  std::string why = {};  // it was not done
};

// On the journal that stays nothing is said.
Saving trySaving(LeftRecording& left, const Place& place) {
  TrackLibrary library;
  const std::string refusal = libraryRefusal(place.library, place.paths);
  if (!refusal.empty()) return {.status = 1, .why = refusal};
  library.open(place.library);
  const std::string damage = library.message();
  const size_t points = left.points();
  const LibraryResult result = left.save(library, place.recording, systemClock().local());
  if (result != LibraryResult::done) {
    return {.status = result == LibraryResult::inUse ? kInUse : 1,
            .why = result == LibraryResult::notWritten ? "cannot write " + place.library
                                                       : libraryMessage(result, place.library)};
  }
  if (!damage.empty()) fail(damage);
  if (!library.keptAs().empty()) fail("the damaged library was kept as " + library.keptAs());
  if (!left.keptAs().empty()) fail("the damaged recording was kept as " + left.keptAs());
  say("Saved " + pointsText(points) + " in " + shownPath(place.library) + ".");
  if (!fileExists(left.path())) return {.done = true};
  return {.done = true,
          .status = fail("cannot delete " + left.path() + "; it was saved all the same")};
}

int saveRecording(LeftRecording& left, const Place& place) {
  const Saving saving = trySaving(left, place);
  if (saving.done) return saving.status;
  fail(saving.why);
  fail("the recording stays in " + left.path());
  return saving.status;
}

// What the recording asks for, where there is nobody to ask and nothing to hear.
class ContinueHooks : public RecordingHooks {
 public:
  explicit ContinueHooks(Journal& journal) : journal_(journal) {}
  void pointRecorded(const TrackPoint& point) override { journal_.append(point); }
  void flushPoints() override { journal_.flush(); }

 private:
  Journal& journal_;
};

// Writes what the journal lacks of the track, from point `there` on; a new one where it is gone.
bool completeJournal(std::unique_ptr<Journal> journal, const std::string& path, const Track& track,
                     size_t there) {
  if (journal == nullptr) {
    journal = std::make_unique<Journal>();
    if (journal->create(path) != JournalResult::open) return false;
    there = 0;
  }
  for (size_t i = there; i < track.points.size(); ++i) journal->append(track.points[i]);
  return journal->close();
}

// A track in memory whose journal was closed, or has gone meanwhile, or did not get everything.
class EndedRecording {
 public:
  EndedRecording(Track track, std::string path, const Place& place)
      : track_(std::move(track)), path_(std::move(path)), place_(place) {}

  // Into the library, or else to the disk at all. False as long as points are in memory alone.
  bool keep() {
    LeftRecording whole;
    const JournalResult found = whole.open(path_);
    if (found != JournalResult::open) tellGone(whole, found);
    const size_t there = std::min(whole.points(), track_.points.size());
    whole.take(std::move(track_));
    const Saving saving = trySaving(whole, place_);
    status_ = saving.status;
    why_ = saving.why;
    if (saving.done) return true;
    std::unique_ptr<Journal> journal = whole.continueInto(track_);
    lacking_ = track_.points.size() - there;
    if (lacking_ > 0 && !completeJournal(std::move(journal), path_, track_, there)) return false;
    fail(why_);
    fail("the recording stays in " + path_);
    return true;
  }

  int status() const { return status_; }
  const std::string& why() const { return why_; }  // the library refuses
  size_t lacking() const { return lacking_; }      // points that the disk does not have

 private:
  void tellGone(const LeftRecording& whole, JournalResult found) {
    if (std::exchange(gone_, true)) return;
    fail(found == JournalResult::missing ? path_ + " has gone" : whole.message(found));
    fail("the track is taken from memory");
  }

  Track track_;
  const std::string path_;
  const Place& place_;
  bool gone_ = false;
  int status_ = 0;
  std::string why_;
  size_t lacking_ = 0;
};

// The disk may be full: as long as the person does not give up it is tried again.
int keepInTheEnd(EndedRecording& ended) {
  if (ended.keep()) return ended.status();
  holdNextStopRequest();
  fail(ended.why());
  fail("the disk does not take the last " + pointsText(ended.lacking()) +
       "; trying again every 3 seconds. Ctrl-C gives up and loses them");
  do {
    for (int waited = 0; waited < kTryAgainMs; waited += kLookMs) {
      if (stopRequestWasHeld()) {
        return fail("given up: " + pointsText(ended.lacking()) + " lost");
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(kLookMs));
    }
  } while (!ended.keep());
  return ended.status();
}

// Goes on into the journal until the person stops it; then the whole track is saved.
int continueRecording(LeftRecording& left, const Place& place, const RecoverOptions& options) {
  Track track;
  const std::unique_ptr<Journal> journal = left.continueInto(track);
  const size_t before = track.points.size();
  ContinueHooks hooks(*journal);
  Recording recording(track, place.recording, hooks, systemClock());
  recording.start();
  say("Going on behind " + pointsText(before) + "; Ctrl-C ends and saves.");
  std::fflush(stdout);
  readLiveFixes(
      {options.port, options.speed, options.simulate, options.seconds},
      [&](const FixRecord& fix) { recording.offer(fix); },
      [](const std::string& text) { fail(text); });
  const size_t more = track.points.size() - before;
  say("Recorded " + std::to_string(more) + (more == 1 ? " more point." : " more points."));
  journal->close();  // what it did not take is in memory
  EndedRecording ended(std::move(track), left.path(), place);
  return keepInTheEnd(ended);
}

int answer(LeftRecording& left, const Place& place, const RecoverOptions& options) {
  switch (options.action) {
    case Action::tell:
      say(left.path() + ": " + left.question());
      left.leave();
      return 0;
    case Action::save: return saveRecording(left, place);
    case Action::discard:
      if (!left.discard()) return fail("cannot delete " + left.path());
      say("Discarded " + pointsText(left.points()) + ".");
      return 0;
    case Action::goOn: return continueRecording(left, place, options);
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
  const auto action = [options](Action wanted) {
    return [options, wanted] { options->action = wanted; };
  };
  CLI::Option* const save =
      command->add_flag_callback("--save", action(Action::save), "Put it into the track library");
  CLI::Option* const discard =
      command->add_flag_callback("--discard", action(Action::discard), "Delete it");
  CLI::Option* const goOn = command->add_flag_callback(
      "--continue", action(Action::goOn),
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
  if (options.action == Action::goOn && options.port.empty() && !options.simulate) {
    return fail("recover --continue needs --port DEV or --simulate");
  }
  const Place place = findPlace(options.file);
  const std::vector<std::string> journals = journalsAt(place.paths.journal);
  int worst = 0;
  size_t found = 0;
  bool goneOn = false;  // the others are only told of
  JournalSettings settings;
  settings.failed = [] { fail("the disk does not take the points; recording goes on in memory"); };
  for (const std::string& path : journals) {
    LeftRecording left(settings);
    const JournalResult result = left.open(path);
    if (result == JournalResult::missing) continue;
    ++found;
    if (goneOn) {
      const bool open = result == JournalResult::open;
      say(path + ": " + (open ? left.question() : left.message(result)));
      left.leave();
      continue;
    }
    const int status =
        result == JournalResult::open ? answer(left, place, options) : failedWith(result, left);
    if (worst == 0) worst = status;
    goneOn = options.action == Action::goOn && result == JournalResult::open;  // one is enough
  }
  if (found == 0) say("No recording was left in " + shownPath(place.paths.folder) + ".");
  const int written = finishOutput();
  return worst != 0 ? worst : written;
}

}  // namespace vgps
