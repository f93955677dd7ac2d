#include <algorithm>

#include "app/desktop/command_handlers.h"
#include "app/desktop/commands.h"
#include "app/desktop/exchange.h"
#include "app/desktop/save_messages.h"
#include "app/session/connection.h"
#include "app/session/recording_texts.h"
#include "base/texts.h"
#include "formats/imports.h"
#include "formats/reading.h"
#include "formats/simulation.h"
#include "library/waypoint_library.h"
#include "track/file_names.h"

// Commands that exchange tracks and waypoints with other programs.
namespace vgps {
namespace {

// Where an export goes, and what it takes from.
struct Exporting {
  const std::string& path;
  const WaypointLibrary& waypoints;
  TrackLibrary& tracks;
  ExchangeHooks& hooks;
  ExportPlace place;
};

struct ExportRow {
  Command command;
  Text kind;  // of its files, in words
  const char* pattern;
  bool packs;  // a track may be packed into an archive instead
  ExportResult (*everything)(const Exporting&);
  ExportResult (*waypoint)(const Waypoint&, const Exporting&);
  ExportResult (*track)(const Track&, const Exporting&);  // null: the format holds no tracks
};

FileType kmzFiles() { return {std::string(textOf(Text::kmzFiles)), "*.kmz"}; }

bool isArchive(const std::string& path) { return formatOfName(path) == ExchangeFormat::kmz; }

const ExportRow* exportRowOf(Command command) {
  static constexpr ExportRow kExportRows[] = {
      {Command::exportKml, Text::kmlFiles, "*.kml", true,
       [](const Exporting& to) {
         return ExportAllKml(to.path, to.waypoints, to.tracks, to.hooks, to.place);
       },
       [](const Waypoint& waypoint, const Exporting& to) {
         return ExportWaypointKml(waypoint, to.path, to.hooks, to.place);
       },
       [](const Track& track, const Exporting& to) {
         return isArchive(to.path) ? ExportTrackKmz(track, to.path, to.hooks, to.place)
                                   : ExportTrackKml(track, to.path, false, to.hooks, to.place);
       }},
      {Command::exportLoc, Text::locFiles, "*.loc", false,
       [](const Exporting& to) { return ExportAllLoc(to.path, to.waypoints, to.hooks, to.place); },
       [](const Waypoint& waypoint, const Exporting& to) {
         return ExportWaypointLoc(waypoint, to.path, to.hooks, to.place);
       },
       nullptr},
      {Command::exportGpx, Text::gpxFiles, "*.gpx", false,
       [](const Exporting& to) {
         return ExportAllGpx(to.path, to.waypoints, to.tracks, to.hooks, to.place);
       },
       [](const Waypoint& waypoint, const Exporting& to) {
         return ExportWaypointGpx(waypoint, to.path, to.place);
       },
       [](const Track& track, const Exporting& to) {
         return ExportTrackGpx(track, to.path, to.hooks, to.place);
       }},
  };
  const auto* const found =
      std::find_if(std::begin(kExportRows), std::end(kExportRows),
                   [command](const ExportRow& candidate) { return candidate.command == command; });
  return found == std::end(kExportRows) ? nullptr : found;
}

// One line of the list that an export is chosen from.
struct ExportChoice {
  enum Kind { everything, currentTrack, savedTrack, waypoint };
  Kind kind;
  size_t index = 0;
};

// Everything that there is to export, as lines of a list.
struct ExportList {
  std::vector<ExportChoice> choices;
  std::vector<std::string> rows;

