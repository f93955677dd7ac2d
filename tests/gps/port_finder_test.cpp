#include "gps/port_finder.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/fakes/speaking_port.h"

namespace vgps {
namespace {

const std::string kRmc = "$GNRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";
const std::string kGsv = "$GNGSV,1,1,00*65\r\n";

constexpr PortFinderTimes kQuick = {.listenMs = 30, .countMs = 5};

std::vector<PortFinding> findAll(const SpeakingPort::Voices& voices) {
  std::vector<PortName> ports;
  for (const auto& [name, voice] : voices) ports.push_back({name, {}});
  PortFinder finder([&] { return std::make_unique<SpeakingPort>(voices); }, [] {}, kQuick);
  finder.start(ports);
  while (finder.running()) std::this_thread::yield();
  EXPECT_EQ(finder.progress(), 1000);
  return finder.findings();
}

TEST(PortFinder, EachPortGetsItsAnswer) {
  const std::string sirf("\xA0\xA2\x00\x01\x29\x00\x29\xB0\xB3", 9);
  const struct {
    SpeakingPort::Voice voice;
    ProbeResult result;
    uint32_t speed;
    const char* words;
  } rows[] = {
      {{9600, kRmc}, ProbeResult::found, 9600, "NMEA at 9600 baud, talker GN"},
      {{921600, kGsv + kRmc}, ProbeResult::found, 921600, "NMEA at 921600 baud, talker GN"},
      {{57600, sirf}, ProbeResult::sirfBinary, 57600, "SiRF binary at 57600 baud"},
      {{4800, "$SDDBT,7.2,f,2.2,M,1.2,F*07\r\n"}, ProbeResult::noPosition, 4800, "no position"},
      {{1200, kRmc}, ProbeResult::wrongSpeed, 0, "Probably a different baud rate"},
      {{9600, ""}, ProbeResult::noData, 0, "No data"},
      {{9600, kRmc, PortError::busy}, ProbeResult::busy, 9600, "In use"},
      {{9600, kRmc, PortError::noPermission}, ProbeResult::noPermission, 9600, "No permission"},
  };
  SpeakingPort::Voices voices;
  for (size_t i = 0; i < std::size(rows); ++i) voices[std::to_string(i)] = rows[i].voice;
  const std::vector<PortFinding> findings = findAll(voices);
  ASSERT_EQ(findings.size(), std::size(rows));
  for (size_t i = 0; i < std::size(rows); ++i) {
    EXPECT_EQ(findings[i].answer.result, rows[i].result) << i;
    if (rows[i].speed != 0) {
      EXPECT_EQ(findings[i].speed, rows[i].speed) << i;
    }
    EXPECT_NE(findingText(findings[i]).find(rows[i].words), std::string::npos)
        << findingText(findings[i]);
  }
}

TEST(PortFinder, TheReceiverThatSaysMostIsTheBest) {
  const SpeakingPort::Voices voices = {
      {"1", {9600, "$SDDBT,7.2,f,2.2,M,1.2,F*07\r\n"}}, {"2", {9600, kRmc}}, {"3", {9600, ""}}};
  const std::vector<PortFinding> findings = findAll(voices);
  const PortFinding* const best = bestFinding(findings);
  ASSERT_NE(best, nullptr);
  EXPECT_EQ(best->port.name, "2");
  EXPECT_EQ(bestFinding(findAll({{"3", {9600, ""}}})), nullptr);
  EXPECT_EQ(bestFinding(findAll({})), nullptr);
}

// A position counts more than the number of sentences.
TEST(PortFinder, TheOneThatHasAPositionIsTaken) {
  const std::string noFix = "$GPRMC,101010,V,,,,,,,230394,,*2C\r\n";
  const std::string fix = "$GPGGA,101010,4807.038,N,01131.000,E,1,09,0.9,545.4,M,46.9,M,,*47\r\n";
  const std::string ais = "!AIVDM,1,1,,A,15M67FC000G?ufbE`FepT@3n00Sa,0*5C\r\n";
  const std::vector<PortFinding> findings =
      findAll({{"1", {9600, noFix + noFix + noFix}}, {"2", {9600, fix}}, {"3", {38400, ais}}});
  EXPECT_EQ(bestFinding(findings)->port.name, "2");
  EXPECT_EQ(positionText(findings[0]), "no fix yet");
  EXPECT_EQ(positionText(findings[1]), "fix, 9 satellites");
  EXPECT_EQ(positionText(findings[2]), "AIS");
}

// A port that opens slowly is not waited for, by the search nor by its end.
TEST(PortFinder, WhatHasNotAnsweredInTimeIsSaid) {
  const SpeakingPort::Voices voices = {
      {"1", {9600, kRmc}}, {"2", {9600, kRmc, PortError::none, 1000}}, {"3", {9600, ""}}};
  const struct {
    uint32_t listenMs, limitMs;
    const char* words[3];
  } rows[] = {{30, 700, {"NMEA at 9600", "Did not open in time", "No data"}},
              {400, 700, {"NMEA at 9600", "Did not open in time", "Not fully tested"}}};
  for (const auto& row : rows) {
    PortFinder finder([voices] { return std::make_unique<SpeakingPort>(voices); }, [] {},
                      {.listenMs = row.listenMs, .countMs = 5, .limitMs = row.limitMs});
    finder.start({{"1", {}}, {"2", {}}, {"3", {}}});
    while (finder.running()) std::this_thread::yield();
    const std::vector<PortFinding> findings = finder.findings();
    for (size_t i = 0; i < findings.size(); ++i) {
      EXPECT_TRUE(findingText(findings[i]).starts_with(row.words[i])) << findingText(findings[i]);
    }
    EXPECT_EQ(finder.progress(), 1000);
    EXPECT_EQ(bestFinding(findings)->port.name, "1");
  }
}

// Its bytes are there before anybody listens.
class WaitingPort : public SpeakingPort {
 public:
  using SpeakingPort::SpeakingPort;
  PortRead read(std::span<char> buffer, size_t& got, int timeoutMs) override {
    if (!std::exchange(said_, true)) return SpeakingPort::read(buffer, got, 0);
    got = 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(std::min(timeoutMs, 2)));
    return PortRead::silence;
  }

