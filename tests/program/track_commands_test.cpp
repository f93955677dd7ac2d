// `vgps record` with a log.
#include <algorithm>
#include <filesystem>

#include "tests/program/file_world.h"
#include "tests/program/program.h"

namespace vgps {
namespace {

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
      {{"record", "--replay", empty, "-o", out}, empty + " is not a log"},
      {{"record", "--replay", nowhere, "-o", out},
       "no fix in " + nowhere + " passed the recording filter"},
      {{"record", "--replay", path("none"), "-o", out}, "cannot read " + path("none")},
      {{"record", "--replay", log, "-o", path("no/folder.XML")},
       "cannot write " + path("no/folder.XML")},
      {{"record", "--replay", log, "-o", out, "--settings", path("none.xml")},
       "settings file not found: " + path("none.xml")},
      {{"record", "--replay", log, "-o", out, "--settings", log}, log + " is not a settings file"},
      {{"record", "--replay", nowhere, "-o", nowhere}, "the track file must not overwrite the log"},
      {{"record", "-o", out}, "specify --port DEV, --simulate, or --replay LOG"},
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

TEST_F(TrackCommands, RecordsTheSimulationLive) {
  const std::string track = path("live.xml");
  Program program({"record", "--simulate", "-o", track});
  program.readUntil([] { return false; }, 3500);  // so many seconds of the walk
  program.signal(SIGINT);
  EXPECT_EQ(program.finish(), 0) << program.errors;
  EXPECT_NE(program.output.find(track + ": "), std::string::npos) << program.output;
  EXPECT_FALSE(std::filesystem::exists(track + ".journal")) << "the track is written";
  EXPECT_EQ(runProgram({"info", track}).status, 0);
  EXPECT_NE(oneLineError({"record", "-o", track}).find("--port DEV"), std::string::npos);
}

TEST_F(TrackCommands, InfoOfALibrary) {
  const std::string library =
      write("tracks.xml",
            "<root><tracks><t n=\"A\" start=\"2010-07-05T07:03:04Z\"><p x=\"1\" y=\"2\" z=\"0\" "
            "unknown=\"z\"/></t><t><p x=\"1\" y=\"2\" z=\"3\"/></t></tracks></root>");
  const nlohmann::json all = nlohmann::json::parse(runProgram({"info", library, "--json"}).output);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0]["startUtc"], "2010-07-05T07:03:04Z");
  EXPECT_TRUE(all[0]["climb"].is_null());
  EXPECT_TRUE(all[0]["first"]["altitude"].is_null());
  EXPECT_EQ(all[1]["first"]["altitude"], 3);
  for (const char* which : {"2", "Track 2"}) {
    const nlohmann::json one =
        nlohmann::json::parse(runProgram({"info", library, "--track", which, "--json"}).output);
    EXPECT_EQ(one["name"], "Track 2");
  }
  EXPECT_NE(oneLineError({"info", library, "--track", "B"}).find("no track B"), std::string::npos);
}

}  // namespace
}  // namespace vgps