  void add(ExportChoice choice, std::string row) {
    choices.push_back(choice);
    rows.push_back(std::move(row));
  }
};

// The libraries as exports and imports need them. The user is told when they cannot be used.
bool openWaypoints(Desktop& app, WaypointLibrary& waypoints) {
  const std::string path = pathIn(app.paths.folder, kWaypointLibraryName);
  const LibraryState state = waypoints.open(path);
  const std::string message = libraryMessage(state, path);
  const bool usable = state != LibraryState::notALibrary && state != LibraryState::unreadable;
  if (message.empty()) return usable;
  usable ? app.window.tell(message) : app.window.tellError(message);
  return usable;
}

bool openTracks(Desktop& app) {
  if (!reportLibrary(app, app.recorder.openLibrary())) return false;
  app.recorder.library.refresh();
  return true;
}

ExportList whatToExport(Desktop& app, const WaypointLibrary& waypoints, bool withTracks) {
  ExportList list;
  const auto saved = app.recorder.library.tracks();
  const std::string places = std::to_string(waypoints.waypoints().size());
  const int32_t unit = app.recorder.options.distanceUnit;
  if (withTracks && !app.recorder.track.points.empty()) {
    list.add({ExportChoice::currentTrack},
             textWith(Text::currentTrackToExport, trackTotalsText(app.recorder.track, unit)));
  }
  if (withTracks && !(saved.empty() && waypoints.waypoints().empty())) {
    list.add({ExportChoice::everything},
             textWith(Text::everythingToExport, places, std::to_string(saved.size())));
  } else if (!waypoints.waypoints().empty()) {
    list.add({ExportChoice::everything}, textWith(Text::allWaypointsToExport, places));
  }
  for (size_t i = 0; withTracks && i < saved.size(); ++i) {
    list.add({ExportChoice::savedTrack, i}, trackRowText(saved[i], unit));
  }
  for (size_t i = 0; i < waypoints.waypoints().size(); ++i) {
    list.add({ExportChoice::waypoint, i},
             textWith(Text::waypointToExport, waypoints.waypoints()[i].waypoint.name));
  }
  return list;
}

ExportPlace exportPlaceOf(const Desktop& app) {
  return {.clock = app.platform.clock,
          .open = app.platform.disk.open,
          .temporaryFolder = app.paths.temporary};
}

void tellExport(Desktop& app, ExportResult result, const std::string& path) {
  switch (result) {
    case ExportResult::done: showNotice(app, textWith(Text::exported, path)); break;
    case ExportResult::notRead: app.window.tellError(textOf(Text::exportNotRead)); break;
    case ExportResult::notWritten: app.window.tellError(textWith(Text::notWritten, path)); break;
    case ExportResult::refused:
    case ExportResult::cancelled: break;
  }
}

class Export {
 public:
  Export(Desktop& app, const ExportRow& row)
      : app_(app), row_(row), waypoints_(app.platform.disk) {}

  void run() {
    const bool withTracks = row_.track != nullptr;
    if (!openWaypoints(app_, waypoints_) || (withTracks && !openTracks(app_))) return;
    const ExportList list = whatToExport(app_, waypoints_, withTracks);
    if (list.rows.empty()) return showNotice(app_, textOf(Text::nothingToExport));
    const auto chosen = app_.window.chooseRow(textOf(Text::askWhatToExport), list.rows);
    if (!chosen || !take(list.choices[*chosen])) return;
    const std::string path = app_.window.chooseNewFile(fileChoice());
    if (path.empty()) return;
    DesktopExchange hooks(app_);
    tellExport(app_, write({path, waypoints_, app_.recorder.library, hooks, exportPlaceOf(app_)}),
               path);
  }

 private:
  bool take(const ExportChoice& choice) {
    kind_ = choice.kind;
    if (kind_ == ExportChoice::waypoint) waypoint_ = waypoints_.waypoints()[choice.index].waypoint;
    if (kind_ == ExportChoice::currentTrack) track_ = app_.recorder.track;
    if (kind_ != ExportChoice::savedTrack) return true;
    TrackLibrary& library = app_.recorder.library;
    const LibraryResult result = library.load(choice.index, app_.settings.speedUnit, track_);
    if (result == LibraryResult::done) return true;
    app_.window.tellError(libraryMessage(result, library.path()));
    return false;
  }

  FileChoice fileChoice() const {
    FileChoice choice{.title = std::string(textOf(Text::exportTitle)),
                      .kind = std::string(textOf(row_.kind)),
                      .pattern = row_.pattern};
    const std::string extension = choice.pattern.substr(1);
    const bool isTrack = kind_ == ExportChoice::currentTrack || kind_ == ExportChoice::savedTrack;
    if (isTrack && row_.packs) choice.more = {kmzFiles()};
    std::string name = isTrack ? track_.name : waypoint_.name;
    if (isTrack && name.empty()) name = trackNameFromTime(app_.platform.clock.local());
    if (!name.empty()) choice.name = fileNameFrom(name) + extension;
    return choice;
  }

  ExportResult write(const Exporting& to) const {
    switch (kind_) {
      case ExportChoice::everything: return row_.everything(to);
      case ExportChoice::waypoint: return row_.waypoint(waypoint_, to);
      case ExportChoice::currentTrack:
      case ExportChoice::savedTrack: break;
    }
    return row_.track(track_, to);
  }

