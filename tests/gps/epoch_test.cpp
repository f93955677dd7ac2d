#include "gps/epoch.h"

#include <gtest/gtest.h>

#include "tests/fakes/gps_world.h"

namespace vgps {
namespace {

// Lines of one epoch at `second`, in the order of real receivers; sentences in brackets are empty.
std::string epochLine(const std::string& kind, int second) {
  const std::string time = "1200" + std::string(second < 10 ? "0" : "") + std::to_string(second);
  if (kind == "RMC") return "$GPRMC," + time + ",A,4807.0,N,01131.0,E,022.4,084.4,230324,,";
  if (kind == "RMC-V") return "$GPRMC," + time + ",V,4807.0,N,01131.0,E,,,230324,,";
  if (kind == "RMC-0") return "$GPRMC,,A,4807.0,N,01131.0,E,022.4,084.4,,,";
  if (kind == "GGA") return "$GPGGA," + time + ",4807.0,N,01131.0,E,1,08,0.9,545.4,M,46.9,M,,";
  if (kind == "GGA-") return "$GPGGA," + time + ",4807.0,N,01131.0,E,1,08,0.9,,,,,,";
  if (kind == "GGA-0") return "$GPGGA,,4807.0,N,01131.0,E,1,08,0.9,545.4,M,46.9,M,,";
  return "$GP" + kind + ",1";
}

// The result of lines that arrive `gapMs` apart in bursts of one second: the second of each fix,
// with "z" if its altitude is unknown and "v" if its speed is.
class EpochWorld : public GpsWorld {
 public:
  EpochWorld() {
    hooks.onLine = [this](const ReceivedLine& line) {
      take(epochs.take(fix, line.said, epochRuleOf(state), source));
    };
  }
  void burst(std::string_view kinds, int second, uint32_t gapMs) {
    const uint32_t begin = clock.now;
    while (!kinds.empty()) {
      const size_t end = std::min(kinds.find(' '), kinds.size());
      fix.onReceive(epochLine(std::string(kinds.substr(0, end)), second) + "\r\n");
      kinds.remove_prefix(std::min(end + 1, kinds.size()));
      clock.now += gapMs;
    }
    clock.now = std::max<uint32_t>(clock.now, begin + 1000);
  }
  void take(std::span<const FixRecord> fixes) {
    for (const FixRecord& one : fixes) {
      if (!taken.empty()) taken += ' ';
      taken += std::to_string(one.utcTime.second);
      if (!one.altitudeKnown()) taken += 'z';
      if (!one.speedKnown()) taken += 'v';
    }
  }

  EpochFixes epochs;
  uint32_t source = 0;
  std::string taken;
};

TEST(EpochFixes, OneForEachEpochWhateverLeadsTheBurst) {
  const struct {
    const char* kinds;
    uint32_t gapMs;
  } rows[] = {{"RMC GGA GSA GSV GSV", 20}, {"RMC GGA GSA GSV GSV", 150}, {"GGA GSA GSV RMC", 20},
              {"GGA GSA GSV RMC", 150},    {"GLL RMC GGA", 20},          {"VTG GGA RMC", 20},
              {"ZDA RMC GGA", 20},         {"DTM GGA RMC GSA", 20},      {"GSA RMC GSV GGA", 20},
              {"GSA RMC GSV GGA", 150},    {"RMC-0 GGA-0", 20},          {"GSA RMC-0 GGA-0", 20}};
  for (const auto& row : rows) {
    EpochWorld world;
    for (int second = 1; second <= 6; ++second) world.burst(row.kinds, second, row.gapMs);
    const bool timed = std::string_view(row.kinds).find("-0") == std::string_view::npos;
    EXPECT_EQ(world.taken, timed ? "1 2 3 4 5 6" : "0 0 0 0 0 0") << row.kinds << row.gapMs;
  }
}

TEST(EpochFixes, AFixWaitsForWhatItsEpochStillBrings) {
  const struct {
    std::vector<const char*> bursts;
    const char* taken;
  } rows[] = {
      {{"RMC GGA", "RMC GGA"}, "1 2"},
      {{"GGA RMC", "GGA RMC"}, "1 2"},
      {{"RMC GGA", "RMC-V", "RMC GGA"}, "1 3"},  // not the altitude from before the tunnel
      {{"RMC GGA-", "RMC GGA"}, "1z 2"},
      {{"RMC GGA", "RMC GGA-", "RMC"}, "1 2 3z"},  // no altitude from the second GGA on
      {{"RMC", "RMC", "RMC GGA", "RMC"},
       "1z 2z 3z 4"},  // one epoch waits in vain, later ones do not wait
      {{"GGA", "GGA", "GGA"}, "1v 2v 3v"},
      {{"RMC", "RMC-V", "RMC GGA"}, "1z 3"},
      {{"RMC"}, "1z"},
  };
  for (const auto& row : rows) {
    EpochWorld world;
    int second = 0;
    for (const char* burst : row.bursts) world.burst(burst, ++second, 20);
    world.take(world.epochs.takeWaiting());
    EXPECT_EQ(world.taken, row.taken) << row.bursts.size() << row.bursts[0];
  }
}

TEST(EpochFixes, AKindThatLedTheBurstsAndStopsIsWaitedForOnce) {
  EpochWorld world;
  for (int second = 1; second <= 2; ++second) world.burst("RMC GSA GGA", second, 20);
  for (int second = 3; second <= 5; ++second) world.burst("GSA GGA", second, 20);
  EXPECT_EQ(world.taken, "1 2 3 4 5");
  for (int second = 6; second <= 7; ++second) world.burst("GSA GGA RMC", second, 20);
  EXPECT_EQ(world.taken, "1 2 3 4 5 6 7");
  world.state.options.epochSentenceSetting = kRmc;  // what the user wants is not given up
  for (int second = 8; second <= 9; ++second) world.burst("GSA GGA", second, 20);
  EXPECT_EQ(world.taken, "1 2 3 4 5 6 7");
}

TEST(EpochFixes, ClocksThatStandAndSourcesThatChange) {
  EpochWorld world;
  for (int burst = 0; burst < 3; ++burst) world.burst("RMC GGA", 7, 20);
  EXPECT_EQ(world.taken, "7 7 7") << "the receiver moves on";
  world.source = 1;
  world.burst("RMC GGA", 7, 20);
  EXPECT_EQ(world.taken, "7 7 7 7");
}

}  // namespace
}  // namespace vgps
