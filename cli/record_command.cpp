#include <cstdio>
#include <memory>

#include "app/session/apply_settings.h"
#include "app/session/line_notes.h"
#include "app/session/log_clock.h"
#include "app/session/recorder.h"
#include "app/session/recording_texts.h"
#include "app/settings/config_store.h"
#include "base/texts.h"
#include "cli/commands.h"
#include "cli/live_fixes.h"
#include "cli/log_file.h"
#include "cli/log_track.h"
#include "cli/text_rows.h"
#include "cli/track_input.h"
#include "gps/epoch.h"
#include "gps/gps_fix.h"
#include "gps/stray_start.h"
#include "platform/console.h"
#include "platform/files.h"

// Records a log: the same processing as for a receiver's lines, but all on one thread.
namespace vgps {
namespace {

RecordingOptions optionsOf(const Settings& settings) {
  RecordingOptions options = recordingOptionsOf(settings);
  options.manual = false;  // no one can request points
  return options;
}

// Ignores everything but the received lines.
class LineHooks : public GpsHooks {
 public:
  std::function<void(uint32_t said)> line;

  void lineReceived(const ReceivedLine& received) override {
    if (received.message == nullptr) line(received.said);
  }
};

// Saves the track to a separate file, without asking. The journal, if any, is next to it.
class FileHooks : public RecorderHooks {
 public:
  explicit FileHooks(std::string path, std::string journal = {})
      : path_(std::move(path)), journal_(std::move(journal)) {}
  RecorderPaths places() const override { return {.journal = journal_, .file = path_}; }
  void journalRefused(const std::string& path) override {
    fail("cannot create " + path + "; the recording is kept in memory only");
  }
  void journalFailed() override {
    fail("cannot write points to disk; recording continues in memory");
  }
  void journalWorks() override { warn("points are written to disk again"); }

 private:
  const std::string path_;
  const std::string journal_;
};

class LogRecorder {
 public:
  LogRecorder(const RecordOptions& options, const Settings& settings,
              const std::optional<LogSurvey>& survey)
      : clock_(options.utcOffsetMinutes, survey ? survey->firstDay : std::nullopt),
        file_(options.output) {
    recorder_.options = optionsOf(settings);
    gps_.options.speedUnit = settings.speedUnit;
    gps_.options.altitudeFromGeoidField = settings.altitudeFromGeoidField;
    gps_.options.epochSentenceSetting = settings.epochSentenceSetting;
    gps_.options.talkers =
        options.talkers ? static_cast<int32_t>(*options.talkers) : settings.talkers;
    gps_.options.utcOffsetMinutes = options.utcOffsetMinutes;
    lines_.line = [this](uint32_t said) { offer(epochs_.take(fix_, said, epochRuleOf(gps_), 0)); };
    if (survey) gps_.talkers.expect(survey->talkers);
  }

  void start() { recorder_.start(); }

  void play(LogFile& log) {
    LogPiece piece;
    while (log.next(piece)) {
      if (!piece.binary) clock_.advanceTo(withoutStrayStart(piece.text));
      fix_.receiveLine(piece.chunk);
    }
    offer(epochs_.takeWaiting());
  }
  // Returns false if the track could not be written; a track without points was not.
  bool save() { return recorder_.stop(false).outcome == SaveResult::Outcome::saved; }
  std::string leftOut() const { return leftOutText(gps_.stats, true); }
  size_t fixes() const { return fixes_; }
  size_t jumps() const { return recorder_.recording().jumps(); }
  size_t points() const { return recorder_.track.points.size(); }
  Track& track() { return recorder_.track; }
  // Without the thresholds: a negative one is below any change of the course.
  void takeAll() {
    recorder_.options.speed = 0;
    recorder_.options.angle = -1;
  }

 private:
  void offer(std::span<const FixRecord> fixes) {
    for (const FixRecord& fix : fixes) {
      ++fixes_;
      recorder_.offer(fix);
    }
  }

  LogClock clock_;
  LineHooks lines_;
  GpsState gps_{lines_, clock_};
  GpsFix fix_{gps_};
  EpochFixes epochs_;
  FileHooks file_;
  Recorder recorder_{file_, clock_};
  size_t fixes_ = 0;
};

// Shows on a terminal how the recording goes, each second in the same line.
class ProgressLine {
 public:
  void show(const Recorder& recorder) {
    if (!outputIsTerminal()) return;
    std::string text = trackTotalsText(recorder.track, recorder.options.distanceUnit);
    const std::string waiting = waitingText(recorder);
    if (!waiting.empty()) text += ", " + waiting;
    std::printf("\r%-*s", static_cast<int>(width_), text.c_str());
    std::fflush(stdout);
    width_ = text.size();
  }
  void end() {
    if (width_ > 0) std::printf("\n");
    width_ = 0;
  }

