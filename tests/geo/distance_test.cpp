#include "geo/distance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vgps {
namespace {

double kilometers(double lon1, double lat1, double lon2, double lat2) {
  return surfaceDistance(static_cast<float>(lon1), static_cast<float>(lat1),
                         static_cast<float>(lon2), static_cast<float>(lat2), 0, 0);
}

// The mathematics library may differ in the last digit from system to system.
void expectNear(double value, double expected) {
  EXPECT_NEAR(value, expected, std::fabs(expected) * 1e-14);
}

TEST(Distance, DependsOnWhichPointComesFirst) {
  struct {
    double lon1, lat1, lon2, lat2, there, back;
  } const rows[] = {
      {11.516667, 48.1173, 13.4, 52.52, 509.1481833889535, 505.88527361245866},
      {-0.1278, 51.5074, 2.3522, 48.8566, 341.09849004416265, 346.13427222409871},
      {10, 50, 11, 51, 132.18577179648801, 131.3820630865244},
      {0, 0, 1, 1, 157.25536816037089, 157.24339263149633},
      {23.7, 37.9, 23.8, 38, 14.164113861648751, 14.156723997914987},
      {0, 0, 1, 0, 111.19492578320205, 111.19492578320205},
      {0, 0, 0, 1, 111.19492578320205, 111.19492578320205},
      {0, 60, 1, 60, 55.596930834281522, 55.596930834281522},
      {-74.006, 40.7128, -118.2437, 34.0522, 3765.7763004588428, 4114.5191951236957},
      {0, 0, -45, 22.5, 5657.272392813521, 5296.5258542102347},
      {0, 0, -135, 67.5, 20015.086796020572, 9159.7170782446883},  // clamped, never not-a-number
      {7, 8, 7, 8, 0, 0},
      // Grains of the 32-bit degrees and radians: 15.011, 13.899 and 13.343 m on the ground.
      {11.516667, 48.117435, 11.516667, 48.1173, 0.015569388866424561, 0.015569388866424561},
      {11.516667, 48.1173, 11.516667, 48.117425, 0.014050424098968506, 0.014050424098968506},
      {11.516667, 48.1173, 11.516667, 48.11742, 0.013670682907104492, 0.013670682907104492},
      {10, 50, 10.00005, 50, 0.0035393475101314856, 0.0035393475101314856},
      {10.00005, 50, 10.0001, 50, 0.0036613939759980838, 0.0036613939759980838},
      {10, 50, 10.0001, 50, 0.0072007414861291622, 0.0072007414861291622},
      {10, 50, 10.00007, 50, 0.0050039051005306293, 0.0050039051005306293},
      {10, 50, 10.00014, 50, 0.010007810201060162, 0.010007810201060162},
  };
  for (const auto& row : rows) {
    expectNear(kilometers(row.lon1, row.lat1, row.lon2, row.lat2), row.there);
    expectNear(kilometers(row.lon2, row.lat2, row.lon1, row.lat1), row.back);
  }
}

TEST(Distance, UnitsAndHeight) {
  const auto at = [](int32_t unit, int32_t display) {
    return distance3d(11.516667F, 48.1173F, 545, 11.526667F, 48.1173F, 645, unit, display);
  };
  expectNear(at(0, 2), 0.74900679808079629);
  expectNear(at(1, 0), 0.46541124550227064);
  expectNear(at(2, 0), 0.40443131687483141);
  EXPECT_EQ(at(kDisplayUnit, 1), at(1, 0));
  EXPECT_EQ(at(3, 0), 0);
  EXPECT_EQ(at(-2, 0), 0);
  EXPECT_EQ(surfaceDistance(1, 2, 3, 4, 3, 0), 0);
  EXPECT_EQ(surfaceDistance(1, 2, 3, 4, kDisplayUnit, 7), 0);
  const Position a{11.516667, 48.1173, 545};
  const Position b{11.526667, 48.1173, 645};
  EXPECT_EQ(pointDistance(a, b, 0, 0, true), at(0, 0));
  EXPECT_EQ(pointDistance(a, b, 0, 0, false), kilometers(a.x, a.y, b.x, b.y));
}

TEST(Distance, SecondsToGo) {
  EXPECT_EQ(secondsToGo(0.1, 10.00000026490954), 9);
  EXPECT_EQ(secondsToGo(0.1, 10), 10);
  EXPECT_EQ(secondsToGo(0.742301275, 5.1444441080093384), 144);
  EXPECT_EQ(secondsToGo(5, 0), -1);
  EXPECT_EQ(secondsToGo(0, 0), -1);
  EXPECT_EQ(secondsToGo(1e300, 1e-300), std::numeric_limits<int64_t>::max());
}

TEST(Distance, AroundZeroZeroThereIsNoPosition) {
  EXPECT_TRUE(isNoPosition(0.001, -0.001));
  EXPECT_TRUE(isNoPosition(0.0010000000474974513, 0));
  EXPECT_FALSE(isNoPosition(0.00100000005, 0));
  EXPECT_FALSE(isNoPosition(0, 11));
}

}  // namespace
}  // namespace vgps
