#include <gtest/gtest.h>

#include "base/text.h"
#include "formats/archive.h"
#include "formats/collection.h"
#include "formats/imports.h"
#include "formats/reading.h"
#include "tests/formats/exchange_world.h"
#include "track/track_file.h"

namespace vgps {
namespace {

constexpr const char* kTwoSegments = R"(<?xml version="1.0"?>
<gpx version="1.1" creator="x">
<wpt lat="48.5" lon="11.25"><ele>545</ele><name>Camp</name><time>2010-07-15T10:00:00Z</time></wpt>
<wpt lon="1"/><wpt lat="2" lon="2"/><wpt lat="3" lon="3"></wpt>
<trk><name>Hike</name>
 <trkseg><trkpt lat="48.117300" lon="11.516667"><ele>545.5</ele><time>2010-07-15T10:00:00Z</time>
   <name>p "1"</name><extensions><x:speed>5</x:speed><x:course>84.4</x:course></extensions></trkpt>
  <trkpt lat="48.2" lon="11.6"/></trkseg>
 <trkseg><trkpt lat="48.3" lon="11.7"/><trkpt lat="nan" lon="1"/><trkpt lat="1e999" lon="1"/>
  <trkpt lat="4" lon="400"/></trkseg></trk>
<rte><rtept lat="47" lon="10"/><rtept lat="x" lon="10"/></rte>
</gpx>)";

class Imports : public ExchangeWorld {
 protected:
  ImportTarget target() { return {waypoints, tracks}; }
  std::string file(const std::string& name, std::string_view text) {
    folder.write(name, text);
    return folder / name;
  }
  ImportResult kml(const std::string& name, std::string_view text, bool asWaypoints) {
    return ImportKml(file(name, text), asWaypoints, target(), hooks, {.clock = clock});
  }
  // Points of a library's track, as the document holds them.
  std::string stored(size_t index) {
    Track track;
    EXPECT_EQ(tracks.load(index, 0, track), LibraryResult::done);
    std::string text = track.name + ":";
    for (const TrackPoint& point : track.points) {
      char line[200];
      std::snprintf(line, sizeof line, " %.6f,%.6f,%.1f,%.2f,%.1f,%02u:%02u,%s", point.latitude,
                    point.longitude, point.altitude, point.speedKmh, point.course,
                    unsigned{point.localTime.hour}, unsigned{point.localTime.minute},
                    std::string(pointName(track, point)).c_str());
      text += line;
    }
    return text;
  }
};

TEST_F(Imports, GpxAsItIs) {
  const ImportResult result = ImportGpx(file("a.gpx", kTwoSegments), target(), hooks);
  EXPECT_EQ(hooks.said[0], "Import 4 waypoints from this GPX?");
  EXPECT_EQ(hooks.said[1], "Import 2 tracks from this GPX?");
  ASSERT_EQ(waypoints.waypoints().size(), 4U);
  EXPECT_EQ(waypoints.waypoints()[0].waypoint.name, "Camp");
  EXPECT_EQ(waypoints.waypoints()[0].waypoint.z, 545);
  EXPECT_EQ(waypoints.waypoints()[1].waypoint.y, 0) << "a missing latitude is 0";
  EXPECT_EQ(waypoints.waypoints()[3].waypoint.name, "Wp #4");
  EXPECT_EQ(stored(0),
            "Hike: 48.117300,11.516667,545.5,0.00,0.0,00:00,p \"1\" "
            "48.200000,11.600000,0.0,0.00,0.0,00:00,");
  EXPECT_EQ(stored(1),
            "Trk #2: 47.000000,10.000000,0.0,0.00,0.0,00:00, "
            "0.000000,10.000000,0.0,0.00,0.0,00:00,");
  EXPECT_EQ(result.lines,
            (std::vector<std::string>{
                "Additional segments not imported: 1, with 1 points.", "Times not imported: 2",
                "Speeds not imported: 1", "Courses not imported: 1",
                "Points not imported because their position is not on the earth: 3",
                "Coordinates that are not numbers, read as 0: 1"}));
}

TEST_F(Imports, GpxComplete) {
  const ImportResult result =
      ImportGpx(file("a.gpx", kTwoSegments), target(), hooks, {.complete = true, .clock = clock});
  EXPECT_EQ(result.tracks, 3U);
  EXPECT_EQ(stored(0).substr(0, 59),
            "Hike: 48.117300,11.516667,545.5,18.00,84.4,12:00,p \"1\" 48.2");
  EXPECT_EQ(stored(1), "Hike (2): 48.300000,11.700000,0.0,0.00,0.0,00:00,");
}

TEST_F(Imports, ChosenOnesKeepTheirNumbers) {
  hooks.answer = Answer::no;
  hooks.chosen = {3};
  ImportGpx(file("a.gpx", kTwoSegments), target(), hooks);
  EXPECT_EQ(hooks.said[1], "Choose the waypoints to import: [Waypoint]");
  EXPECT_EQ(hooks.said[3], "Choose the tracks to import: [Track]");
  ASSERT_EQ(waypoints.waypoints().size(), 1U);
  EXPECT_EQ(waypoints.waypoints()[0].waypoint.name, "Wp #4");
  EXPECT_TRUE(tracks.tracks().empty()) << "there is no fourth track";
  EXPECT_EQ(hooks.offered, (std::vector<std::string>{"Hike", "Trk #2"}));
}

TEST_F(Imports, FolderOfTracks) {
  std::filesystem::create_directory(folder / "tracks");
  tracks.open(folder / "tracks");
  ImportGpx(file("a.gpx", kTwoSegments), target(), hooks);
  ImportGpx(file("a.gpx", kTwoSegments), target(), hooks);
  EXPECT_TRUE(folder.has("tracks/Hike-1.XML") && folder.has("tracks/Hike-2.XML"));
  EXPECT_EQ(tracks.tracks().size(), 4U);
}

constexpr const char* kPlaces =
    "<kml><Document><name>Trip</name>"
    "<Placemark><name>A</name><Point><coordinates>11.5,48.1,545</coordinates></Point></Placemark>"
    "<Placemark><name>B</name><Point><coordinates>12,49</coordinates></Point></Placemark>"
    "</Document></kml>";
constexpr const char* kLines =
    "<kml><Document><name>Trip</name>"
    "<Placemark><LineString><coordinates>11.5,48.1,545 12,49\n13,50,1</coordinates></LineString>"
    "</Placemark><Placemark><name>L</name><LineString><coordinates>1,2,3 4,5,6</coordinates>"
    "</LineString></Placemark></Document></kml>";

TEST_F(Imports, KmlPlacesAndLines) {
  hooks.chosen = {0, 1};
  EXPECT_EQ(kml("p.kml", kPlaces, true).message, "2 waypoints imported.");
  EXPECT_EQ(hooks.said[0], "Choose the placemark to import: [Waypoint]");
  hooks.chosen = {1};
  EXPECT_EQ(kml("p.kml", kPlaces, true).message, "1 waypoint imported.");
  EXPECT_EQ(kml("none.kml", "<kml/>", true).message, "0 waypoints imported.");
  EXPECT_EQ(waypoints.waypoints()[1].waypoint.name, "B");
  EXPECT_EQ(kml("p.kml", kPlaces, false).message, "1 transport route imported (2 stations)");
  EXPECT_EQ(stored(0).substr(0, 15), "Trip: 48.100000");
  EXPECT_EQ(kml("l.kml", kLines, false).message, "2 track(s) imported");
  EXPECT_EQ(stored(2),
            "Collection 2: 2.000000,1.000000,3.0,0.00,0.0,00:00, "
            "5.000000,4.000000,6.0,0.00,0.0,00:00,");
  EXPECT_EQ(kml("none.kml", "<kml/>", false).message, "0 track(s) imported");
  const std::string single =
      "<kml><Placemark><LineString><coordinates>1,2 3,4</coordinates>"
      "</LineString></Placemark></kml>";
  EXPECT_EQ(kml("My trip.kml", single, false).message, "1 track imported (2 points)");
  EXPECT_EQ(stored(3).substr(0, 8), "My trip:");
}

TEST_F(Imports, KmlQuestions) {
  const std::string one =
      "<kml><Placemark><name>P</name><Point><coordinates>1,2,3</coordinates>"
      "</Point></Placemark></kml>";
  EXPECT_EQ(kml("1.kml", one, false).message, "1 waypoint imported.");
  EXPECT_EQ(hooks.said[0], "This file has only 1 point.Do you want to create a waypoint instead?");
  EXPECT_EQ(waypoints.waypoints()[0].waypoint.name, "P");
  hooks.answer = Answer::no;
  EXPECT_EQ(kml("1.kml", one, false).message, "1 track imported (1 points)");
  std::string many = "<kml>";
  for (int i = 0; i < 51; ++i) {
    many += "<Placemark><Point><coordinates>1," + std::to_string(i) +
            "</coordinates></Point></Placemark>";
  }
  many += "</kml>";
  hooks.said.clear();
  hooks.answer = Answer::cancel;
  EXPECT_EQ(kml("m.kml", many, true).message, "");
  EXPECT_EQ(hooks.said, std::vector<std::string>{
                            "This file has many points.Do you want to create a track instead?"});
  hooks.answer = Answer::yes;
  EXPECT_EQ(kml("m.kml", many, true).message, "1 transport route imported (51 stations)");
}

TEST_F(Imports, MovingPositionsCountOnlyInACompleteImport) {
  const std::string moving =
      "<kml><Placemark><name>M</name><gx:Track><when>2010-07-15T10:00:00Z</when>"
      "<gx:coord>1 2 3</gx:coord><gx:coord/><gx:coord>4 5 "
      "6</gx:coord></gx:Track></Placemark></kml>";
  EXPECT_EQ(kml("m.kml", moving, false).message,
            "0 track(s) imported\nTracks of moving positions (gx:Track) not imported: 1, with 2 "
            "points.");
  const ImportResult complete =
      ImportKml(folder / "m.kml", false, target(), hooks, {.complete = true, .clock = clock});
  EXPECT_EQ(complete.message, "1 track imported (2 points)");
  EXPECT_EQ(stored(0),
            "M: 2.000000,1.000000,3.0,0.00,0.0,12:00, "
            "5.000000,4.000000,6.0,0.00,0.0,00:00,");
}

TEST_F(Imports, StoppedInTheMiddleNothingIsImported) {
  struct Impatient : ToldHooks {
    bool progress(uint64_t done, uint64_t total) override { return done < total; }
  } impatient;
  const ImportResult result = ImportGpx(file("a.gpx", kTwoSegments), target(), impatient);
  EXPECT_EQ(result.end, ReadingEnd::stopped);
  EXPECT_TRUE(impatient.said.empty() && waypoints.waypoints().empty());
}

TEST_F(Imports, WhatCannotBeReadIsToldAndNothingIsAsked) {
  folder.write("many.zip", "PK\x05\x06");
  const struct {
    const char *name, *text, *message;
  } kRows[] = {
      {"a.xml", "<html><body/></html>",
       "Cannot import this file: it contains \"html\", not GPX, KML, LOC, or a track."},
      {"b.kmz", "PK not an archive", "Cannot read "},
      {"c.kml", "", "Nothing to import was found in "},
      {"d.kml",
       "<kml><Placemark><LineString><coordinates>1,2 3,4</coordinates></LineString></Place",
       "1 track imported (2 points)\nThe file is damaged from line 1, column 76. Only the readable "
       "part was imported."},
  };
  for (const auto& row : kRows) {
    hooks.said.clear();
    const ImportResult result = kml(row.name, row.text, false);
    EXPECT_EQ(result.message.substr(0, std::string(row.message).size()), row.message) << row.name;
    EXPECT_EQ(hooks.said.size(), 1U);
  }
  EXPECT_EQ(ImportGpx(folder / "missing.gpx", target(), hooks).end, ReadingEnd::noFile);
}

TEST_F(Imports, OwnTrackFilesAndOwnExports) {
  ride.points[0].localTime = {};
  ASSERT_TRUE(writeTrackFile(ride, folder / "own.XML", {}));
  const ImportResult own = ImportFile(folder / "own.XML", target(), hooks);
  EXPECT_EQ(own.message, "1 track imported (2 points)");
  EXPECT_EQ(tracks.tracks()[0].name, "own");
  for (const char* name : {"track.gpx", "route.gpx", "track.kml", "all.kml", "all.gpx"}) {
    folder.write(name, expectedFile(name));
    ExchangeCollection file;
    readExchangeFile(folder / name, file);
    ASSERT_FALSE(file.paths.empty()) << name;
    ASSERT_EQ(file.paths[0].segments[0].points.size(), 2U) << name;
    EXPECT_EQ(file.paths[0].segments[0].points[0].longitude, 11.516667);
    EXPECT_EQ(file.paths[0].segments[0].points[1].altitude, -3.25);
  }
  ExchangeCollection gpx;
  readExchangeFile(folder / "track.gpx", gpx);
  EXPECT_NEAR(gpx.paths[0].segments[0].points[0].speed, 41.48 / 3.6, 1e-5)
      << "our own 1.0 files hold km/h";
}

// A file that is cut gives the front of what the whole one holds, never another number.
TEST_F(Imports, CutAnywhere) {
  const std::string text = std::string("\xEF\xBB\xBF") + kTwoSegments;
  const auto places = [&, this](std::string_view bytes) {
    folder.write("cut.gpx", bytes);
    ExchangeCollection file;
    const ReadingNotes notes = readExchangeFile(folder / "cut.gpx", file);
    std::vector<std::array<double, 2>> all;
    for (const CollectedWaypoint& waypoint : file.waypoints) {
      all.push_back({waypoint.point.longitude, waypoint.point.latitude});
    }
    for (const CollectedPath& path : file.paths) {
      for (const CollectedSegment& segment : path.segments) {
        for (const CollectedPoint& point : segment.points) {
          all.push_back({point.longitude, point.latitude});
          EXPECT_TRUE(point.altitude == 0 || point.altitude == 545.5);
        }
      }
    }
    EXPECT_TRUE(bytes.size() == text.size() || notes.end == ReadingEnd::damaged ||
                notes.end == ReadingEnd::empty || notes.root.empty())
        << bytes.size();
    return all;
  };
  const auto whole = places(text);
  ASSERT_EQ(whole.size(), 9U);
  for (size_t length = 0; length < text.size(); ++length) {
    const auto cut = places(std::string_view(text).substr(0, length));
    ASSERT_LE(cut.size(), whole.size());
    EXPECT_TRUE(std::equal(cut.begin(), cut.end(), whole.begin())) << length;
  }
}

TEST_F(Imports, LettersOfEveryEncoding) {
  const auto name = [this](std::string_view bytes) {
    folder.write("e.gpx", bytes);
    ExchangeCollection file;
    const ReadingNotes notes = readExchangeFile(folder / "e.gpx", file);
    if (file.waypoints.empty()) return std::string("nothing");
    return std::string(file.nameOf(file.waypoints[0].point)) + notes.unknownEncoding;
  };
  const auto gpx = [](std::string_view declaration, std::string_view letters) {
    return std::string(declaration) + "<g:gpx xmlns:g='x'><g:wpt lat = '1' lon\n=\"2\"><g:name\n>" +
           std::string(letters) + "</g:name></g:wpt></g:gpx>";
  };
  const auto wide = [](std::string_view text, bool big, bool mark) {
    std::string out = mark ? big ? "\xFE\xFF" : "\xFF\xFE" : "";
    for (const char16_t unit : utf16FromUtf8(text)) {
      const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
      out += big ? high : low;
      out += big ? low : high;
    }
    return out;
  };
  constexpr std::string_view kLatin = "<?xml version='1.0' encoding='ISO-8859-1'?>";
  EXPECT_EQ(name(gpx("", "R\xC3\xB6mer")), "Römer");
  EXPECT_EQ(name(gpx(kLatin, "R\xF6mer \x80")), "Römer €");
  EXPECT_EQ(name(gpx(kLatin, "R\xC3\xB6mer")), "Römer") << "says Latin-1 and holds UTF-8";
  EXPECT_EQ(name(gpx("", "R\xF6mer")), "Römer") << "says nothing and holds Latin-1";
  EXPECT_EQ(name(gpx("<?xml version='1.0' encoding='koi8-r'?>", "\xF6")), "ökoi8-r");
  EXPECT_EQ(name(gpx("", " a &lt;&#66;&amp; <![CDATA[<c> ]]><!-- no -->d ")), "a <B& <c>d");
  for (const bool big : {false, true}) {
    EXPECT_EQ(name(wide(gpx("", "Römer 😀"), big, true)), "Römer 😀");
    EXPECT_EQ(name(wide(gpx("", "Römer"), big, false)), "Römer");
  }
}

TEST_F(Imports, ArchivesThatAreTooLargeOrPointElsewhere) {
  const auto pack = [this](const std::string& entry, uint64_t size, std::string_view front) {
    OutputFile out(folder / "a.kmz");
    ArchiveWriter archive(out);
    uint64_t left = size;
    EXPECT_TRUE(archive.add(entry,
                            [&](char* to, size_t room) {
                              const auto count =
                                  static_cast<size_t>(std::min<uint64_t>(room, left));
                              std::fill_n(to, count, ' ');
                              if (left == size) front.copy(to, front.size());
                              left -= count;
                              return count;
                            },
                            {.year = 2010, .month = 1, .day = 1}));
    EXPECT_TRUE(archive.finish() && out.finish());
    ExchangeCollection file;
    return readExchangeFile(folder / "a.kmz", file).end;
  };
  EXPECT_EQ(pack("../../doc.KML", 100, "<kml/>"), ReadingEnd::whole);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"a.kmz"}) << "nothing is unpacked";
  // What the directory says of the size: too much of it, or less than there is.
  constexpr size_t kSizeInDirectory = 24;
  const auto saying = [this](std::string_view size) {
    std::string bytes = folder.read("a.kmz");
    const size_t directory = bytes.find("PK\x01\x02");
    EXPECT_NE(directory, std::string::npos);
    bytes.replace(directory + kSizeInDirectory, size.size(), size);
    folder.write("a.kmz", bytes);
    ExchangeCollection file;
    return readExchangeFile(folder / "a.kmz", file).end;
  };
  EXPECT_EQ(saying({"\x01\0\0\x40", 4}), ReadingEnd::tooLarge);
  EXPECT_NE(saying({"\x03\0\0\0", 4}), ReadingEnd::whole);
}

}  // namespace
}  // namespace vgps