 private:
  size_t width_ = 0;
};

// `none` says that no fix came from the source.
std::string nothingRecorded(const std::string& source, const std::string& none, size_t fixes) {
  return (fixes == 0 ? none : "no fix in " + source + " passed the recording filter") +
         "; no track was written";
}

int tellRecorded(const RecordOptions& options, size_t points, size_t fixes, size_t jumps) {
  if (jumps > 0) warn("left out because the position jumped: " + countText(jumps, "fix"));
  std::printf("%s: %s of %s\n", options.output.c_str(), countText(points, "point").c_str(),
              countText(fixes, "fix").c_str());
  return finishOutput();
}

int recordLog(const RecordOptions& options, const Settings& settings) {
  LogFile log(options.log);
  const auto recorder =
      std::make_unique<LogRecorder>(options, settings, surveyLogFile(options.log));
  recorder->start();
  recorder->play(log);
  if (!log.complaint().empty()) return fail(log.complaint());
  if (!log.isLog()) return fail(log.notALog());
  if (const std::string leftOut = recorder->leftOut(); !leftOut.empty()) {
    warn(textWith(Text::sentencesLeftOut, leftOut));
  }
  if (recorder->points() == 0) {
    return fail(nothingRecorded(options.log, options.log + " contains no fix", recorder->fixes()));
  }
  if (!recorder->save()) return fail("cannot write " + options.output);
  return tellRecorded(options, recorder->points(), recorder->fixes(), recorder->jumps());
}

// Records to the journal next to the track until stopped, then writes the track. Returns false
// after one line on standard error.
int recordLive(const RecordOptions& options, const Settings& settings) {
  const auto mailbox = stoppableMailbox();
  const std::string journal = options.output + ".journal";
  for (const std::string& left : existingJournals(journal)) {
    warn("an earlier recording was cut short; to save it, use vgps recover --journal " + left +
         " --save");
  }
  FileHooks file(options.output, journal);
  Recorder recorder(file, systemClock());
  recorder.options = optionsOf(settings);
  recorder.start();
  size_t fixes = 0;
  ProgressLine progress;
  readLiveFixes(
      mailbox,
      {.port = options.port,
       .speed = options.speed,
       .simulated = options.simulated,
       .seconds = options.seconds,
       .settings = &settings,
       .talkers = options.talkers},
      [&](const FixRecord& fix) {
        ++fixes;
        recorder.offer(fix);
        progress.show(recorder);
      },
      [&](const std::string& text) {
        progress.end();
        fail(text);
      });
  progress.end();
  const size_t points = recorder.track.points.size();
  const SaveResult keeping = recorder.stop(false);
  if (points == 0) {
    recorder.discardTrack();
    const bool simulated = options.simulated != Simulated::none;
    const std::string source = simulated ? "the simulation" : options.port;
    return fail(nothingRecorded(source, "no fix received from " + source, fixes));
  }
  if (keeping.outcome != SaveResult::Outcome::saved) {
    recorder.closeJournal();
    return fail("cannot write " + options.output + "; the points are still in " + options.output +
                ".journal");
  }
  return tellRecorded(options, points, fixes, recorder.recording().jumps());
}

// False after one line on standard error.
bool readSettings(const std::string& path, Settings& settings) {
  ConfigStore store;
  if (!fileExists(path)) {
    fail("settings file not found: " + path);
  } else if (const bool good = store.open(path); !store.readable()) {
    fail(cannotRead(path));
  } else if (!good) {
    fail(path + " is not a settings file");
  } else {
    settings = loadSettings(store);
    return true;
  }
  return false;
}

}  // namespace

std::string trackFromLog(const std::string& path, bool allPoints, Track& track) {
  LogFile log(path);
  const auto recorder =
      std::make_unique<LogRecorder>(RecordOptions(), Settings(), surveyLogFile(path));
  if (allPoints) recorder->takeAll();
  recorder->start();
  recorder->play(log);
  if (!log.complaint().empty()) return log.complaint();
  if (recorder->points() == 0)
    return nothingRecorded(path, path + " contains no fix", recorder->fixes());
  track = std::move(recorder->track());
  return {};
}

int runRecord(const RecordOptions& options) {
  if (options.log.empty() && options.port.empty() && options.simulated == Simulated::none) {
    return fail("nothing to record: specify --port DEV, --simulate, or --replay LOG");
  }
  if (!options.log.empty() && isSameFile(options.output, options.log)) {
    return fail("the track file must not overwrite the log");
  }
  if (!options.settings.empty() && isSameFile(options.output, options.settings)) {
    return fail("the track file must not overwrite the settings file");
  }
  if (isNoPlaceForTrack(options.output)) return noPlaceForTrack(options.output);
  Settings settings;
  if (!options.settings.empty() && !readSettings(options.settings, settings)) return 1;
  return options.log.empty() ? recordLive(options, settings) : recordLog(options, settings);
}

}  // namespace vgps
