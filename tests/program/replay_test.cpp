// `vgps replay` on recorded logs.
#include <filesystem>
#include <sstream>

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

TEST(Replay, AgreesWithTheFactsOfTheRecordedLogs) {
  SKIP_WITHOUT_DATA();
  std::ifstream facts(sourcePath("tests/answers/facts.txt"));
  size_t logs = 0;
  for (std::string line; std::getline(facts, line);) {
    if (line.starts_with("#")) continue;
    SCOPED_TRACE(line);
    std::istringstream columns(line);
    std::string log, latitude, longitude;
    int lines = 0, expected = 0;
    double knots = 0;
    columns >> log >> lines;
    const std::string path = dataFolder() + "/" + log;
    // The counts are of "GP", so other talkers are not translated here.
    const json literal = replayed(path, {"--talkers", "never"});
    const json& sentences = literal["sentences"];
    EXPECT_EQ(sentences["total"].get<int>() + sentences["rejected"].get<int>(), lines);
    for (const char* kind :
         {"rmc", "gga", "gsa", "gsv", "checksumRight", "checksumWrong", "checksumAbsent"}) {
      ASSERT_TRUE(columns >> expected);
      EXPECT_EQ(sentences[kind], expected) << kind;
    }
    ASSERT_TRUE(columns >> knots >> latitude >> longitude);
    const json& fastest = literal["maxSpeed"];
    EXPECT_NEAR(fastest.is_null() ? 0 : fastest.get<double>(), knots * 1.852, 1e-5);
    ++logs;
    if (latitude == "nan") continue;
    // The facts have six decimals, and minutes are read as 32-bit floats.
    const json fix = replayed(path)["fix"];
    EXPECT_NEAR(fix["latitude"].get<double>(), std::stod(latitude), 7e-7);
    EXPECT_NEAR(fix["longitude"].get<double>(), std::stod(longitude), 7e-7);
  }
  EXPECT_EQ(logs, 23U);
}

TEST(Replay, WhatNeverEndsIsNotALog) {
  const Finished done = runProgram({"replay", "/dev/zero"});
  EXPECT_EQ(done.status, 1);
  EXPECT_TRUE(done.errors.starts_with("vgps: /dev/zero is not a log")) << done.errors;
}

TEST(Replay, ALogOfSeveralRunsGivesEachInFull) {
  const TestFolder folder;
  const std::string run = fileBytes(sourcePath("tests/logs/talkers.nmea"));
  const std::string cold = "$GPRMC,213005.000,V,,,,,,,010100,,,N*49\r\n";
  folder.write("four.nmea", run + run + run + run);
  folder.write("cold.nmea", cold + run);
  EXPECT_EQ(replayed(folder / "four.nmea")["sentences"]["gga"], 4 * 6);
  const json late = replayed(folder / "cold.nmea");
  EXPECT_EQ(late["sentences"]["gga"], 6);
  EXPECT_EQ(late["fix"]["utcTime"]["hour"], 20);
}

}  // namespace
}  // namespace vgps