 private:
  bool said_ = false;
};

TEST(PortFinder, AReceiverThatSpeaksAtOnceIsListenedToAllTheSame) {
  const SpeakingPort::Voices voices = {{"1", {9600, kRmc}}};
  PortFinder finder([&] { return std::make_unique<WaitingPort>(voices); }, [] {}, kQuick);
  finder.start({{"1", {}}});
  while (finder.running()) std::this_thread::yield();
  EXPECT_EQ(finder.findings()[0].answer.result, ProbeResult::found);
  EXPECT_GT(finder.findings()[0].answer.sentencesPerSecond, 0);
}

TEST(PortFinder, CancellingEndsItSoonAndAnotherSearchMayBegin) {
  const SpeakingPort::Voices voices = {{"1", {9600, ""}}, {"2", {9600, kRmc}}};
  std::atomic<int> changes = 0;
  PortFinder finder([&] { return std::make_unique<SpeakingPort>(voices); }, [&] { ++changes; },
                    {.listenMs = 600000, .countMs = 5});
  finder.start({{"1", {}}, {"2", {}}});
  while (!finder.findings()[1].done) std::this_thread::yield();
  EXPECT_TRUE(finder.running());
  EXPECT_LT(finder.progress(), 1000);
  EXPECT_NE(findingText(finder.findings()[0]).find("9600"), std::string::npos);
  finder.stop();
  EXPECT_TRUE(finder.findings()[0].done);
  EXPECT_GT(changes, 2);
  finder.start({{"2", {}}});
  while (finder.running()) std::this_thread::yield();
  EXPECT_NE(bestFinding(finder.findings()), nullptr);
}

}  // namespace
}  // namespace vgps
