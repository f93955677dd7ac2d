#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include "cli/commands.h"
#include "cli/log_track.h"
#include "cli/text_rows.h"
#include "cli/track_input.h"
#include "formats/collection.h"
#include "formats/convert.h"
#include "formats/simulation.h"
#include "geo/units.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/exclusive_file.h"
#include "platform/files.h"
#include "track/editing.h"
#include "track/file_names.h"

namespace vgps {
namespace {

struct Loss {
  uint64_t Losses::*count;
  const char* what;
};

constexpr Loss kLosses[] = {
    {&Losses::waypoints, "waypoints"},
    {&Losses::paths, "tracks and routes"},
    {&Losses::points, "points of tracks and routes"},
    {&Losses::pathNames, "names of tracks"},
    {&Losses::pointNames, "names of points"},
    {&Losses::altitudes, "altitudes"},
    {&Losses::times, "times"},
    {&Losses::speeds, "speeds"},
    {&Losses::courses, "courses"},
    {&Losses::segments, "segment borders (the segments were joined)"},
    {&Losses::routes, "the difference between routes and tracks"},
    {&Losses::noPosition, "points at 0,0"},
};

std::string stemOf(const std::string& path) {
  const std::string name = path.substr(path.find_last_of("/\\") + 1);
  return name.substr(0, name.rfind('.'));
}

std::string complaint(const std::string& path, const ReadingNotes& notes) {
  switch (notes.end) {
    case ReadingEnd::noFile: return "cannot open " + path;
    case ReadingEnd::unreadable: return "cannot read " + path;
    case ReadingEnd::empty: return path + " is empty";
    case ReadingEnd::foreign:
      return path + " holds \"" + notes.root + "\", not GPX, KML, LOC, GeoJSON, CSV, or a track";
    case ReadingEnd::tooLarge: return "the document in " + path + " is larger than 1 GB";
    case ReadingEnd::noKml: return path + " contains no KML document";
    default: return {};
  }
}

std::string shownName(const std::string& input) { return input == "-" ? "standard input" : input; }

void warnOf(const std::string& path, const ReadingNotes& notes) {
  const auto count = [&](uint64_t number, const char* what) {
    if (number > 0) warn(path + ": " + std::to_string(number) + " " + what);
  };
  if (notes.end == ReadingEnd::damaged && notes.damage != XmlDamage::none) {
    warn(path + ": damaged from line " + std::to_string(notes.damagePlace.line) + ", column " +
         std::to_string(notes.damagePlace.column) + "; what could be read was converted");
  } else if (notes.end == ReadingEnd::damaged) {
    warn(path + ": damaged; what could be read was converted");
  }
  count(notes.badPositions, "points left out: their position is not on the earth");
  count(notes.wordsAsZero, "coordinates that are not numbers were read as 0");
  count(notes.odd, "positions left out: they are not numbers");
  if (!notes.unknownEncoding.empty()) {
    warn(path + ": the encoding " + notes.unknownEncoding + " is not known");
  }
}

// A bar on a terminal, from the second second on.
class Progress {
 public:
  bool operator()(uint64_t done, uint64_t total) {
    if (total == 0 || !shown_) return true;
    const uint32_t now = systemClock().tick();
    if (now - start_ < kSecondMs || now - last_ < 100) return true;
    last_ = now;
    std::fprintf(stderr, "\r%3u %%", static_cast<unsigned>(100 * done / total));
    any_ = true;
    return true;
  }
  ~Progress() {
    if (any_) std::fputs("\r     \r", stderr);
  }

 private:
  const bool shown_ = outputIsTerminal();
  const uint32_t start_ = systemClock().tick();
  uint32_t last_ = 0;
  bool any_ = false;
};

// Standard input as a file that can be read again, removed at the end.
class InputCopy {
 public:
  ~InputCopy() {
    if (!path_.empty()) removeFile(path_);
  }
  // Empty when the system refuses.
  const std::string& path() {
    if (!path_.empty()) return path_;
    std::error_code failed;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(failed);
    if (failed) return path_;
    const std::string wanted =
        pathIn(folder.string(), "vgps-input-" + std::to_string(systemClock().microseconds()));
    FileOpening opening{};
    const auto file = openExclusive(wanted, OpenMode::createNew, opening);
    if (file == nullptr) return path_;
    path_ = wanted;
    if (!fill(*file)) {
      file->remove();
      path_.clear();
    }
    return path_;
  }

 private:
  static bool fill(ExclusiveFile& file) {
    std::FILE* const input = standardInput();
    std::vector<uint8_t> bytes(size_t{1} << 16);
    uint64_t at = 0;
    while (const size_t got = std::fread(bytes.data(), 1, bytes.size(), input)) {
      if (!file.writeAt(at, std::span(bytes).first(got))) return false;
      at += got;
    }
    return std::ferror(input) == 0;
  }

  std::string path_;
};

class Conversion {
 public:
  explicit Conversion(const ConvertCommandOptions& options) : options_(options) {}

  int run() {
    if (const std::optional<int> failed = choose()) return *failed;
    if (const std::optional<int> failed = addSources()) return *failed;
    return convert_.to == ExchangeFormat::trackFile ? writeTracks() : write();
  }

 private:
  std::optional<int> choose() {
    const std::string& to = options_.to.empty() ? options_.output : "." + options_.to;
    convert_.to = isFolder(options_.output) ? ExchangeFormat::trackFile : formatOfName(to);
    if (convert_.to == ExchangeFormat::unknown) {
      return fail("the format of " + options_.output +
                  " is not known; end its name in .gpx, .kml, .kmz, .loc, .geojson, .csv, or .xml, "
                  "or give --to");
    }
    if (options_.output == "-" &&
        (convert_.to == ExchangeFormat::kmz || convert_.to == ExchangeFormat::trackFile)) {
      return fail("this format needs a file, not standard output");
    }
    convert_.gpx10 = options_.gpx == 10;
    convert_.as = static_cast<ConvertAs>(options_.as);
    convert_.name = options_.name;
    for (const std::string& input : options_.inputs) {
      if (options_.output != "-" && input != "-" && isSameFile(input, options_.output)) {
        return fail("the output must not overwrite the input " + input);
      }
    }
    return std::nullopt;
  }

