#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "app/apply_settings.h"
#include "app/config_store.h"
#include "app/settings.h"
#include "base/texts.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/live_fixes.h"
#include "library/left_recording.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "track/recording.h"

// What a start of the desktop program asks about a recording that did not end, for scripts and for
// computers without a window.
namespace vgps {
namespace {

using Action = RecoverOptions::Action;

constexpr int kInUse = 2;  // exit status

std::string folderOf(const std::string& path) {
  const size_t separator = path.find_last_of("/\\");
  if (separator == std::string::npos) return ".";
  return separator == 0 ? path.substr(0, 1) : path.substr(0, separator);
}

void say(const std::string& text) { std::printf("%s\n", text.c_str()); }

// The settings beside which journals and library lie.
struct Place {
  std::string folder;
  std::string settings;
  std::string library;
  RecordingOptions recording;
};

// Settings that nobody can read are the standard ones: the recording matters more.
Place findPlace(const std::string& file) {
  Place place;
  const std::string path = file.empty() ? pathIn(programFolder(), "vgps.xml") : file;
  ConfigStore store;
  if (!store.open(path)) fail(path + " cannot be read; the standard settings are taken");
  const Settings settings = loadSettings(store);
  place.folder = folderOf(path);
  place.settings = path;
  place.library = trackLibraryPath(settings.trackStorePath, place.folder);
  place.recording = recordingOptionsOf(settings);
  place.recording.manual = false;  // nobody is there who could ask for a point
  return place;
}

int failedWith(JournalResult result, const LeftRecording& left) {
  const int status = fail(left.message(result));
  return result == JournalResult::inUse ? kInUse : status;
}

int saveRecording(LeftRecording& left, const Place& place) {
  constexpr uint32_t kHoldsSettings = 962;
  if (place.library == place.settings) return fail(textWith(kHoldsSettings, place.library));
  TrackLibrary library;
  library.open(place.library);
  if (!library.message().empty()) fail(library.message());
  const size_t points = left.points();
  const LibraryResult result = left.save(library, place.recording, systemClock().local());
  if (result != LibraryResult::done) {
    fail(libraryMessage(result, place.library));
    const int status = fail("the recording stays in " + left.path());
    return result == LibraryResult::inUse ? kInUse : status;
  }
  if (!library.keptAs().empty()) fail("the damaged library was kept as " + library.keptAs());
  if (!left.keptAs().empty()) fail("the damaged recording was kept as " + left.keptAs());
  say("Saved " + std::to_string(points) + " points in " + place.library + ".");
  if (!fileExists(left.path())) return 0;
  return fail("cannot delete " + left.path() + "; it was saved all the same");
}

// What the recording asks for, where there is nobody to ask and nothing to hear.
class ContinueHooks : public RecordingHooks {
 public:
  explicit ContinueHooks(Journal& journal) : journal_(journal) {}
  void startTimer() override {}
  void stopTimer() override {}
  void playSound(const char*) override {}
  void resetDrawnPath() override {}
  void appendToDrawnPath(double, double) override {}
  bool askToSave() override { return false; }
  bool save(Track&) override { return false; }
  void trackChanged(Track&) override {}
  void pointRecorded(const TrackPoint& point) override { journal_.append(point); }
  void flushPoints() override { journal_.flush(); }
  void pointsSettled() override {}

 private:
  Journal& journal_;
};

// Goes on into the journal until the person stops it; then the whole track is saved.
int continueRecording(LeftRecording& left, const Place& place, const RecoverOptions& options) {
  Track track;
  const std::string path = left.path();
  const std::unique_ptr<Journal> journal = left.continueInto(track);
  const size_t before = track.points.size();
  ContinueHooks hooks(*journal);
  Recording recording(track, place.recording, hooks, systemClock());
  recording.start();
  say("Going on behind " + std::to_string(before) + " points; Ctrl-C ends and saves.");
  std::fflush(stdout);
  readLiveFixes(
      {options.port, options.speed, options.simulate, options.seconds},
      [&](const FixRecord& fix) { recording.offer(fix); },
      [](const std::string& text) { fail(text); });
  say("Recorded " + std::to_string(track.points.size() - before) + " more points.");
  if (!journal->close()) {
    // They are in memory alone: into the library with them before anything else is tried.
    fail("the disk did not take the last points of " + path);
  }
  LeftRecording whole;
  const JournalResult result = whole.open(path);
  if (result != JournalResult::open) return failedWith(result, whole);
  if (whole.points() < track.points.size()) whole.take(std::move(track));
  return saveRecording(whole, place);
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
      say("Discarded " + std::to_string(left.points()) + " points.");
      return 0;
    case Action::goOn: return continueRecording(left, place, options);
  }
  return 0;
}

}  // namespace

void addRecoverCommand(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<RecoverOptions>();
  CLI::App* const command =
      program.add_subcommand("recover",
                             "Tell whether a recording was cut short by a crash or a power cut, "
                             "and go on with it, save or "
                             "discard it. Ends with 2 when a running program still records.");
  command->add_option("--file", options->file, "The settings beside which it lies (vgps.xml)")
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
  const std::vector<std::string> journals = journalsAt(pathIn(place.folder, kJournalName));
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
  if (found == 0) say("No recording was left in " + place.folder + ".");
  const int written = finishOutput();
  return worst != 0 ? worst : written;
}

}  // namespace vgps