  Desktop& app_;
  const ExportRow& row_;
  WaypointLibrary waypoints_;
  ExportChoice::Kind kind_ = ExportChoice::everything;
  Waypoint waypoint_;
  Track track_;
};

enum class ImportAs { gpx, tracks, waypoints, anything, nothing };

// Of a KML file the user decides; the others hold one kind of thing only.
ImportAs askImportAs(Desktop& app, Command command, const std::string& path) {
  if (command == Command::importGpx) return ImportAs::gpx;
  const ExchangeFormat format = formatOfName(path);
  if (command == Command::importLoc || format == ExchangeFormat::loc) return ImportAs::waypoints;
  if (format == ExchangeFormat::trackFile) return ImportAs::tracks;
  const std::string_view answers[] = {textOf(Text::asTracks), textOf(Text::asWaypoints),
                                      textOf(Text::cancel)};
  constexpr ImportAs kMeanings[] = {ImportAs::tracks, ImportAs::waypoints, ImportAs::nothing};
  return kMeanings[chooseWithImportBox(app, textWith(Text::askImportAs, path), answers)];
}

ImportResult importAs(ImportAs kind, const std::string& path, const ImportTarget& target,
                      ExchangeHooks& hooks, const ImportOptions& options) {
  if (kind == ImportAs::gpx) return ImportGpx(path, target, hooks, options);
  if (kind == ImportAs::anything) return ImportFile(path, target, hooks, options);
  return ImportKml(path, kind == ImportAs::waypoints, target, hooks, options);
}

void importFrom(Desktop& app, const std::string& path, ImportAs kind) {
  WaypointLibrary waypoints(app.platform.disk);
  if (!openWaypoints(app, waypoints) || !openTracks(app)) return;
  DesktopExchange hooks(app);
  const ImportOptions options{.complete = app.settings.importEverything,
                              .speedUnit = app.settings.speedUnit,
                              .clock = app.platform.clock};
  const ImportResult result =
      importAs(kind, path, {waypoints, app.recorder.library}, hooks, options);
  if (result.waypoints + result.tracks == 0) return repaintNow(app);
  showNotice(app, textWith(Text::importedCounts, std::to_string(result.waypoints),
                           std::to_string(result.tracks)));
}

FileChoice importChoice(Command command) {
  struct {
    Command command;
    Text kind;
    const char* pattern;
  } constexpr kImportRows[] = {{Command::importKml, Text::importableFiles, "*.KML;*.LOC;*.XML"},
                               {Command::importLoc, Text::locFiles, "*.loc"},
                               {Command::importGpx, Text::gpxFiles, "*.gpx"}};
  FileChoice choice{.title = std::string(textOf(Text::importTitle)), .kind = {}, .pattern = {}};
  for (const auto& row : kImportRows) {
    if (row.command != command) continue;
    choice.kind = textOf(row.kind);
    choice.pattern = row.pattern;
  }
  if (command == Command::importKml) choice.more = {kmzFiles()};
  return choice;
}

}  // namespace

void exportFile(Desktop& app, Command command) {
  const ExportRow* const row = exportRowOf(command);
  if (row != nullptr) Export(app, *row).run();
}

void importFile(Desktop& app, Command command) {
  const std::string path = app.window.chooseFile(importChoice(command));
  if (path.empty()) return;
  const ImportAs kind = askImportAs(app, command, path);
  if (kind != ImportAs::nothing) importFrom(app, path, kind);
}

void takeDroppedFile(Desktop& app, const std::string& path) {
  if (!isLogName(path)) return importFrom(app, path, ImportAs::anything);
  std::vector<std::string> lines;
  if (!simulationFromLog(path, lines)) {
    return showNotice(app, textWith(Text::noSimulationData, path));
  }
  replayLines(app, std::move(lines));
  app.gps.simulation.setMode(SimMode::timer);
  connectReceiver(app, {.simulate = true});
}

void exportTrackFiles(Desktop& app, Command) {
  const std::string folder =
      app.platform.documentsFolder ? app.platform.documentsFolder() : std::string();
  if (folder.empty()) return showNotice(app, textOf(Text::noDocumentsFolder));
  if (!openTracks(app)) return;
  DesktopExchange hooks(app);
  uint32_t written = 0;
  const ExportResult result =
      ExportAllTracksAsFiles(folder, app.recorder.library, hooks, written, exportPlaceOf(app));
  if (result != ExportResult::done) return tellExport(app, result, folder);
  showNotice(app, textWith(Text::tracksExported, std::to_string(written)));
}

}  // namespace vgps
