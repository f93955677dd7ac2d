#include <cstdio>
#include <memory>
#include <numeric>

#include "app/session/recording_texts.h"
#include "app/settings/config_store.h"
#include "app/settings/settings.h"
#include "base/number.h"
#include "base/text.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/track_input.h"
#include "formats/convert.h"
#include "formats/imports.h"
#include "formats/reading.h"
#include "geo/units.h"
#include "library/track_library.h"
#include "library/waypoint_library.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace vgps {
namespace {

// A script that wants everything of a file; what is left out is told.
class TakeAllHooks : public ExchangeHooks {
 public:
  Answer askToImport(const std::string&, bool&) override { return Answer::yes; }
  std::vector<size_t> choose(std::string_view, std::string_view,
                             const std::vector<std::string>& names) override {
    std::vector<size_t> all(names.size());
    std::iota(all.begin(), all.end(), size_t{0});
    return all;
  }
};

Json trackJson(const TrackSummary& track, size_t number) {
  Json json = {{"number", number},         {"name", track.name},
               {"points", track.points},   {"distanceKm", track.kilometers},
               {"seconds", track.seconds}, {"startUtc", nullptr},
               {"damaged", track.damaged}};
  if (track.startUtc != 0) json["startUtc"] = isoUtcText(track.startUtc);
  return json;
}

Json waypointJson(const Waypoint& waypoint, size_t number) {
  return {{"number", number},
          {"name", waypoint.name},
          {"longitude", waypoint.x},
          {"latitude", waypoint.y},
          {"altitude", waypoint.z}};
}

std::string waypointRow(const Waypoint& waypoint) {
  return waypoint.name + ", " + fixedText(waypoint.y, 6) + "," + fixedText(waypoint.x, 6) + ", " +
         fixedText(waypoint.z, 1) + " m";
}

// The libraries of the settings in a folder.
class Libraries {
 public:
  explicit Libraries(const LibraryOptions& options) : options_(options) {}

  int run() {
    if (!open()) return 1;
    switch (options_.action) {
      case LibraryOptions::Action::list: return list();
      case LibraryOptions::Action::show: return show();
      case LibraryOptions::Action::rename: return rename();
      case LibraryOptions::Action::remove: return remove();
      case LibraryOptions::Action::import: return import();
      case LibraryOptions::Action::exportOne: break;
    }
    return exportTo();
  }

 private:
  bool open() {
    std::string path = options_.file.empty() ? programFolder() : options_.file;
    if (isFolder(path)) path = pathIn(path, "vgps.xml");
    ConfigStore store;
    if (!options_.file.empty() && !isFolder(options_.file) && !fileExists(path)) {
      fail("settings file not found: " + path);
      return false;
    }
    if (!store.open(path)) {
      fail(path + " cannot be read");
      return false;
    }
    const Settings settings = loadSettings(store);
    unit_ = settings.speedUnit;
    const size_t slash = path.find_last_of("/\\");
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash);
    return isUsable(tracks_.open(trackLibraryPath(settings.trackStorePath, folder)),
                    tracks_.path()) &&
           isUsable(waypoints_.open(pathIn(folder, kWaypointLibraryName)), waypoints_.path());
  }

  static bool isUsable(LibraryState state, const std::string& path) {
    const std::string message = libraryMessage(state, path);
    if (!message.empty()) warn(message);
    return state != LibraryState::notALibrary && state != LibraryState::unreadable;
  }

  size_t count() const {
    return options_.waypoints ? waypoints_.waypoints().size() : tracks_.tracks().size();
  }

  Json rowJson(size_t index) const {
    return options_.waypoints ? waypointJson(waypoints_.waypoints()[index].waypoint, index + 1)
                              : trackJson(tracks_.tracks()[index], index + 1);
  }

  std::string rowText(size_t index) const {
    return options_.waypoints ? waypointRow(waypoints_.waypoints()[index].waypoint)
                              : trackRowText(tracks_.tracks()[index], kMeters);
  }

  std::string nameOf(size_t index) const {
    return options_.waypoints ? waypoints_.waypoints()[index].waypoint.name
                              : tracks_.tracks()[index].name;
  }

