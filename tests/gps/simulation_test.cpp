#include "gps/simulation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <future>

#include "gps/town_walk.h"
#include "tests/fakes/gps_world.h"
#include "tests/fakes/live_world.h"

namespace vgps {
namespace {

std::string walked(Simulation& simulation, int steps) {
  std::string all;
  for (int i = 0; i < steps; ++i) {
    std::string line;
    uint32_t index = 0;
    uint32_t count = 0;
    if (!simulation.next(line, index, count, [] { return false; })) return all + "?";
    all += line[1];
  }
  return all;
}

TEST(Simulation, ThePlaceToJumpToIsForgottenAtTheEndOfTheLines) {
  Simulation simulation;
  simulation.paceMs = 0;
  simulation.setLines({"$A", "$B", "$C"});
  simulation.jumpTo(2);
  EXPECT_EQ(walked(simulation, 3), "ABC");
  simulation.setMode(SimMode::point);
  EXPECT_EQ(walked(simulation, 3), "AAA");
  simulation.jumpTo(1);
  EXPECT_EQ(walked(simulation, 3), "ABB");
  simulation.jumpTo(99);  // there is no such line
  EXPECT_EQ(walked(simulation, 3), "BAA");
}

TEST(Simulation, ClosingWakesWhoeverWaitsForTheNextLine) {
  for (const SimMode mode : {SimMode::timer, SimMode::point, SimMode::tapping}) {
    LiveWorld world;
    world.state.simulation.setMode(mode);
    world.state.simulation.paceMs = 600000;
    ASSERT_TRUE(world.fix.open(true, false, false, false));
    std::atomic<bool> waiting{false};
    std::atomic<bool> over{false};
    auto another = std::async(std::launch::async, [&] {
      std::string line;
      uint32_t index = 0;
      uint32_t count = 0;
      world.state.simulation.next(line, index, count, [&] {
        waiting = true;
        return !world.fix.running;
      });
      over = true;
    });
    EXPECT_TRUE(comes([&] { return waiting.load(); }));
    world.fix.close(true);
    EXPECT_TRUE(comes([&] { return over.load(); })) << static_cast<int>(mode);
    EXPECT_TRUE(world.fix.stopReaders(10000)) << static_cast<int>(mode);
    EXPECT_EQ(world.received, 0);
    another.wait();
  }
}

TEST(Simulation, ALongPauseDoesNotKeepTheProgramFromEnding) {
  for (const SimMode mode : {SimMode::timer, SimMode::tapping}) {
    LiveWorld world;
    world.state.simulation.setMode(mode);
    world.state.simulation.paceMs = 600000;
    ASSERT_TRUE(world.fix.open(true, false, false, false));
    EXPECT_TRUE(world.fix.stopReaders(10000)) << static_cast<int>(mode);
  }
}

TEST(Simulation, HeldShiftStepsOnWhereAStepByStepSimulationStandsStill) {
  struct {
    bool simulate;
    SimMode mode;
    const char* speed;
    bool shift;
    int spaces;
  } const rows[] = {
      {true, SimMode::tapping, "0", true, 1},   {true, SimMode::tapping, "0", false, 0},
      {true, SimMode::tapping, "0.4", true, 0}, {true, SimMode::tapping, "-1", true, 0},
      {true, SimMode::tapping, "36", true, 0},  {true, SimMode::timer, "0", true, 0},
      {true, SimMode::point, "0", true, 0},     {false, SimMode::tapping, "0", true, 0},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    world.fix.simulate = row.simulate;
    world.state.simulation.setMode(row.mode);
    world.hooks.shift = row.shift;
    world.fix.onReceive(std::string("$GPRMCX,1,A,1,1,1,1,") + row.speed + "\r\n");
    EXPECT_EQ(world.hooks.spaces, row.spaces)
        << row.simulate << static_cast<int>(row.mode) << row.shift << " " << row.speed;
  }
}

// Each second has a position, at a distance from the previous one that matches the speed, and an
// altitude.
TEST(Simulation, TheWalkThroughATownIsAWalk) {
  GpsWorld world;
  double latitude = 0;
  double longitude = 0;
  const auto checkSecond = [&](const std::string& line) {
    const std::string_view text = line;
    world.fix.onReceive(std::string(text) + "\r\n");
    const FixRecord& fix = world.fix;
    ASSERT_EQ(fix.fixStatus, 1) << line;
    EXPECT_LT(fix.speedKmh, 7) << line;
    EXPECT_GT(fix.altitude, 80);
    EXPECT_LT(fix.altitude, 130);
    if (latitude != 0) {
      constexpr double kMetersPerDegree = 111320;
      const double east = (fix.longitude - longitude) * std::cos(latitude * 3.14159265 / 180);
      const double meters = kMetersPerDegree * std::hypot(east, fix.latitude - latitude);
      EXPECT_NEAR(meters, fix.speedMps, 1.1) << line;
    }
    latitude = fix.latitude;
    longitude = fix.longitude;
  };
  for (const std::string& line : townWalkLines()) checkSecond(line);
  latitude = 0;
  const double endLatitude = world.fix.latitude;
  checkSecond(townWalkLines().front());
  EXPECT_NEAR(world.fix.latitude, endLatitude, 0.0001) << "it ends where it begins";
  EXPECT_EQ(world.fix.satellites->usedCount, 8);
}

}  // namespace
}  // namespace vgps
