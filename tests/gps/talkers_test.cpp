#include "gps/talkers.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/fakes/gps_world.h"

namespace vgps {
namespace {

std::string sentence(const std::string& talker, const std::string& kind) {
  return "$" + talker + kind + ",120000,A,4807.038,N,01131.000,E";
}

struct Step {
  uint32_t tick;
  std::string line;
  bool taken;  // parsed like one of GP
};

void hear(TalkerSetting setting, const std::vector<Step>& steps, TalkerTranslation talkers = {}) {
  for (const Step& step : steps) {
    const TalkerVerdict verdict = talkers.judge(Sentence(step.line), step.tick, setting);
    EXPECT_EQ(verdict.forGps, step.taken) << step.line << " " << step.tick;
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
                                     {5000, sentence("GP", "GSA"), true},
                                     {5000, "$GNGSA,A,3,01,02,,,,,,,,,,,1,2,3*00", false},
                                     {5000, sentence("GN", "RMC"), true},
                                     {6000, sentence("GP", "RMC"), true},  // ends it
                                     {6000, sentence("GN", "RMC"), false},
                                     {6000, sentence("GN", "GGA"), true},  // only this kind
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

TEST(Talkers, EachKindComesFromTheBestThatSendsIt) {
  struct {
    std::vector<std::string> lines;  // all sent each second
    std::vector<std::string> taken;  // from the fourth second on
  } const rows[] = {
      {{"GPGGA", "GNRMC"}, {"GPGGA", "GNRMC"}},
      {{"GPRMC", "GPGGA", "GNGSA"}, {"GPRMC", "GPGGA", "GNGSA"}},
      {{"GPRMC", "GAGSA"}, {"GPRMC"}},  // its satellite numbers are those of GPS satellites too
      {{"GNGSA", "GLRMC"}, {"GNGSA", "GLRMC"}},
      {{"GNRMC", "GNGSA", "GLRMC", "GLGGA"}, {"GNGSA", "GLRMC", "GLGGA"}},
      {{"GNGGA", "GNGSA", "GQRMC", "GQGGA"}, {"GNGSA", "GQRMC", "GQGGA"}},
      {{"GNRMC", "GLRMC", "GLGSA"}, {"GLRMC", "GLGSA"}},
      {{"GNRMC", "GNGSA", "GLRMC", "GLGSA"}, {"GNRMC", "GNGSA"}},
  };
  for (const auto& row : rows) {
    std::vector<Step> steps;
    for (uint32_t tick = 1000; tick <= 5000; tick += 1000) {
      for (const std::string& line : row.lines) {
        const bool best = std::find(row.taken.begin(), row.taken.end(), line) != row.taken.end();
        steps.push_back({tick, sentence(line.substr(0, 2), line.substr(2)),
                         line.starts_with("GP") || (tick >= 4000 && best)});
      }
    }
    hear(TalkerSetting::automatic, steps);
  }
}

TEST(Talkers, ASentenceWithoutAFixDoesNotHideOneThatHasIt) {
  const std::string noFix = "$GPRMC,120000,V,,,,,,,230324,,";
  hear(TalkerSetting::automatic, {{1000, noFix, true},
                                  {1000, sentence("GN", "RMC"), false},
                                  {4000, noFix, true},  // GP may just have lost its fix
                                  {4000, sentence("GN", "RMC"), true},
                                  {5000, noFix, false},
                                  {5000, sentence("GN", "RMC"), true},
                                  {9000, noFix, true},
                                  {9000, sentence("GP", "RMC"), true},
                                  {9000, sentence("GN", "RMC"), false}});
}

TEST(Talkers, NobodyIsWaitedForInALogThatIsKnown) {
  const std::string noFix = "$GPRMC,120000,V,,,,,,,230324,,";
  const std::vector<Step> steps = {{1000, noFix, true},
                                   {2000, noFix, false},
                                   {2000, sentence("GN", "RMC"), true},
                                   {2000, sentence("GN", "GSA"), true},
                                   {3000, sentence("GP", "RMC"), true},
                                   {3000, sentence("GN", "RMC"), false},
                                   {5999, sentence("GP", "RMC"), true},  // the last one
                                   {5999, sentence("GN", "RMC"), false},
                                   {6000, sentence("GN", "RMC"), true},
                                   {9000, sentence("GP", "RMC"), true}};
  TalkerTimeline heard;
  for (const Step& step : steps) heard.listen(Sentence(step.line), step.tick);
  TalkerTranslation talkers;
  talkers.expect(heard);
  hear(TalkerSetting::automatic, steps, talkers);
}

TEST(Talkers, WhatIsLeftOutIsCountedWithTheReason) {
  GpsWorld world;
  const auto receive = [&](const std::string& line) { world.fix.receiveLine(line + "\r\n"); };
  receive(sentence("GN", "RMC"));
  receive(sentence("GP", "RMC"));
  receive(sentence("GN", "RMC"));
  receive(sentence("GN", "RMC"));
  receive(sentence("II", "RMC"));
  receive("$PMRMC,1");
  const SentenceStats& stats = world.state.stats;
  ASSERT_EQ(stats.leftOutKinds, 3U);
  EXPECT_EQ(stats.leftOut[0].why.reason, LeftOutReason::waiting);
  EXPECT_EQ(stats.leftOut[1].why.reason, LeftOutReason::another);
  EXPECT_EQ(stats.leftOut[1].count, 2U);
  EXPECT_EQ(stats.leftOut[2].why.reason, LeftOutReason::unknownTalker);
}

TEST(Talkers, AlwaysAndNeverDoNotWait) {
  hear(TalkerSetting::always, {
                                  {1000, sentence("GN", "RMC"), true},
                                  {1000, sentence("GP", "RMC"), true},
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
                                  {1000, "$GNGSA,A,3,01,02,,,,,,,,,,,1.1,2.2,3.3,1.2*00", true},
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
