#include <gtest/gtest.h>

#include "app/desktop/commands.h"
#include "app/desktop/exchange.h"
#include "base/texts.h"
#include "library/waypoint_library.h"
#include "tests/fakes/program_world.h"

// Tracks and waypoints to other programs and from them, as a person does it.
namespace vgps {
namespace {

class ExchangeCommands : public testing::Test {
 protected:
  ExchangeCommands() {
    world.load("");
    app.platform.documentsFolder = [this] { return world.folder.path(); };
  }

  void fillLibraries() {
    WaypointLibrary waypoints;
    waypoints.open(world.folder / kWaypointLibraryName);
    EXPECT_EQ(waypoints.add(Waypoint{"Camp", 11.5, 48.1, 545}), LibraryResult::done);
    Track ride = rideOf("Ride");
    app.recorder.openLibrary();
    EXPECT_EQ(app.recorder.library.add(ride, {}, {}), LibraryResult::done);
    app.recorder.track = rideOf("a/b");
  }
  static Track rideOf(const std::string& name) {
    Track track;
    track.name = name;
    for (const double longitude : {11.25, 11.5}) {
      track.points.emplace_back().longitude = longitude;
      track.points.back().latitude = 48;
    }
    return track;
  }
  size_t waypointsNow() {
    WaypointLibrary waypoints;
    waypoints.open(world.folder / kWaypointLibraryName);
    return waypoints.waypoints().size();
  }

  ProgramWorld world;
  Desktop& app = world.app;
  FakeWindow& window = world.window;
};

TEST_F(ExchangeCommands, ExportWhatWasChosen) {
  fillLibraries();
  struct {
    Command command;
    size_t row;
    const char* proposed;
    const char* file;
    std::vector<std::string> parts;  // of the file, in their order
    bool isOpened;
  } const rows[] = {
      {Command::exportGpx, 0, "a_b.gpx", "1.gpx", {"a/b", "<number>\r\n1\r\n"}, false},
      {Command::exportGpx, 1, "", "2.gpx", {"<wpt", "Camp", "Ride", "<number>\r\n0\r\n"}, false},
      {Command::exportGpx, 2, "Ride.gpx", "3.gpx", {"<trk>", "Ride"}, false},
      {Command::exportGpx, 3, "Camp.gpx", "4.gpx", {"<wpt lat=\"48.100000\""}, false},
      {Command::exportKml, 0, "a_b.kml", "1.kml", {"11.250000,48.000000,"}, true},
      {Command::exportKml, 1, "", "2.kml", {"Camp", "11.5000000,48.0000000,"}, true},
      {Command::exportKml, 2, "Ride.kml", "3.kmz", {"PK", "doc.kml", "icon1.png"}, true},
      {Command::exportKml, 3, "Camp.kml", "4.kml", {"Camp", "11.500000,48.100000,"}, true},
      {Command::exportLoc, 0, "", "1.loc", {"id=\"WP 1\""}, true},
      {Command::exportLoc, 1, "Camp.loc", "2.loc", {"id=\"Camp\""}, true},
  };
  for (const auto& row : rows) {
    window.openedDocuments.clear();
    window.chosenRow = row.row;
    window.chosenFile = world.folder / row.file;
    runCommand(app, row.command);
    EXPECT_EQ(window.choices.back().name, row.proposed) << row.file;
    const std::string written = world.folder.read(row.file);
    size_t at = 0;
    for (const std::string& part : row.parts) {
      at = written.find(part, at);
      EXPECT_NE(at, written.npos) << row.file << ": " << part;
    }
    EXPECT_EQ(window.openedDocuments.size(), row.isOpened ? 1U : 0U) << row.file;
    EXPECT_EQ(currentNotice(app), "Exported to " + window.chosenFile);
  }
  window.answer = true;
  runCommand(app, Command::exportTrackFiles);
  EXPECT_TRUE(world.folder.has("VGPS Tracks/Ride.XML"));
  EXPECT_EQ(currentNotice(app), "Tracks exported: 1");
}

TEST_F(ExchangeCommands, AnExportThatDoesNotComeToAnEndWritesNothing) {
  runCommand(app, Command::exportGpx);
  EXPECT_EQ(currentNotice(app), "There is nothing to export yet.");
  fillLibraries();
  runCommand(app, Command::exportGpx);  // no row was chosen
  EXPECT_TRUE(window.choices.empty());
  window.chosenRow = 1;
  runCommand(app, Command::exportGpx);  // no file
  window.chosenFile = world.folder / "all.gpx";
  window.givesUp = true;
  runCommand(app, Command::exportGpx);
  EXPECT_TRUE(window.errors.empty());
  window.givesUp = false;
  world.diskWorks = false;
  runCommand(app, Command::exportGpx);
  ASSERT_EQ(window.errors.size(), 1U);
  EXPECT_TRUE(window.errors[0].starts_with("Cannot write ")) << window.errors[0];
  EXPECT_FALSE(world.folder.has("all.gpx"));
}

TEST_F(ExchangeCommands, ImportFromFiles) {
  world.folder.write("two.gpx",
                     "<gpx><wpt lat='1' lon='2'/><trk><name>T</name><trkseg><trkpt lat='1' lon='2'>"
                     "<time>2010-07-15T10:00:00Z</time></trkpt></trkseg><trkseg><trkpt lat='3' "
                     "lon='4'/></trkseg></trk></gpx>");
  world.folder.write("one.kml",
                     "<kml><Placemark><name>P</name><Point><coordinates>2,1,0</coordinates></Point>"
                     "</Placemark><Placemark><LineString><coordinates>2,1,0 3,1,0</coordinates>"
                     "</LineString></Placemark></kml>");
  world.folder.write("one.loc",
                     "<loc><waypoint><name id='L'/><coord lat='1' lon='2'/></waypoint></loc>");
  world.folder.write("ride.xml", "<t><p x=\"2\" y=\"1\" z=\"0\"/><p x=\"3\" y=\"1\"/></t>");
  struct {
    Command command;
    const char* file;
    const char* answer;  // to the question with a box
    std::optional<bool> box;
    size_t tracks, waypoints;  // that came
    const char* told;          // the beginning of the last message
  } const rows[] = {
      {Command::importGpx, "two.gpx", "&Yes", {}, 1, 1, "Additional segments not imported: 1"},
      {Command::importGpx, "two.gpx", "&Yes", true, 2, 1, nullptr},
      {Command::importGpx, "two.gpx", "&No", {}, 2, 1, nullptr},  // the mark has stayed
      {Command::importKml, "one.kml", "&Tracks", false, 2, 0, "2 track(s) imported"},
      {Command::importKml, "one.kml", "&Waypoints", {}, 0, 1, "1 waypoint imported."},
      {Command::importKml, "one.kml", "Cancel", {}, 0, 0, nullptr},
      {Command::importKml, "one.loc", "", {}, 0, 1, "1 waypoint imported."},
      {Command::importKml, "ride.xml", "", {}, 1, 0, "1 track imported (2 points)"},
      {Command::importLoc, "one.loc", "", {}, 0, 1, "1 waypoint imported."},
      {Command::importGpx, "none.gpx", "", {}, 0, 0, "Cannot read "},
  };
  window.answer = true;
  window.chosenRows = {0};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.file) + " " + row.answer);
    const size_t tracks = world.savedPoints().size(), waypoints = waypointsNow();
    window.chosenFile = world.folder / row.file;
    window.wanted = row.answer;
    window.markedBox = row.box;
    window.told.clear();
    runCommand(app, row.command);
    EXPECT_EQ(world.savedPoints().size() - tracks, row.tracks);
    EXPECT_EQ(waypointsNow() - waypoints, row.waypoints);
    EXPECT_EQ(window.told.empty(), row.told == nullptr);
    if (row.told == nullptr || window.told.empty()) continue;
    EXPECT_TRUE(window.told[0].starts_with(row.told)) << window.told[0];
  }
  EXPECT_EQ(app.config.other("cfg\\vgps", "imp"), "0") << "what was marked last";
  EXPECT_TRUE(window.errors.empty());
}