  std::optional<int> addSources() {
    if (std::count(options_.inputs.begin(), options_.inputs.end(), "-") > 1) {
      return fail("standard input can be read only once");
    }
    for (const std::string& input : options_.inputs) {
      const bool isStream = input == "-";
      if (!isLogName(input) && !(isStream && options_.from == "nmea")) {
        const std::string& path = isStream ? copy_.path() : input;
        if (path.empty()) return fail("cannot read standard input, or no room for a copy of it");
        sources_.push_back({[this, path](ExchangeSink& sink) {
          return readExchangeFile(path, sink, kKmh, offset_, [this](uint64_t done, uint64_t total) {
            return progress_(done, total);
          });
        }});
        continue;
      }
      const auto track = std::make_shared<Track>();
      const std::string problem = trackFromLog(input, options_.allPoints, *track);
      if (!problem.empty()) return fail(problem);
      if (track->name.empty() && !isStream) track->name = stemOf(input);
      sources_.push_back({[this, track](ExchangeSink& sink) {
        ReadingNotes notes;
        if (!handTrack(*track, offset_, sink)) notes.end = ReadingEnd::stopped;
        return notes;
      }});
    }
    return std::nullopt;
  }

  int write() {
    const ConvertResult result =
        options_.output == "-"
            ? convertToStream(
                  [](std::string_view bytes) {
                    return std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
                  },
                  sources_, convert_)
            : convertToFile(options_.output, sources_, convert_);
    if (const std::optional<int> failed = tell(result)) return *failed;
    if (!result.written) return fail("cannot write " + options_.output);
    if (options_.output == "-") return finishOutput();
    std::printf("%s: waypoints: %llu, tracks and routes: %llu, points: %llu\n",
                options_.output.c_str(), static_cast<unsigned long long>(result.waypoints),
                static_cast<unsigned long long>(result.paths),
                static_cast<unsigned long long>(result.points));
    return finishOutput();
  }

  std::optional<int> tell(const ConvertResult& result) {
    for (size_t i = 0; i < result.notes.size(); ++i) {
      warnOf(shownName(options_.inputs[i]), result.notes[i]);
      const ExchangeFormat named = formatOfName("." + options_.from);
      const bool isOther = named != ExchangeFormat::unknown && named != result.notes[i].format;
      if (isOther && options_.inputs[i] == "-" && isUsable(result.notes[i].end)) {
        warn("standard input is not in the format " + options_.from + "; it was recognized");
      }
    }
    if (result.failed < result.notes.size()) {
      const std::string text =
          complaint(shownName(options_.inputs[result.failed]), result.notes[result.failed]);
      return fail(text.empty() ? "cannot write " + options_.output : text);
    }
    for (const Loss& loss : kLosses) {
      const uint64_t count = result.losses.*loss.count;
      if (options_.report && count > 0) {
        warn("the target cannot hold: " + std::to_string(count) + " " + loss.what);
      }
    }
    return std::nullopt;
  }

  // A track file holds one track: several go into a folder, or are joined.
  int writeTracks() {
    ExchangeCollection file;
    ConvertResult result;
    for (const ConvertSource& source : sources_) {
      ConvertSink sink(file, convert_);
      result.notes.push_back(source.read(sink));
      sink.end();
      if (isUsable(result.notes.back().end)) continue;
      result.failed = result.notes.size() - 1;
      break;
    }
    result.losses.waypoints = file.waypoints.size();
    if (const std::optional<int> failed = tell(result)) return *failed;
    std::vector<Track> tracks;
    for (const CollectedPath& path : file.paths) {
      Track track = trackOf(file, path, offset_);
      if (options_.join && !tracks.empty()) {
        join(tracks[0], track);
      } else {
        tracks.push_back(std::move(track));
      }
    }
    if (tracks.empty()) return fail("no track was found; waypoints become one with --as track");
    return isFolder(options_.output) ? writeFolder(tracks) : writeFile(tracks);
  }

  int writeFile(const std::vector<Track>& tracks) {
    if (tracks.size() > 1) {
      return fail("a track file holds one track, and " + std::to_string(tracks.size()) +
                  " were found; give a folder, or --join");
    }
    const int failed = writeTrackOutput({tracks[0], options_.output}, kKmh, {});
    if (failed != 0) return failed;
    std::printf("%s: %s\n", options_.output.c_str(),
                countText(tracks[0].points.size(), "point").c_str());
    return finishOutput();
  }

  int writeFolder(std::vector<Track>& tracks) {
    for (Track& track : tracks) {
      if (track.name.empty()) track.name = "Track";
      const std::string path = freeTrackPath(options_.output, track.name);
      if (path.empty()) return fail("no free file name for " + track.name);
      const int failed = writeTrackOutput({track, path}, kKmh, {});
      if (failed != 0) return failed;
      std::printf("%s: %s\n", path.c_str(), countText(track.points.size(), "point").c_str());
    }
    return finishOutput();
  }

  const ConvertCommandOptions& options_;
  ConvertOptions convert_;
  std::vector<ConvertSource> sources_;
  InputCopy copy_;
  Progress progress_;
  const int32_t offset_ = utcOffsetMinutes(systemClock());
};

}  // namespace

int runConvert(const ConvertCommandOptions& options) { return Conversion(options).run(); }

}  // namespace vgps
