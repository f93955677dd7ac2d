// `vgps record`, `info`, `track` and `geo`.
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tests/program/file_world.h"
#include "tests/program/program.h"

namespace vgps {
namespace {

using nlohmann::json;
using Words = std::vector<std::string>;

std::string oneLineError(const Words& words) {
  const Finished run = runProgram(words);
  EXPECT_EQ(run.status, 1) << run.output;
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
  return run.errors;
}

class TrackCommands : public FileWorld {
 protected:
  std::string write(const std::string& name, const std::string& text) const {
    FileWorld::write(name, text);
    return path(name);
  }
  // A point for each letter, half a minute and 0.001 degrees apart; a capital has a mark.
  std::string writeTrack(const std::string& name, const std::string& letters,
                         const std::string& end = "</t>\r\n") const {
    std::string text = "<t>\r\n";
    for (size_t i = 0; i < letters.size(); ++i) {
      char point[200];
      const bool capital = letters[i] < 'a';
      const int height = letters[i] - (capital ? 'A' : 'a');
      std::snprintf(point, sizeof point,
                    "\t<p x=\"%.6f\" y=\"48.000000\" z=\"%d.000000\" spd=\"13.27\" "
                    "time=\"05-07-2010 09:%02zu:%02zu\" br=\"84.4\"%s/>\r\n",
                    11 + 0.001 * static_cast<double>(i), height, i / 2, i % 2 * 30,
                    capital ? " m=\"1\"" : "");
      text += point;
    }
    return write(name, text + end);
  }
  // The letters of a track file, by their heights.
  std::string letters(const std::string& name) const {
    std::string found;
    std::istringstream lines(read(name));
    for (std::string line; std::getline(lines, line);) {
      const size_t z = line.find("z=\"");
      if (z == std::string::npos) continue;
      const bool capital = line.find(" m=\"1\"") != std::string::npos;
      found += static_cast<char>((capital ? 'A' : 'a') + std::stoi(line.substr(z + 3)));
    }
    return found;
  }
  Words names() const { return folder_.names(); }
  void expectDone(const Words& words) const {
    const Finished run = runProgram(words);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
  }
};

TEST_F(TrackCommands, ALogBecomesTheExpectedTrack) {
  const std::string out = path("ride.XML");
  const Finished run = runProgram({"record", "--replay", sourcePath("tests/logs/ride.nmea"), "-o",
                                   out, "--settings", sourcePath("tests/logs/ride.settings.xml")});
  EXPECT_EQ(run.status, 0) << run.errors;
  EXPECT_EQ(run.output, out + ": 5 points of 10 fixes\n");
  EXPECT_EQ(fileBytes(out), fileBytes(sourcePath("tests/answers/tracks/ride.XML")));
  EXPECT_EQ(names(), Words{"ride.XML"});
}

TEST_F(TrackCommands, RecordingFollowsItsOptions) {
  const std::string log = sourcePath("tests/logs/ride.nmea");
  expectDone({"record", "--replay", log, "-o", path("plain.XML")});
  const std::string plain = read("plain.XML");
  EXPECT_EQ(plain.find("time="), std::string::npos);
  EXPECT_NE(plain.find("<p x=\"11.516667\" y=\"48.116667\" z=\"500.000000\""), std::string::npos);
  const std::string every =
      write("every.xml", "<root><cfg><vgps res=\"3\" rtc=\"1\" smv=\"1\" mnr=\"1\"/></cfg></root>");
  expectDone({"record", "--replay", log, "-o", path("every.XML"), "--settings", every,
              "--utc-offset", "-120"});
  const std::string points = read("every.XML");
  EXPECT_EQ(std::count(points.begin(), points.end(), '\n'), 6) << points;  // each fourth fix
  EXPECT_NE(points.find("time=\"01-01-2025 01:59:58\""), std::string::npos) << points;
}

TEST_F(TrackCommands, NothingIsWrittenOfNothing) {
  const std::string out = path("out.XML");
  const std::string log = sourcePath("tests/logs/ride.nmea");
  const std::string empty = sourcePath("tests/logs/empty.nmea");
  const std::string nowhere = write("nowhere", "$GPGGA,101500,0,N,0,E,1,08,0.9,545,M,46.9,M,,\r\n");
  const std::string settings = write("settings.xml", "<root/>");
  std::filesystem::create_symlink("nowhere", path("link"));
  const struct {
    Words words;
    std::string says;
  } rows[] = {
      {{"record", "--replay", empty, "-o", out}, empty + " contains no fix; no track was written"},
      {{"record", "--replay", nowhere, "-o", out},
       "no fix in " + nowhere + " passed the recording filter"},
      {{"record", "--replay", path("none"), "-o", out}, "cannot read " + path("none")},
      {{"record", "--replay", log, "-o", path("no/folder.XML")},
       "cannot write " + path("no/folder.XML")},
      {{"record", "--replay", log, "-o", out, "--settings", path("none.xml")},
       "settings file not found: " + path("none.xml")},
      {{"record", "--replay", log, "-o", out, "--settings", log}, log + " is not a settings file"},
      {{"record", "--replay", nowhere, "-o", nowhere}, "the track file must not overwrite the log"},
      {{"record", "-o", out}, "give --port DEV, --simulate, or --replay LOG"},
      {{"record", "--replay", nowhere, "-o", path("./nowhere")}, "must not overwrite the log"},
      {{"record", "--replay", path("link"), "-o", nowhere}, "must not overwrite the log"},
      {{"record", "--replay", log, "-o", settings, "--settings", path("./settings.xml")},
       "must not overwrite the settings file"},
      {{"record", "--replay", log, "-o", ""}, "the file name must not be empty"},
      {{"record", "--replay", log, "-o", folder_.path()}, "is a folder or a device"},
  };
  for (const auto& row : rows) {
    const std::string error = oneLineError(row.words);
    EXPECT_NE(error.find(row.says), std::string::npos) << error;
  }
  EXPECT_EQ(names(), (Words{"link", "nowhere", "settings.xml"}));
  EXPECT_EQ(fileBytes(settings), "<root/>");
}

TEST_F(TrackCommands, InfoAsJson) {
  const std::string file = writeTrack("Ride.XML", "abcp");
  const Finished run = runProgram({"info", file, "--json"});
  const json info = json::parse(run.output, nullptr, false);
  ASSERT_TRUE(info.is_object()) << run.errors;
  Words keys;
  for (const auto& item : info.items()) keys.push_back(item.key());
  EXPECT_EQ(keys,
            (Words{"bounds", "climb", "descent", "distance3dKm", "distanceKm", "durationSeconds",
                   "first", "last", "movingSeconds", "name", "points", "startUtc"}));
  EXPECT_EQ(info["points"], 4);
  EXPECT_NEAR(info["distanceKm"].get<double>(), 0.2232, 0.001);
  EXPECT_GT(info["distance3dKm"], info["distanceKm"]);
  EXPECT_EQ(info["durationSeconds"], 90);
  EXPECT_EQ(info["movingSeconds"], 90);
  EXPECT_EQ(info["climb"], 15);
  EXPECT_EQ(info["descent"], 0);
  EXPECT_EQ(info["bounds"], (json{{"west", 11}, {"south", 48}, {"east", 11.003}, {"north", 48}}));
  EXPECT_EQ(info["first"]["time"], "2010-07-05T09:00:00");
  EXPECT_EQ(info["last"]["longitude"], 11.003);
  EXPECT_EQ(info["last"]["altitude"], 15);

  const json none = json::parse(runProgram({"info", write("n.XML", "<t/>"), "--json"}).output);
  EXPECT_EQ(none["points"], 0);
  for (const char* key : {"durationSeconds", "movingSeconds", "bounds", "first", "last"}) {
    EXPECT_TRUE(none[key].is_null()) << key;
  }
}

TEST_F(TrackCommands, InfoForAPerson) {
  const std::string file = writeTrack("Ride.XML", "abcp");
  const Finished run = runProgram({"info", file, "--speed-unit", "knots"});
  for (const char* part :
       {"Track          Ride\n", "Points         4\n",
        "Duration       00:01:30, moving 00:01:30, stopped", "Maximum speed  24.58 km/h\n",
        "climb 15 m, descent 0 m", "Southwest      48.000000,11.000000\n"}) {
    EXPECT_NE(run.output.find(part), std::string::npos) << part << "\n" << run.output;
  }
}

TEST_F(TrackCommands, Edited) {
  const std::string a = writeTrack("a.XML", "aBc");
  const std::string b = writeTrack("b.XML", "def");
  const std::string out = path("out.XML");
  expectDone({"track", "join", a, b, a, "-o", out});
  EXPECT_EQ(letters("out.XML"), "aBcdefaBc");
  expectDone({"track", "reverse", out, "-o", out});
  EXPECT_EQ(letters("out.XML"), "cBafedcBa");
  expectDone({"track", "split", out, "--at", "4", "-o", path("1.XML"), "--second", path("2.XML")});
  EXPECT_EQ(letters("1.XML") + "|" + letters("2.XML"), "cBa|fedcBa");
  const struct {
    Words ends;
    const char* left;
  } rows[] = {
      {{"--from", "2", "--to", "5"}, "bcde"},
      {{"--to", "1"}, "a"},
      {{"--from", "2010-07-05 09:01"}, "cdef"},
      {{"--from", "2", "--to", "2010-07-05T09:01:29"}, "bc"},
  };
  const std::string whole = writeTrack("whole.XML", "abcdef");
  for (const auto& row : rows) {
    Words words = {"track", "trim", whole, "-o", out};
    words.insert(words.end(), row.ends.begin(), row.ends.end());
    expectDone(words);
    EXPECT_EQ(letters("out.XML"), row.left);
  }
  expectDone({"track", "thin", whole, "-o", out});
  EXPECT_EQ(letters("out.XML"), "af");  // a straight way
  expectDone({"track", "thin", a, "-o", out, "--meters", "1000"});
  EXPECT_EQ(letters("out.XML"), "ac");  // crowding takes marks too
  expectDone({"track", "trim", a, "-o", out});
  EXPECT_EQ(fileBytes(out), "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n" +
                                fileBytes(a));  // nothing is lost
}

TEST_F(TrackCommands, ADamagedFileIsToldAndKept) {
  const std::string cut = writeTrack("cut.XML", "abcd", "\t<p x=\"11.5\" y=");
  const std::string bytes = fileBytes(cut);
  const std::string told = "vgps: " + cut + " is damaged: its 4 readable points are used\n";
  Finished run = runProgram({"info", cut});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.errors, told);
  run = runProgram({"track", "reverse", cut, "-o", path("out.XML")});
  EXPECT_EQ(run.errors, told);
  EXPECT_EQ(names(), (Words{"cut.XML", "out.XML"}));  // nothing was overwritten
  // The same file by another way.
  const std::string around =
      path("../" + std::filesystem::path(folder_.path()).filename().string() + "/cut.XML");
  run = runProgram({"track", "reverse", cut, "-o", around});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(run.errors.starts_with(told + "vgps: the damaged file was saved as ")) << run.errors;
  EXPECT_EQ(names(), (Words{"cut.XML", "cut.bad", "out.XML"}));
  EXPECT_EQ(read("cut.bad"), bytes);
  EXPECT_EQ(letters("cut.XML"), "dcba");
}

TEST_F(TrackCommands, BothPartsOfASplitMayReplaceTheWhole) {
  const std::string a = writeTrack("a.XML", "abcd");
  expectDone({"track", "split", a, "--at", "2", "-o", path("1.XML"), "--second", a});
  EXPECT_EQ(letters("1.XML") + "|" + letters("a.XML"), "a|bcd");
  expectDone({"track", "split", a, "--at", "2", "-o", a, "--second", path("2.XML")});
  EXPECT_EQ(letters("a.XML") + "|" + letters("2.XML"), "b|cd");
}

TEST_F(TrackCommands, EditingNeitherInventsNorDropsAttributes) {
  const struct {
    const char* points;
    const char* reversed;
  } rows[] = {
      {R"(<p x="1" y="2" c="0" spd="0.00" br="0.0"/>)",
       R"(<p x="1.000000" y="2.000000" z="0.000000" c="0" spd="0.00" br="0.0"/>)"},
      {R"(<p x="1" y="2"/>)", R"(<p x="1.000000" y="2.000000" z="0.000000"/>)"},
      {R"(<p x="3" y="4" time="05-07-2010 09:00:00"/><p x="1" y="2"/>)",
       R"(<p x="1.000000" y="2.000000" z="0.000000"/>)"},
  };
  for (const auto& row : rows) {
    const std::string file = write("a.XML", std::string("<t>") + row.points + "</t>");
    expectDone({"track", "reverse", file, "-o", file});
    EXPECT_NE(fileBytes(file).find(std::string("<t>\r\n\t") + row.reversed), std::string::npos)
        << fileBytes(file);
  }
}

TEST_F(TrackCommands, WhatCannotBeDone) {
  const std::string a = writeTrack("a.XML", "abc");
  const std::string gpx = write("a.gpx", "<gpx/>");
  const std::string html = write("a.html", "<html><body><p>Good day</p></body></html>");
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  const std::string library = write("tracks.xml", "<root><tracks><t n=\"A\"/></tracks></root>");
  const std::string out = path("out.XML");
  const struct {
    Words words;
    std::string says;
  } rows[] = {
      {{"info", path("none")}, "file not found: " + path("none")},
      {{"info", gpx}, gpx + " is not a track file"},
      {{"track", "reverse", library, "-o", out}, library + " is not a track file"},
      {{"info", a, "--speed-unit", "mach"}, "mach is not one of kmh, knots, mps, mph"},
      {{"track", "join", a, "-o", out}, "FILES"},
      {{"track", "split", a, "--at", "4", "-o", out, "--second", path("2")},
       "cannot be split at point 4; its points are numbered 1 to 3"},
      {{"track", "split", a, "--at", "1", "-o", out, "--second", path("2")}, "cannot be split"},
      {{"track", "split", a, "--at", "2", "-o", out, "--second", out}, "different files"},
      {{"track", "trim", a, "-o", out, "--from", "9"}, "has no point 9; number of points: 3"},
      {{"track", "trim", a, "-o", out, "--from", "3", "--to", "2"}, "lies in that range"},
      {{"track", "trim", a, "-o", out, "--from", "2011-01-01 00:00"}, "lies in that range"},
      {{"track", "trim", a, "-o", out, "--to", "2010-13-45 99:99"}, "is not a point number"},
      {{"track", "trim", a, "-o", out, "--to", "noon"}, "noon is not a point number or"},
      {{"track", "thin", a, "-o", out, "--meters", "-3"}, "-3 is not a number greater than 0"},
      {{"track", "split", a, "--at", "2", "-o", path("./out.XML"), "--second", out},
       "different files"},
      {{"track", "split", a, "--at", "2", "-o", path("no/x"), "--second", a}, "cannot write"},
      {{"track", "split", a, "--at", "2", "-o", path("pipe"), "--second", a}, "is a folder or a"},
      {{"track", "reverse", a, "-o", path("pipe")}, "is a folder or a device"},
      {{"track", "reverse", a, "-o", ""}, "the file name must not be empty"},
      {{"xml", a, "-o", ""}, "the file name must not be empty"},
      {{"track", "thin", a, "-o", out, "--meters", "0.5"}, "a whole number from 1 to 1000000"},
      {{"track", "thin", a, "-o", out, "--meters", "1e300"}, "a whole number from 1 to 1000000"},
      {{"track", "thin", a, "-o", out, "--meters", "3000000000"}, "a whole number from 1"},
      {{"track", "thin", a, "-o", out, "--angle", "1e300"}, "not exceed 180 degrees"},
      {{"track", "reverse", html, "-o", html}, html + " is not a track file"},
      {{"track", "reverse", a}, "-o is required"},
      {{"track"}, "vgps track --help"},
  };
  for (const auto& row : rows) {
    const std::string error = oneLineError(row.words);
    EXPECT_NE(error.find(row.says), std::string::npos) << error;
  }
  EXPECT_EQ(names(), (Words{"a.XML", "a.gpx", "a.html", "pipe", "tracks.xml"}));
  EXPECT_EQ(letters("a.XML"), "abc");
}

TEST(GeoCommands, AnswersAndComplaints) {
  const struct {
    Words words;
    int status;
    const char* says;
  } rows[] = {
      {{"distance", "48.1173,11.516667", "52.52,13.4"}, 0, "509.148183 Km\n"},
      {{"distance", "52.52,13.4", "48.1173,11.516667"}, 0, "505.885274 Km\n"},
      {{"distance", "0,0", "0,1", "--unit", "mi"}, 0, "69.093323 Mi\n"},
      {{"distance", "-.5,-.5", "-.5,-.5", "--unit", "nmi"}, 0, "0.000000 Nmi\n"},
      {{"bearing", "0,0", "0,-1"}, 0, "270.000000 degrees\n"},
      {{"destination", "-33.8568,151.2153", "--course", "-90", "--distance", "0"},
       0,
       "-33.856800,151.215300\n"},
      {{"utm", "-33.8568,151.2153"}, 0, "56H 334900 6252288\n"},
      {{"utm", "-0.5, 10"}, 0, "32M 611276 9944726\n"},
      {{"utm", "84.0001,20"}, 0, "34 488330 9328206\n"},
      {{"utm", "48.1173,11.516666667", "--ellipsoid", "bessel 1841 (nambia)"},
       0,
       "32U 687279 5331929\n"},
      {{"utm", "48.1173,11.516666667", "--ellipsoid", "3"}, 0, "32U 687276 5331857\n"},
      {{"dms", "-33.8568,-74.006"}, 0, "33 51' 24.480''S 74 0' 21.600''W\n"},
      {{"mgrs", "48.1173,11.516667"}, 0, "32U PU 87299 32401\n"},
      {{"mgrs", "48.1173,11.516667", "--digits", "1"}, 0, "32U PU 8 3\n"},
      {{"locator", "48.14666,11.60833"}, 0, "JN58td\n"},
      {{"distance", "90.1,0", "0,0"},
       1,
       "latitude 90.1 is out of range; it must be from -90 to 90"},
      {{"utm", "45,-181"}, 1, "longitude -181 is out of range; it must be from -180 to 180"},
      {{"utm", "45"}, 1, "'45' is not a position; use LAT,LON in decimal degrees"},
      {{"utm", "1,2,3"}, 1, "'1,2,3' is not a position"},
      {{"utm", "4e1,nan"}, 1, "is not a position"},
      {{"mgrs", "-80.5,3"},
       1,
       "the position is outside the grid, which covers latitudes from 80 degrees south to 84 "
       "degrees north"},
      {{"distance", "1,2"}, 1, "POSITIONS"},
      {{"area", "0,-0.5", "0,0.5", "1,0.5", "1,-0.5"}, 0, "1.000 deg^2\n12363"},
      {{"area", "0,0", "1,1"}, 1, "POSITIONS"},
      {{"distance", "1,2", "3,4", "--unit", "yd"}, 1, "yd is not one of km, mi, nmi"},
      {{"utm", "1,2", "--ellipsoid", "24"}, 1, "24 is not an ellipsoid"},
      {{}, 1, "vgps geo --help"},
  };
  for (const auto& row : rows) {
    Words words = {"geo"};
    words.insert(words.end(), row.words.begin(), row.words.end());
    if (row.status == 1) {
      EXPECT_NE(oneLineError(words).find(row.says), std::string::npos) << row.says;
      continue;
    }
    const Finished run = runProgram(words);
    EXPECT_EQ(run.errors, "") << row.says;
    EXPECT_TRUE(run.output.starts_with(row.says)) << run.output << row.says;
  }
}

TEST(GeoCommands, AsJson) {
  const auto answer = [](Words words) {
    words.insert(words.begin(), "geo");
    words.push_back("--json");
    return json::parse(runProgram(words).output, nullptr, false);
  };
  const json distance = answer({"distance", "48.1173,11.516667", "52.52,13.4"});
  EXPECT_NEAR(distance["distance"].get<double>(), 509.1481833889535, 1e-9);
  EXPECT_EQ(distance["unit"], "Km");
  const json utm = answer({"utm", "48.1173,11.516666666666667"});
  EXPECT_EQ(utm["zone"], "32U");
  EXPECT_NEAR(utm["easting"].get<double>(), 687299.57498867845, 1e-6);
  EXPECT_NEAR(utm["northing"].get<double>(), 5332401.204337324, 1e-6);
  EXPECT_EQ(utm["ellipsoid"], "WGS-84");
  EXPECT_EQ(answer({"dms", "48.1173,23.7"}),
            (json{{"latitude", "48 7' 2.279''N"}, {"longitude", "23 42' 0.000''E"}}));
  EXPECT_EQ(answer({"bearing", "0,0", "0,0"})["bearing"], 0);
  EXPECT_EQ(answer({"mgrs", "0,0"})["mgrs"], "31N AA 66021 00000");
}

TEST_F(TrackCommands, RecordsTheSimulationLive) {
  const std::string track = path("live.xml");
  const Finished run = runProgram({"record", "--simulate", "-o", track, "--for", "6"});
  EXPECT_EQ(run.status, 0) << run.errors;
  EXPECT_NE(run.output.find(track + ": "), std::string::npos) << run.output;
  EXPECT_FALSE(std::filesystem::exists(track + ".journal")) << "the track is written";
  EXPECT_EQ(runProgram({"info", track}).status, 0);
  EXPECT_NE(oneLineError({"record", "-o", track}).find("--port DEV"), std::string::npos);
}

TEST_F(TrackCommands, InfoOfALibrary) {
  const std::string library =
      write("tracks.xml",
            "<root><tracks><t n=\"A\" start=\"2010-07-05T07:03:04Z\"><p x=\"1\" y=\"2\" z=\"0\" "
            "unknown=\"z\"/></t><t><p x=\"1\" y=\"2\" z=\"3\"/></t></tracks></root>");
  const json all = json::parse(runProgram({"info", library, "--json"}).output);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0]["startUtc"], "2010-07-05T07:03:04Z");
  EXPECT_TRUE(all[0]["climb"].is_null());
  EXPECT_TRUE(all[0]["first"]["altitude"].is_null());
  EXPECT_EQ(all[1]["first"]["altitude"], 3);
  for (const char* which : {"2", "Track 2"}) {
    const json one = json::parse(runProgram({"info", library, "--track", which, "--json"}).output);
    EXPECT_EQ(one["name"], "Track 2");
  }
  EXPECT_NE(oneLineError({"info", library, "--track", "B"}).find("no track B"), std::string::npos);
}

}  // namespace
}  // namespace vgps
