#include "gps/talkers.h"

#include <gtest/gtest.h>

#include "tests/fakes/gps_world.h"

namespace vgps {
namespace {

std::string sentence(const std::string& talker, const std::string& kind) {
  return "$" + talker + kind + ",120000,A,4807.038,N,01131.000,E";
}

struct Step {
  uint32_t tick;
  std::string line;
  bool translated;
};

void hear(TalkerSetting setting, const std::vector<Step>& steps) {
  TalkerTranslation talkers;
  for (const Step& step : steps) {
    const bool translated = talkers.standsInForGps(Sentence(step.line), step.tick, setting);
    EXPECT_EQ(translated, step.translated) << step.line << " " << step.tick;
  }
}

TEST(Talkers, AnotherTalkerTakesOverAfterThreeSecondsWithoutGps) {
  hear(TalkerSetting::automatic, {
                                     {1000, sentence("GN", "RMC"), false},
                                     {3999, sentence("GN", "GGA"), false},
                                     {4000, sentence("GN", "RMC"), true},
                                     {4000, sentence("GN", "GGA"), true},
                                     {4000, "$GNGSA,A,3,01,02,,,,,,,,,,,1,2,3*00", true},
                                     {4000, "$GNGSV,1,1,00", false},
                                     {4000, "$GNVTG,1", false},
                                     {5000, sentence("GP", "GSA"), false},  // no position
                                     {5000, sentence("GN", "RMC"), true},
                                     {6000, sentence("GP", "RMC"), false},  // ends it
                                     {6000, sentence("GN", "RMC"), false},
                                     {8999, sentence("GN", "RMC"), false},
                                     {9000, sentence("GN", "RMC"), true},
                                 });
}

TEST(Talkers, TheMostCompleteTalkerSpeaks) {
  hear(TalkerSetting::automatic, {
                                     {1000, sentence("GL", "RMC"), false},
                                     {1000, sentence("GL", "GGA"), false},
                                     {1000, sentence("GA", "RMC"), false},
                                     {4000, sentence("GL", "RMC"), true},
                                     {4000, sentence("GA", "RMC"), false},
                                     {4000, sentence("GL", "GGA"), true},
                                     {5000, sentence("GN", "RMC"), false},
                                     {5000, sentence("GN", "GGA"), true},  // as complete, and GN
                                     {5000, sentence("GL", "GGA"), false},
                                     {8001, sentence("GN", "RMC"), true},
                                     {9000, sentence("GL", "RMC"), false},
                                     {12000, sentence("GL", "RMC"), true},  // GN has fallen silent
                                 });
}

TEST(Talkers, PositionsCountMoreThanSatellites) {
  struct {
    std::vector<std::string> lines;  // all sent each second
    std::string chosen;              // the talker that speaks for GPS
  } const rows[] = {
      {{"GNGSA"}, ""},  // satellites without a position
      {{"GNGSA", "GLRMC"}, "GL"},
      {{"GNRMC", "GNGSA", "GLRMC", "GLGGA"}, "GL"},
      {{"GNGGA", "GNGSA", "GQRMC", "GQGGA"}, "GQ"},
      {{"GNRMC", "GLRMC", "GLGSA"}, "GL"},
      {{"GNRMC", "GNGSA", "GLRMC", "GLGSA"}, "GN"},
      {{"GLRMC", "GLGGA", "GLGSA", "GNRMC", "GNGGA"}, "GL"},
  };
  for (const auto& row : rows) {
    std::vector<Step> steps;
    for (const uint32_t tick : {1000U, 2000U, 3000U, 4000U, 5000U}) {
      for (const std::string& line : row.lines) {
        const std::string talker = line.substr(0, 2);
        steps.push_back(
            {tick, sentence(talker, line.substr(2)), tick >= 4000 && talker == row.chosen});
      }
    }
    hear(TalkerSetting::automatic, steps);
  }
}

TEST(Talkers, AlwaysAndNeverDoNotWait) {
  hear(TalkerSetting::always, {
                                  {1000, sentence("GN", "RMC"), true},
                                  {1000, sentence("GP", "RMC"), false},
                                  {1000, sentence("GQ", "GGA"), true},
                                  {1000, sentence("BD", "RMC"), true},
                                  {1000, sentence("GB", "RMC"), true},
                                  {1000, sentence("II", "RMC"), false},
                                  {1000, sentence("GN", "GSV"), false},
                                  {1000, "$GNRM", false},
                                  {1000, "", false},
                              });
  hear(TalkerSetting::never,
       {{1000, sentence("GN", "RMC"), false}, {9000, sentence("GN", "RMC"), false}});
}

TEST(Talkers, OnlyGsaOfGpsCounts) {
  hear(TalkerSetting::always, {
                                  {1000, "$GNGSA,A,3,01,02,,,,,,,,,,,1.1,2.2,3.3*00", true},
                                  {1000, "$GNGSA,A,3,01,02,,,,,,,,,,,1.1,2.2,3.3,1*00", true},
                                  {1000, "$GNGSA,A,3,01,02,,,,,,,,,,,1.1,2.2,3.3,*00", true},
                                  {1000, "$GNGSA,A,3,01,02,,,,,,,,,,,1.1,2.2,3.3,3*00", false},
                                  {1000, "$GNGSA,A,3,01,02,,,,,,,,,,,1.1,2.2,3.3,2\r\n", false},
                              });
}

TEST(Talkers, TheParserGetsTheTranslationAndEverybodyElseTheRawLine) {
  GpsWorld world;
  world.state.options.talkers = static_cast<int32_t>(TalkerSetting::always);
  const std::string raw = "$GNGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*59";
  world.fix.onReceive(raw + "\r\n");
  EXPECT_EQ(world.fix.altitude, 545);
  EXPECT_EQ(world.fix.lastSentenceKind, kGga);
  EXPECT_EQ(world.hooks.lines, std::vector<std::string>{raw});
  EXPECT_EQ(world.state.stats.of(SentenceType::gga).count, 1U);
  EXPECT_EQ(world.state.stats.of(SentenceType::gga).checksumRight, 1U);  // of the line as it came
}

}  // namespace
}  // namespace vgps
