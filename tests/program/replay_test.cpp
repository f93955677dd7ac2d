// `vgps replay` on recorded logs.
#include <cmath>
#include <filesystem>
#include <limits>

#include "tests/fakes/test_folder.h"
#include "tests/platform/posix/pty.h"
#include "tests/program/program.h"

namespace vgps {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

json replayed(const std::string& path, std::vector<std::string> more = {}) {
  std::vector<std::string> words = {"replay", "--json", path};
  words.insert(words.end(), more.begin(), more.end());
  const Finished run = runProgram(words);
  json state = json::parse(run.output, nullptr, false);
  EXPECT_FALSE(state.is_discarded()) << path;
  const bool isLog = state["sentences"]["total"] != 0 || state["sentences"]["binary"] != 0;
  EXPECT_EQ(run.status, isLog ? 0 : 1) << path << ": " << run.errors;
  EXPECT_EQ(run.errors.empty(), isLog) << run.errors;
  return state;
}

// The log to which an expected answer belongs, empty when it is not here.
std::string logOf(const fs::path& answer) {
  const std::string name = answer.stem().string();
  for (const std::string& folder : {sourcePath("tests/logs"), dataFolder()}) {
    if (fs::exists(folder + "/" + name)) return folder + "/" + name;
  }
  return {};
}

int compareAnswers(bool own) {
  int compared = 0;
  for (const auto& entry : fs::directory_iterator(sourcePath("tests/answers"))) {
    const std::string log = logOf(entry.path());
    if (log.empty() || log.starts_with(sourcePath("tests/logs")) != own) continue;
    std::ifstream file(entry.path());
    const json difference = json::diff(json::parse(file), replayed(log));
    EXPECT_TRUE(difference.empty()) << log << "\n" << difference.dump(1);
    ++compared;
  }
  return compared;
}

TEST(Replay, OwnLogsLeadToTheExpectedAnswers) { EXPECT_EQ(compareAnswers(true), 7); }

TEST(Replay, RecordedLogsLeadToTheExpectedAnswers) {
  SKIP_WITHOUT_DATA();
  EXPECT_EQ(compareAnswers(false), 26);
}

// What a line counter that knows nothing of this program finds in the text logs. Counts are of
// lines whose first field is $GPRMC and so on, checksums of lines that begin with "$". NAN where
// the last position of the log is no valid one of RMC or GGA.
struct Facts {
  const char* log;
  int lines, rmc, gga, gsa, gsv, right, wrong, absent;
  double knots;  // the greatest speed of all RMC
  double latitude, longitude;
};

constexpr Facts kFacts[] = {
    {"gpsd-tomtom-mk2.nmea", 66, 27, 4, 28, 2, 65, 0, 0, 3.1865, NAN, NAN},
    {"gpsd-et-332.nmea", 141, 19, 19, 19, 12, 106, 0, 1, 0.24, 39.678308, -75.748933},
    {"gpsd-garmin48.nmea", 92, 7, 7, 7, 22, 91, 0, 1, 0, -45.457633, 167.152750},
    {"gpsd-garmin-mobile10.nmea", 86, 14, 14, 14, 42, 84, 0, 0, 2.19, 41.726850, -83.634803},
    {"gpsd-tn200-void-360.nmea", 66, 9, 9, 9, 12, 66, 0, 0, 0, NAN, NAN},
    {"gpsd-telit-he910-coldstart.nmea", 1558, 224, 224, 224, 438, 1558, 0, 0, 0.3, 50.840210,
     4.347047},
    {"gpsd-ublox5-nofix.nmea", 63, 9, 9, 9, 9, 63, 0, 0, 0, NAN, NAN},
    {"dotmorten-trimble-r2.nmea", 544, 0, 0, 0, 68, 544, 0, 0, 0, 34.057835, -117.196822},
    {"gpsd-telit-pls83-w.nmea", 450, 10, 10, 0, 27, 225, 0, 0, 0, 43.553169, 1.460306},
    {"gpsd-gp320fw-coldboot.nmea", 134, 17, 15, 21, 38, 86, 41, 5, 0.1, NAN, NAN},
    {"gpsd-rst39-10hz.nmea", 152, 4, 40, 0, 0, 152, 0, 0, 9.609, 42.095642, -88.033832},
    {"gpsd-rtk-10hz.nmea", 244, 72, 72, 0, 0, 244, 0, 0, 3.252, 41.575030, -93.750598},
    {"gpsd-atlas-beidou-bd.nmea", 80, 0, 0, 10, 12, 78, 0, 0, 0, 31.248238, 121.587407},
    {"gpsd-isync-collisions.nmea", 138, 12, 12, 12, 42, 133, 1, 0, 0.051, 41.897664, -87.643945},
    {"gpsd-myguide-3100.nmea", 100, 13, 13, 13, 61, 100, 0, 0, 1.157, 56.216607, -3.111923},
    {"gpsd-zeus9-marine.nmea", 4999, 146, 138, 144, 436, 4999, 0, 0, 6.7, 52.847893, 5.308492},
    {"gpsd-saab-r4-ais.nmea", 123, 12, 12, 0, 0, 108, 0, 0, 0.5, 50.213210, -8.114660},
    {"gpsd-april6-2019.nmea", 3, 3, 0, 0, 0, 3, 0, 0, 0.16, 48.483342, 0.366693},
    {"gpsd-hp58534a-nochecksum.nmea", 13, 0, 2, 0, 6, 0, 0, 13, 0, -33.817228, 18.732137},
    {"signalk-gps-20min.nmea", 5748, 1201, 1202, 1201, 943, 5748, 0, 0, 3.36, 52.371903, 4.909742},
    {"signalk-merrimac-marine-ais.nmea", 6324, 142, 142, 142, 426, 4817, 0, 0, 0.1, 53.180268,
     5.428432},
    {"gpsbabel-4hz-fractions.nmea", 125, 30, 30, 29, 5, 125, 0, 0, 0.52, 53.556728, 9.865575},
    {"pynmeagps-nmea4-mixed.nmea", 57, 0, 0, 0, 3, 57, 0, 0, 0, NAN, NAN}};

TEST(Replay, AgreesWithTheFactsOfTheRecordedLogs) {
  SKIP_WITHOUT_DATA();
  for (const Facts& facts : kFacts) {
    // The counts are of "GP", so other talkers are not translated here.
    const json literal = replayed(dataFolder() + "/" + facts.log, {"--talkers", "never"});
    const json& sentences = literal["sentences"];
    const auto count = [&](const char* kind) { return sentences[kind].get<int>(); };
    EXPECT_EQ(count("rmc"), facts.rmc) << facts.log;
    EXPECT_EQ(count("gga"), facts.gga) << facts.log;
    EXPECT_EQ(count("gsa"), facts.gsa) << facts.log;
    EXPECT_EQ(count("gsv"), facts.gsv) << facts.log;
    EXPECT_EQ(count("total") + count("rejected"), facts.lines) << facts.log;
    EXPECT_EQ(count("checksumRight"), facts.right) << facts.log;
    EXPECT_EQ(count("checksumWrong"), facts.wrong) << facts.log;
    EXPECT_EQ(count("checksumAbsent"), facts.absent) << facts.log;
    const json& most = literal["maxSpeed"];
    EXPECT_NEAR(most.is_null() ? 0 : most.get<double>(), facts.knots * 1.852, 1e-5) << facts.log;
    const json fix = replayed(dataFolder() + "/" + facts.log)["fix"];
    if (std::isnan(facts.latitude)) continue;
    // The facts have six decimals, and minutes are read as 32-bit floats.
    EXPECT_NEAR(fix["latitude"].get<double>(), facts.latitude, 7e-7) << facts.log;
    EXPECT_NEAR(fix["longitude"].get<double>(), facts.longitude, 7e-7) << facts.log;
  }
}

TEST(Replay, LinesTellWhatBecameOfEach) {
  const Finished run =
      runProgram({"replay", "--lines", sourcePath("tests/logs/text-and-binary.log")});
  EXPECT_EQ(run.status, 0);
  std::istringstream lines(run.output);
  std::vector<std::string> found;
  for (std::string line; std::getline(lines, line);) {
    const json object = json::parse(line, nullptr, false);
    ASSERT_TRUE(object.is_object()) << line;
    EXPECT_TRUE(object["fix"].contains("utcTime"));
    found.push_back(object["line"].get<std::string>().substr(0, 20) + " " + object["kind"].dump() +
                    " " + object["returned"].dump());
  }
  const std::vector<std::string> expected = {"$GPGGA,080000,4807.0 2 true",
                                             "Sirf msg (29): 57 by 0 true",
                                             "Sirf msg (2): 7 byte 0 true",
                                             "$GPRMC,080001,A,4807 1 true",
                                             " 0 false",
                                             "Sirf msg (0): 0 byte 0 true",
                                             "Sirf msg (0): 512 by 0 true",
                                             "$GPGGA,080002,4807.5 2 true",
                                             "\uFFFDno message 0 false",
                                             "Sirf msg (4): 1 byte 0 true",
                                             " 0 false"};
  EXPECT_EQ(found, expected);
}

TEST(Replay, NumbersWithoutLimitStayNumbers) {
  const TestFolder folder;
  const std::string path = folder / "log";
  std::ofstream(path) << "$GPRMC,123519,A,4807.038,N,01131.000,E,1e400,-1e400,230394,003.1,W\n";
  const json state = replayed(path);
  constexpr double kGreatest = std::numeric_limits<double>::max();
  EXPECT_EQ(state["fix"]["speedKnots"], kGreatest);
  EXPECT_EQ(state["fix"]["speedKmh"], kGreatest);
  EXPECT_EQ(state["fix"]["course"], -kGreatest);
  EXPECT_EQ(state["maxSpeed"], kGreatest);
}

TEST(Replay, TalkersAreReadAsAsked) {
  const std::string log = sourcePath("tests/logs/talkers.nmea");
  const struct {
    const char* word;
    int rmc;
  } rows[] = {{"never", 3}, {"auto", 7}, {"always", 16}};
  for (const auto& row : rows) {
    EXPECT_EQ(replayed(log, {"--talkers", row.word})["sentences"]["rmc"], row.rmc) << row.word;
  }
}

TEST(Replay, ForAPersonTheStateIsInWords) {
  const Finished run = runProgram({"replay", sourcePath("tests/logs/line-ends.nmea")});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("\nPosition    48.118967 N  11.518333 E\n"), std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find("\nUTC         2024-03-23 10:15:04.000\n"), std::string::npos);
}

