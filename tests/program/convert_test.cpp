// `vgps convert`.
#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "tests/program/file_world.h"
#include "tests/program/program.h"
#include "tests/xml/shared_data.h"

namespace vgps {
namespace {

using Words = std::vector<std::string>;

std::string answer(const std::string& name) {
  return std::string(sourceFolder()) + "/tests/answers/exchange/" + name;
}

class Convert : public FileWorld {
 protected:
  Finished convert(Words words) {
    words.insert(words.begin(), "convert");
    return runProgram(words);
  }
  void expectFile(const std::string& name, Words words, const std::string& errors) {
    words.insert(words.end(), {"-o", path(name), "--report"});
    const Finished run = convert(words);
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.errors, errors) << name;
    EXPECT_EQ(read(name), fileBytes(answer(name))) << name;
  }
  static bool has(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null").c_str()) == 0;
  }
  int shell(const std::string& command) {
    return std::system(("cd '" + folder_.path() + "' && " + command).c_str());
  }
  // The positions of a CSV file of ours or of another program's, in the order of its lines.
  std::vector<std::string> lines(const std::string& name) {
    std::istringstream in(read(name));
    std::vector<std::string> all;
    for (std::string line; std::getline(in, line);) all.push_back(line);
    return all;
  }
};

TEST_F(Convert, EveryFormatIsTheExpectedOne) {
  const std::string in = answer("source.gpx");
  const std::string hold = "vgps: the target cannot hold: ";
  const std::string nowhere = hold + "1 points at 0,0\n";
  const std::string joined = hold + "2 segment borders (the segments were joined)\n";
  const std::string routes = hold + "1 the difference between routes and tracks\n";
  expectFile("convert11.gpx", {in}, nowhere);
  expectFile("convert10.gpx", {in, "--gpx", "1.0"}, joined + nowhere);
  expectFile("convert.kml", {in},
             hold + "1 names of points\n" + hold + "2 times\n" + hold + "1 speeds\n" + hold +
                 "1 courses\n" + joined + routes + nowhere);
  expectFile("convert.loc", {in},
             hold + "2 tracks and routes\n" + hold + "6 points of tracks and routes\n" + hold +
                 "1 altitudes\n");
  expectFile(
      "convert.geojson", {in},
      hold + "1 names of points\n" + hold + "1 speeds\n" + hold + "1 courses\n" + routes + nowhere);
  expectFile("convert.csv", {in}, hold + "2 names of tracks\n" + joined + routes + nowhere);
  EXPECT_EQ(folder_.names().size(), 6U);
}

TEST_F(Convert, ThereAndBackIsTheSame) {
  const Words formats = {"geojson", "csv", "kml", "kmz", "gpx"};
  convert({answer("source.gpx"), "-o", path("a.csv")});
  for (const std::string& format : formats) {
    EXPECT_EQ(convert({answer("source.gpx"), "-o", path("b." + format)}).status, 0);
    EXPECT_EQ(convert({path("b." + format), "-o", path("c.csv")}).status, 0);
    // Each line begins with the position and the height.
    for (const std::string& line : lines("a.csv")) {
      const std::string place = line.substr(0, line.find(',', line.find(',') + 1));
      EXPECT_NE(read("c.csv").find(place), std::string::npos) << format << ": " << place;
    }
  }
}

TEST_F(Convert, WhatOneAsksFor) {
  const std::string in = answer("source.gpx");
  EXPECT_EQ(convert({in, "-o", path("w.csv"), "--as", "waypoints"}).output,
            path("w.csv") + ": waypoints: 7, tracks and routes: 0, points: 0\n");
  EXPECT_EQ(convert({in, "-o", path("t.kml"), "--as", "track", "--name", "N"}).status, 0);
  EXPECT_NE(read("t.kml").find("N (3)"), std::string::npos);
  const Finished stream = convert({in, "-o", "-", "--to", "geojson"});
  EXPECT_EQ(stream.output, fileBytes(answer("convert.geojson")));
  const Finished sorted = convert({in, "-o", "-", "--to", "gpx"});
  EXPECT_EQ(sorted.output, fileBytes(answer("convert11.gpx")));
  // One track in a track file; several in a folder, or joined.
  EXPECT_EQ(convert({in, "-o", path("t.xml")}).status, 1);
  EXPECT_EQ(convert({in, "-o", path("t.xml"), "--join"}).output, path("t.xml") + ": 5 points\n");
  std::filesystem::create_directory(path("folder"));
  EXPECT_EQ(convert({in, "-o", path("folder")}).status, 0);
  EXPECT_TRUE(folder_.has("folder/Way.XML") && folder_.has("folder/Ride & _walk_.XML"));
  const std::string log = std::string(sourceFolder()) + "/tests/logs/ride.nmea";
  EXPECT_EQ(convert({log, "-o", path("log.gpx")}).output,
            path("log.gpx") + ": waypoints: 0, tracks and routes: 1, points: 5\n");
  EXPECT_EQ(convert({log, "-o", path("log.gpx"), "--all-points"}).output,
            path("log.gpx") + ": waypoints: 0, tracks and routes: 1, points: 9\n")
      << "of ten fixes one lies at 0,0";
}

TEST_F(Convert, WhatGoesWrongIsOneLine) {
  write("damaged.gpx", "<gpx><wpt lat='1' lon='2'/><wpt lat='3' lon='4'/><trk");
  write("page.gpx", "<html/>");
  write("kept.gpx", "what was there");
  const std::string in = answer("source.gpx");
  const std::vector<Words> kWrong = {{path("none.gpx"), "-o", path("kept.gpx")},
                                     {path("page.gpx"), "-o", path("kept.gpx")},
                                     {in, "-o", path("a.doc")},
                                     {in, "-o", in},
                                     {in, "-o", path("none/a.gpx")},
                                     {in, "-o", "-", "--to", "kmz"}};
  for (const Words& words : kWrong) {
    const Finished run = convert(words);
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(isOneLine(run.errors)) << run.errors;
    EXPECT_EQ(read("kept.gpx"), "what was there");
  }
  const Finished damaged = convert({path("damaged.gpx"), "-o", path("d.csv")});
  EXPECT_EQ(damaged.status, 0);
  EXPECT_EQ(damaged.errors, "vgps: " + path("damaged.gpx") +
                                ": damaged from line 1, column 50; what could be read was "
                                "converted\n");
  EXPECT_NE(damaged.output.find("waypoints: 2"), std::string::npos);
}

TEST_F(Convert, OtherProgramsReadTheSamePoints) {
  convert({answer("source.gpx"), "-o", path("out.gpx")});
  convert({answer("source.gpx"), "-o", path("out.kml")});
  if (has("xmllint")) {
    EXPECT_EQ(shell("xmllint --nonet --noout --schema '" + answer("written-gpx11.xsd") +
                    "' out.gpx 2>xmllint.txt"),
              0)
        << read("xmllint.txt");
  }
  if (has("gpsbabel")) {
    for (const char* format : {"gpx", "kml"}) {
      ASSERT_EQ(shell(std::string("gpsbabel -w -r -t -i ") + format + " -f out." + format +
                      " -o gpx -F again.gpx"),
                0);
      EXPECT_NE(convert({path("again.gpx"), "-o", "-", "--to", "csv"})
                    .output.find("48.1173000,11.5166670"),
                std::string::npos);
      EXPECT_EQ(convert({path("again.gpx"), "-o", path("again.csv"), "--as", "waypoints"}).output,
                path("again.csv") + ": waypoints: 6, tracks and routes: 0, points: 0\n");
    }
  }
  if (has("ogr2ogr")) {
    ASSERT_EQ(shell("ogr2ogr -f CSV ogr.csv out.gpx track_points -lco GEOMETRY=AS_XY"), 0);
    EXPECT_EQ(lines("ogr.csv").size(), 5U);
  }
  if (!has("xmllint") || !has("gpsbabel") || !has("ogr2ogr")) {
    GTEST_SKIP() << "xmllint, gpsbabel or ogr2ogr is not installed";
  }
}

}  // namespace
}  // namespace vgps