TEST_F(ExchangeCommands, ADroppedFileIsImportedAndALogReplayed) {
  const std::string log = world.folder / "ride.nmea";
  world.folder.write("t.gpx", "<gpx><trk><trkseg><trkpt lat='1' lon='2'/></trkseg></trk></gpx>");
  world.folder.write("ride.nmea",
                     "$GPRMC,093015.5,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n");
  world.folder.write("notes.txt", "no sentence");
  window.wanted = "&Yes";
  takeDroppedFile(app, world.folder / "t.gpx");
  EXPECT_EQ(world.savedPoints(), std::vector<uint64_t>{1});
  EXPECT_EQ(currentNotice(app), "Imported: waypoints 0, tracks 1");
  takeDroppedFile(app, world.folder / "notes.txt");
  EXPECT_TRUE(currentNotice(app).starts_with("No simulation data found in "));
  EXPECT_FALSE(app.fix.running);
  takeDroppedFile(app, log);
  EXPECT_TRUE(app.fix.running);
  EXPECT_EQ(app.simulationData, SimulationData::loaded);
  runCommand(app, Command::disconnect);
}

TEST_F(ExchangeCommands, ATrackFolderTakesImportsAndRefusesExportsOfAll) {
  app.settings.trackStorePath = world.folder.path();
  world.folder.write("t.gpx", "<gpx><trk><trkseg><trkpt lat='1' lon='2'/></trkseg></trk></gpx>");
  window.chosenFile = world.folder / "t.gpx";
  window.wanted = "&Yes";
  runCommand(app, Command::importGpx);
  EXPECT_EQ(world.savedPoints(), std::vector<uint64_t>{1});
  window.answer = true;
  runCommand(app, Command::exportTrackFiles);
  EXPECT_EQ(window.told.back(), textOf(Text::notInFolderMode));
}

}  // namespace
}  // namespace vgps
