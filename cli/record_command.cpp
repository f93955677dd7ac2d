#include <cstdio>
#include <memory>

#include "app/session/apply_settings.h"
#include "app/session/log_clock.h"
#include "app/session/recorder.h"
#include "app/settings/config_store.h"
#include "cli/commands.h"
#include "cli/log_file.h"
#include "cli/log_track.h"
#include "cli/track_input.h"
#include "gps/epoch.h"
#include "gps/gps_fix.h"
#include "platform/files.h"

// The road of a receiver's line on into the recording, all on one thread.
namespace vgps {
namespace {

RecordingOptions optionsOf(const Settings& settings) {
  RecordingOptions options = recordingOptionsOf(settings);
  options.manual = false;  // no one can request points
  return options;
}

// A program without window and loudspeaker that only wants the lines.
class LineHooks : public GpsHooks {
 public:
  std::function<void()> line;

  void lineReceived(const ReceivedLine& received) override {
    if (received.message == nullptr) line();
  }
};

// The track goes into a separate file, without a question.
class FileHooks : public RecorderHooks {
 public:
  explicit FileHooks(std::string path) : path_(std::move(path)) {}
  RecorderPlaces places() const override { return {.file = path_}; }

 private:
  const std::string path_;
};

class LogRecorder {
 public:
  LogRecorder(const RecordOptions& options, const Settings& settings,
              std::optional<int64_t> firstDay)
      : clock_(options.utcOffsetMinutes, firstDay), file_(options.output) {
    recorder_.options = optionsOf(settings);
    gps_.options.speedUnit = settings.speedUnit;
    gps_.options.altitudeFromGeoidField = settings.altitudeFromGeoidField;
    gps_.options.epochSentenceSetting = settings.epochSentenceSetting;
    gps_.options.talkers = settings.talkers;
    gps_.options.utcOffsetMinutes = options.utcOffsetMinutes;
    lines_.line = [this] { offer(); };
  }

  void start() { recorder_.start(); }

  void play(LogFile& log) {
    LogPiece piece;
    while (log.next(piece)) {
      if (!piece.binary) clock_.advanceTo(piece.text);
      fix_.onReceive(piece.chunk);
    }
  }
  // False when the track could not be written; one without points is not.
  bool save() { return recorder_.stop(false).outcome == Keeping::Outcome::kept; }
  size_t fixes() const { return fixes_; }
  size_t points() const { return recorder_.track.points.size(); }
  Track& track() { return recorder_.track; }
  // Without the thresholds: a negative one is below any change of the course.
  void takeAll() {
    recorder_.options.speed = 0;
    recorder_.options.angle = -1;
  }

 private:
  void offer() {
    if (fix_.fixStatus == 0) return;
    if (!closesEpoch(fix_.lastSentenceKind, gps_.epochSentenceKind)) return;
    ++fixes_;
    recorder_.offer(fix_);
  }

  LogClock clock_;
  LineHooks lines_;
  GpsState gps_{lines_, clock_};
  GpsFix fix_{gps_};
  FileHooks file_;
  Recorder recorder_{file_, clock_};
  size_t fixes_ = 0;
};

// The date of the first line, which a receiver may tell only some lines later.
std::optional<int64_t> firstDayOf(const std::string& path) {
  LogFile log(path);
  LogClock clock(0);
  LogPiece piece;
  while (!clock.firstDay() && log.next(piece)) {
    if (!piece.binary) clock.advanceTo(piece.text);
  }
  return clock.firstDay();
}

// "1 point", "2 fixes"
std::string countText(size_t count, const std::string& what) {
  const char* const plural = what.ends_with('x') ? "es" : "s";
  return std::to_string(count) + " " + what + (count == 1 ? "" : plural);
}

std::string nothingRecorded(const std::string& log, size_t fixes) {
  return fixes == 0 ? log + " contains no fix; no track was written"
                    : "no fix in " + log + " passed the recording filter; no track was written";
}

}  // namespace

std::string trackFromLog(const std::string& path, bool allPoints, Track& track) {
  LogFile log(path);
  const auto recorder =
      std::make_unique<LogRecorder>(RecordOptions(), Settings(), firstDayOf(path));
  if (allPoints) recorder->takeAll();
  recorder->start();
  recorder->play(log);
  if (!log.complaint().empty()) return log.complaint();
  if (recorder->points() == 0) return nothingRecorded(path, recorder->fixes());
  track = std::move(recorder->track());
  return {};
}

int runRecord(const RecordOptions& options) {
  if (isSameFile(options.output, options.log)) {
    return fail("the track file must not overwrite the log");
  }
  if (!options.settings.empty() && isSameFile(options.output, options.settings)) {
    return fail("the track file must not overwrite the settings file");
  }
  if (fileKind(options.output) == FileKind::other) return noPlaceForTrack(options.output);
  ConfigStore store;
  Settings settings;
  if (!options.settings.empty()) {
    if (!fileExists(options.settings)) return fail("settings file not found: " + options.settings);
    const bool good = store.open(options.settings);
    if (!store.readable()) return fail("cannot read " + options.settings);
    if (!good) return fail(options.settings + " is not a settings file");
    settings = loadSettings(store);
  }
  LogFile log(options.log);
  const auto recorder = std::make_unique<LogRecorder>(options, settings, firstDayOf(options.log));
  recorder->start();
  recorder->play(log);
  if (!log.complaint().empty()) return fail(log.complaint());
  if (recorder->points() == 0) {
    return fail(nothingRecorded(options.log, recorder->fixes()));
  }
  if (!recorder->save()) return fail("cannot write " + options.output);
  std::printf("%s: %s of %s\n", options.output.c_str(),
              countText(recorder->points(), "point").c_str(),
              countText(recorder->fixes(), "fix").c_str());
  return finishOutput();
}

}  // namespace vgps