  int list() const {
    Json all = Json::array();
    for (size_t i = 0; i < count(); ++i) {
      if (options_.json) {
        all.push_back(rowJson(i));
      } else {
        std::printf("%4zu  %s\n", i + 1, rowText(i).c_str());
      }
    }
    if (options_.json) std::puts(jsonText(all, 2).c_str());
    return finishOutput();
  }

  // By its number, from 1, or else by its name, where only one has it.
  bool find(size_t& index) const {
    const char* const what = options_.waypoints ? "waypoint" : "track";
    const std::string& wanted = options_.entry;
    const bool isNumber = wanted.find_first_not_of("0123456789") == std::string::npos;
    const auto number = isNumber ? static_cast<size_t>(leadingDouble(wanted)) : 0;
    index = number - 1;
    if (isNumber && number >= 1 && number <= count()) return true;
    size_t found = 0;
    for (size_t i = 0; i < count(); ++i) {
      if (nameOf(i) != wanted) continue;
      index = i;
      ++found;
    }
    if (found == 1) return true;
    fail(found == 0
             ? std::string("there is no ") + what + " " + wanted
             : std::to_string(found) + " " + what + "s are named " + wanted + "; give a number");
    return false;
  }

  int show() const {
    size_t index = 0;
    if (!find(index)) return 1;
    std::puts(options_.json ? jsonText(rowJson(index), 2).c_str() : rowText(index).c_str());
    return finishOutput();
  }

  int done(LibraryResult result) const {
    if (result == LibraryResult::done) return finishOutput();
    return fail(libraryMessage(result, options_.waypoints ? waypoints_.path() : tracks_.path()));
  }

  int rename() {
    size_t index = 0;
    if (!find(index)) return 1;
    if (!options_.waypoints) return done(tracks_.rename(index, options_.name));
    Waypoint waypoint = waypoints_.waypoints()[index].waypoint;
    waypoint.name = options_.name;
    return done(waypoints_.edit(index, waypoint));
  }

  int remove() {
    size_t index = 0;
    if (!find(index)) return 1;
    return done(options_.waypoints ? waypoints_.remove(index) : tracks_.remove(index));
  }

  int import() {
    TakeAllHooks hooks;
    bool failed = false;
    Json all = Json::array();
    for (const std::string& input : options_.inputs) {
      const ImportTarget target{waypoints_, tracks_};
      const ImportOptions complete{.complete = true, .speedUnit = unit_};
      const bool asWaypoints = options_.waypoints && formatOfName(input) != ExchangeFormat::gpx;
      const ImportResult result = asWaypoints ? ImportKml(input, true, target, hooks, complete)
                                              : ImportFile(input, target, hooks, complete);
      for (const std::string& line : result.lines) {
        const bool isNamed = line.find(input) != std::string::npos;
        warn(isNamed ? line : input + ": " + line);
      }
      const bool readable = vgps::isUsable(result.end);
      failed = failed || !readable || result.saved != LibraryResult::done;
      all.push_back({{"file", input},
                     {"waypoints", result.waypoints},
                     {"tracks", result.tracks},
                     {"points", result.points}});
      if (options_.json || !readable) continue;
      std::printf("%s: %u waypoints, %u tracks with %llu points\n", input.c_str(),
                  unsigned{result.waypoints}, unsigned{result.tracks},
                  static_cast<unsigned long long>(result.points));
    }
    if (options_.json) std::puts(jsonText(all, 2).c_str());
    return failed ? 1 : finishOutput();
  }

  ConvertSource sourceOf(size_t index) {
    return {[this, index](ExchangeSink& sink) {
      ReadingNotes notes;
      if (options_.waypoints) {
        const Waypoint& from = waypoints_.waypoints()[index].waypoint;
        const ExchangePoint point{.longitude = from.x,
                                  .latitude = from.y,
                                  .altitude = from.z,
                                  .hasAltitude = true,
                                  .hasName = true,
                                  .name = from.name};
        if (!sink.waypoint(point)) notes.end = ReadingEnd::stopped;
        return notes;
      }
      Track track;
      const LibraryResult loaded = tracks_.load(index, unit_, track);
      const int32_t offset = utcOffsetMinutes(systemClock());
      if (loaded != LibraryResult::done)
        notes.end = ReadingEnd::unreadable;
      else if (!handTrack(track, offset, sink))
        notes.end = ReadingEnd::stopped;
      return notes;
    }};
  }

