#include <gtest/gtest.h>

#include "formats/archive.h"
#include "formats/exports.h"
#include "formats/gpx.h"
#include "formats/kml.h"
#include "formats/resources.h"
#include "tests/formats/exchange_world.h"

namespace vgps {
namespace {

class Exports : public ExchangeWorld {
 protected:
  // The file is byte for byte the expected one.
  void expectFile(const std::string& name, ExportResult result) {
    EXPECT_EQ(result, ExportResult::done) << name;
    const std::string written = folder.read(name);
    EXPECT_FALSE(written.empty()) << name;
    EXPECT_EQ(written, expectedFile(name)) << name;
  }
};

TEST_F(Exports, EveryFileIsTheExpectedOne) {
  const Waypoint camp{"Camp \"1\"", 11.516666666666667, 48.117300001780194, 545};
  hooks.answer = Answer::no;
  expectFile("track.gpx", ExportTrackGpx(ride, folder / "track.gpx", hooks, place()));
  hooks.answer = Answer::yes;
  expectFile("route.gpx", ExportTrackGpx(ride, folder / "route.gpx", hooks, place()));
  expectFile("waypoint.gpx", ExportWaypointGpx(camp, folder / "waypoint.gpx", place()));
  EXPECT_EQ(hooks.said, std::vector<std::string>(2,
                                                 "Press YES to export as 'Route'\r\n"
                                                 "Press NO to export as 'Track'\r\n"));
  EXPECT_TRUE(hooks.opened.empty()) << "a GPX file is not opened";
  expectFile("track.kml", ExportTrackKml(ride, folder / "track.kml", false, hooks, place()));
  expectFile("waypoint.kml", ExportWaypointKml(camp, folder / "waypoint.kml", hooks, place()));
  expectFile("waypoint.loc", ExportWaypointLoc(camp, folder / "waypoint.loc", hooks, place()));
  EXPECT_EQ(hooks.opened.size(), 3U);
  fillLibraries();
  hooks.said.clear();
  hooks.answer = Answer::no;
  expectFile("all.gpx", ExportAllGpx(folder / "all.gpx", waypoints, tracks, hooks, place()));
  EXPECT_EQ(hooks.said.size(), 1U) << "one question for all tracks";
  EXPECT_EQ(hooks.opened.size(), 3U);
  expectFile("all.kml", ExportAllKml(folder / "all.kml", waypoints, tracks, hooks, place()));
  expectFile("all.loc", ExportAllLoc(folder / "all.loc", waypoints, hooks, place()));
  EXPECT_EQ(hooks.opened.size(), 5U);
}

TEST_F(Exports, ElementsAreThoseOfTheFile) {
  const auto line = [](XmlElement element, std::initializer_list<const char*> children) {
    std::vector<std::string> names;
    for (const XmlElement child : element.GetChildren()) names.push_back(child.GetElementName());
    EXPECT_EQ(names, std::vector<std::string>(children.begin(), children.end()));
  };
  XmlDocument document = NewGpxDocument(folder / "new.gpx");
  EXPECT_EQ(document.GetRootElement().GetVariable(1).GetValue(), "Vexa GPS");
  const XmlElement waypoint =
      BuildGpxPoint(document, {.name = "x<y", .course = 84.4F}, GpxPointKind::waypoint);
  line(waypoint, {"ele", "name", "time", "speed", "course"});
  EXPECT_EQ(waypoint.GetElementName(), "wpt");
  EXPECT_EQ(waypoint.FindElement("name").GetText(), "x<y");
  EXPECT_EQ(waypoint.FindElement("time").GetText(), "0000-00-00T00:00:00Z");
  EXPECT_EQ(waypoint.FindElement("course").GetText(), "84.400002");
  const XmlElement track = BuildGpxTrack(document, ride, 1, true, 120);
  line(track, {"name", "number", "trkseg"});
  line(BuildGpxTrack(document, ride, 1, false, 120), {"name", "number", "rtept", "rtept"});
  document.GetRootElement().AddElement(waypoint);
  document.GetRootElement().AddElement(track);
  EXPECT_EQ(document.Save(), 1);
  const std::string head = expectedFile("track.gpx").substr(0, 290);
  EXPECT_EQ(folder.read("new.gpx").substr(0, head.size()), head);
}

// Each tests the rules for one number or name.
TEST_F(Exports, Numbers) {
  const auto kml = [](double x, double y, double z) {
    Track track;
    track.points.emplace_back();
    track.points[0].longitude = x;
    track.points[0].latitude = y;
    track.points[0].altitude = z;
    XmlDocument document;
    document.Load(trackKml(track, false), XmlLoadMode::text);
    return document.GetRootElement().Query("? == \"coordinates\"")[0].GetText();
  };
  EXPECT_EQ(kml(11.516666666666667, 48.117300001780194, 545), "11.516667,48.117300,545.000000");
  EXPECT_EQ(kml(179.9999996, -0.0000004, 0), "180.000000,-0.000000,0.000000");
  const struct {
    const char *path, *extension;
  } kExtensions[] = {
      {"C:\\my.photos\\a.jpg", "jpg"}, {"b.tar.PNG", "PNG"}, {"/a.b/photo", "bin"}, {"note.", ""}};
  for (const auto& row : kExtensions) EXPECT_EQ(attachmentExtension(row.path), row.extension);
  EXPECT_EQ(utcFromLocal({.year = 2010, .month = 1, .day = 1, .hour = 1}, 120),
            (DateTime{.year = 2009, .month = 12, .dayOfWeek = 4, .day = 31, .hour = 23}))
      << "summer or winter, the offset is the one of now";
  EXPECT_EQ(utcOffsetMinutes(clock), 120);
}

TEST_F(Exports, AnArchiveHoldsDocumentIconAndReferences) {
  folder.write("a.jpg", "first");
  folder.write("c", "third");
  ride.attachments = {{0, folder / "a.jpg"}, {2, folder / "missing.png"}, {2, folder / "c"}};
  ASSERT_EQ(ExportTrackKmz(ride, folder / "ride.kmz", hooks, place()), ExportResult::done);
  EXPECT_EQ(hooks.opened, std::vector<std::string>{folder / "ride.kmz"});
  const struct {
    const char* name;
    std::string bytes;
  } kEntries[] = {{"doc.kml", expectedFile("references.kml")},
                  {"icon1.png", std::string(kIconKml)},
                  {"ref1.jpg", "first"},
                  {"ref3.bin", "third"}};
  for (const auto& entry : kEntries) {
    ArchiveReader archive(folder / "ride.kmz");
    ASSERT_EQ(archive.openFirst(entry.name), ArchiveReader::State::ready) << entry.name;
    std::string bytes;
    readToEnd(archive.source(), bytes);
    EXPECT_EQ(bytes, entry.bytes) << entry.name;
  }
  EXPECT_EQ(ArchiveReader(folder / "ride.kmz").openFirst("ref2.png"),
            ArchiveReader::State::noEntry);
  EXPECT_EQ(folder.names().size(), 3U) << "the parts of the archive are gone";
  // If the archive cannot be created, they stay.
  EXPECT_EQ(ExportTrackKmz(ride, folder / "none/ride.kmz", hooks, place()),
            ExportResult::notWritten);
  EXPECT_TRUE(folder.has("vgpskml.tmp") && folder.has("vgpskmlicon.tmp"));
}

TEST_F(Exports, AFullDiskLeavesWhatWasThere) {
  fillLibraries();
  const std::string path = folder / "all.gpx";
  for (int steps = 0;; ++steps) {
    ASSERT_LT(steps, 100);
    putFile(path, "what was there");
    const DyingDisk disk(steps);
    ExportPlace dying = place();
    dying.open = disk.disk().open;
    const ExportResult result = ExportAllGpx(path, waypoints, tracks, hooks, dying);
    const ExportResult archive = ExportTrackKmz(ride, path, hooks, dying);
    if (result == ExportResult::done && archive == ExportResult::done) break;
    if (result == ExportResult::done) continue;
    EXPECT_EQ(result, ExportResult::notWritten);
    EXPECT_EQ(archive, ExportResult::notWritten);
    EXPECT_EQ(fileBytes(path), "what was there");
  }
}

TEST_F(Exports, TracksAsFiles) {
  fillLibraries();
  uint32_t written = 0;
  EXPECT_EQ(ExportAllTracksAsFiles(folder.path(), tracks, hooks, written, place()),
            ExportResult::done);
  EXPECT_EQ(written, 2U);
  EXPECT_EQ(hooks.said.back(), "Export all tracks to " + (folder / "VGPS Tracks") + "?");
  EXPECT_TRUE(folder.has("VGPS Tracks/A & B.XML") && folder.has("VGPS Tracks/Empty.XML"));
  hooks.answer = Answer::no;
  EXPECT_EQ(ExportAllTracksAsFiles(folder.path(), tracks, hooks, written, place()),
            ExportResult::cancelled);
  // Tracks that are already files are not exported all at once.
  TrackLibrary files;
  files.open(folder / "VGPS Tracks");
  EXPECT_EQ(ExportAllTracksAsFiles(folder.path(), files, hooks, written, place()),
            ExportResult::refused);
  EXPECT_EQ(ExportAllKml(folder / "x.kml", waypoints, files, hooks, place()),
            ExportResult::refused);
  EXPECT_EQ(ExportAllGpx(folder / "x.gpx", waypoints, files, hooks, place()),
            ExportResult::refused);
  EXPECT_EQ(hooks.said.back().substr(0, 45), "This function is not supported when tracks ar");
  EXPECT_FALSE(folder.has("x.kml") || folder.has("x.gpx"));
}

}  // namespace
}  // namespace vgps
