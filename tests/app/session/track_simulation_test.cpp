#include "track/track_simulation.h"

#include "app/desktop/save_messages.h"

#include <gtest/gtest.h>

#include "tests/fakes/app_world.h"

namespace vgps {
namespace {

TEST(TrackSimulation, PointsComeBackAsTheyWere) {
  Track track;
  TrackPoint point;
  point.longitude = -11.516667;
  point.latitude = 48.1173;
  point.altitude = 545.4;
  point.course = 84.4;
  point.speedKmh = 41.48;
  point.utcTime = {
      .year = 2026, .month = 11, .day = 21, .hour = 12, .minute = 5, .second = 9, .millisecond = 7};
  track.points.push_back(point);
  point.latitude = -0.5;
  track.points.push_back(point);

  const std::vector<std::string> lines = simulationLines(track);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_TRUE(lines[1].starts_with("$GPRMCX,120509.007,A,-11.516667,48.117300,545.400000"));
  AppWorld world;
  const FixRecord& fix = world.app.shown.fix;
  world.receive(lines[0] + "\r\n");
  EXPECT_EQ(fix.fixStatus, 1);
  EXPECT_EQ(fix.utcTime.hour, 12);
  EXPECT_EQ(fix.utcTime.second, 9);
  EXPECT_EQ(fix.utcTime.year, 2026);
  EXPECT_NEAR(fix.longitude, point.longitude, 1e-6);
  EXPECT_NEAR(fix.latitude, 48.1173, 1e-6);
  world.receive(lines[1] + "\r\n");
  EXPECT_NEAR(fix.altitude, point.altitude, 1e-3);
  EXPECT_NEAR(fix.course, point.course, 1e-3);
  EXPECT_NEAR(fix.speedKmh, point.speedKmh, 1e-2);
  world.receive(lines[2] + "\r\n");
  EXPECT_NEAR(fix.latitude, -0.5, 1e-6);
}

}  // namespace
}  // namespace vgps