  int exportTo() {
    size_t first = 0, last = count();
    if (options_.entry != "all") {
      if (!find(first)) return 1;
      last = first + 1;
    }
    const ExchangeFormat to = formatOfName(options_.output);
    if (to == ExchangeFormat::unknown) {
      return fail("the format of " + options_.output +
                  " is not known; end its name in .gpx, .kml, .kmz, .loc, .geojson, .csv, or .xml");
    }
    if (first == last) return fail("there is nothing to export");
    if (to == ExchangeFormat::trackFile) return exportTrackFile(first, last);
    std::vector<ConvertSource> sources;
    for (size_t i = first; i < last; ++i) sources.push_back(sourceOf(i));
    ConvertOptions format;
    format.to = to;
    const ConvertResult result = convertToFile(options_.output, sources, format);
    if (result.failed < result.notes.size())
      return fail("cannot read " + nameOf(first + result.failed));
    if (!result.written) return fail("cannot write " + options_.output);
    return finishOutput();
  }

  int exportTrackFile(size_t first, size_t last) {
    if (options_.waypoints || last - first != 1) return fail("a track file holds one track");
    Track track;
    const LibraryResult loaded = tracks_.load(first, unit_, track);
    if (loaded != LibraryResult::done) return done(loaded);
    return writeTrackOutput({track, options_.output}, unit_, {});
  }

  const LibraryOptions& options_;
  TrackLibrary tracks_;
  WaypointLibrary waypoints_;
  int32_t unit_ = 0;
};

}  // namespace

int runLibrary(const LibraryOptions& options) { return Libraries(options).run(); }

void addLibraryCommand(CLI::App& program, Chosen& chosen) {
  using Action = LibraryOptions::Action;
  const auto options = std::make_shared<LibraryOptions>();
  CLI::App* const command = program.add_subcommand(
      "library", "List and change the tracks and waypoints that the program has saved.");
  command->require_subcommand(1);
  command
      ->add_option(
          "--file", options->file,
          "Settings file beside the libraries, or its folder (default: vgps.xml next to the "
          "program)")
      ->check(nonEmptyName())
      ->option_text("FILE");
  command->add_flag("--waypoints", options->waypoints, "Waypoints instead of tracks");
  const auto add = [&](const char* name, const char* help, Action action) {
    CLI::App* const one = command->add_subcommand(name, help);
    one->fallthrough();
    one->callback([options, action] { options->action = action; });
    return one;
  };
  CLI::App* const list = add("list", "List all of them", Action::list);
  CLI::App* const show = add("show", "Print one of them", Action::show);
  CLI::App* const rename = add("rename", "Give one of them another name", Action::rename);
  CLI::App* const remove = add("remove", "Remove one of them", Action::remove);
  CLI::App* const import =
      add("import", "Add what GPX, KML, KMZ, LOC, and track files hold", Action::import);
  CLI::App* const exporting =
      add("export", "Write one of them, or all, to a file in the format of its extension",
          Action::exportOne);
  for (CLI::App* const one : {list, show, import}) {
    one->add_flag("--json", options->json, "Print JSON");
  }
  for (CLI::App* const one : {show, rename, remove, exporting}) {
    one->add_option("ENTRY", options->entry, "Number, from 1, or name")
        ->required()
        ->check(nonEmptyName())
        ->option_text(one == exporting ? "or all" : " ");
  }
  rename->add_option("NAME", options->name, "New name")->required()->option_text(" ");
  import->add_option("IN", options->inputs, "Files to read; the formats are recognized")
      ->required()
      ->check(nonEmptyName())
      ->option_text(" ");
  exporting->add_option("-o", options->output, "File to write")
      ->required()
      ->check(nonEmptyName())
      ->option_text("OUT");
  command->callback([options, &chosen] { chosen = [options] { return runLibrary(*options); }; });
}

}  // namespace vgps