TEST(Program, OneClearLineWhenSomethingIsWrong) {
  const TestFolder folder;
  const struct {
    std::vector<std::string> arguments;
    std::string says;
  } rows[] = {
      {{"replay", "/there/is/no/log"}, "cannot read /there/is/no/log: No such file or directory"},
      {{"replay", folder.path()}, "cannot read " + folder.path() + ": Is a directory"},
      {{"replay"}, "FILE is required"},
      {{"replay", "x", "--talkers", "some"}, "some is not one of auto, always, never"},
      {{"monitor"}, "use --port DEV or --simulate; available ports: "},
      {{"monitor", "--port", "x", "--speed", "fast"}, "fast is not a number greater than 0"},
      {{"monitor", "--simulate", "--log", "/no/folder/log"},
       "cannot write the log file /no/folder/log"},
      {{},
       "no command given; choose monitor, replay, ports, record, info, track, geo, recover, "
       "settings or "
       "xml"},
      {{"fly"}, "fly"},
  };
  for (const auto& row : rows) {
    const Finished run = runProgram(row.arguments);
    EXPECT_EQ(run.status, 1) << row.says;
    EXPECT_EQ(run.output, "") << row.says;
    EXPECT_NE(run.errors.find(row.says), std::string::npos) << run.errors;
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
  }
}

TEST(Program, HelpAndVersion) {
  EXPECT_TRUE(runProgram({"--version"}).output.starts_with("vgps "));
  for (const char* command : {"record", "info", "track", "geo"}) {
    const Finished help = runProgram({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("\nUsage: vgps "), std::string::npos) << command;
  }
  const std::string record = runProgram({"record", "--help"}).output;
  EXPECT_NE(record.find("come from the UTC in the log"), std::string::npos);
  for (const char* command : {"monitor", "replay", "ports"}) {
    const Finished help = runProgram({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("--json"), std::string::npos);
    const bool listens = command != std::string("replay");
    EXPECT_EQ(help.output.find("N (9600)") != std::string::npos, listens) << command;
  }
}

}  // namespace
}  // namespace vgps
