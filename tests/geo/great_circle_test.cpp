#include "geo/great_circle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace vgps {
namespace {

TEST(GreatCircle, BearingsOfTheCompass) {
  const Position origin{11, 48, 0};
  EXPECT_EQ(initialBearing(origin, {11, 49, 0}), 0);
  EXPECT_NEAR(initialBearing(origin, {11, 47, 0}), 180, 1e-12);
  EXPECT_NEAR(initialBearing({0, 0, 0}, {1, 0, 0}), 90, 1e-12);
  EXPECT_NEAR(initialBearing({0, 0, 0}, {-1, 0, 0}), 270, 1e-12);
  EXPECT_NEAR(initialBearing({179.5, 0, 0}, {-179.5, 0, 0}), 90, 1e-12);  // the short way
  EXPECT_EQ(initialBearing(origin, origin), 0);
  // Baghdad to Osaka, a textbook pair.
  EXPECT_NEAR(initialBearing({45, 35, 0}, {135, 35, 0}), 60.16, 0.01);
}

TEST(GreatCircle, DestinationAndOffsetsAgree) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> longitude(-180, 180), latitude(-85, 85), course(0, 360),
      length(0.1, 2000);
  for (int i = 0; i < 2000; ++i) {
    const Position from{longitude(random), latitude(random), 5};
    const double bearing = course(random);
    const double km = length(random);
    const Position to = destination(from, bearing, km);
    EXPECT_NEAR(std::remainder(initialBearing(from, to) - bearing, 360), 0, 1e-5);
    EXPECT_LE(std::fabs(to.x), 180);
    EXPECT_EQ(to.z, 5);
    // A point beside the leg: half along it and then to the right.
    const Position middle = destination(from, bearing, km / 2);
    const Position beside = destination(middle, initialBearing(middle, to) + 90, 3);
    const TrackOffset offset = offsetFromLeg(from, to, beside);
    EXPECT_NEAR(offset.acrossKm, 3, 1e-3);
    EXPECT_NEAR(offset.alongKm, km / 2, 2e-3);
  }
  // One meter along, twenty beside.
  const TrackOffset near = offsetFromLeg(
      {0, 0, 0}, {1, 0, 0}, {0.001 / 111.19492578320205, -0.02 / 111.19492578320205, 0});
  EXPECT_NEAR(near.alongKm, 0.001, 1e-8);
  EXPECT_NEAR(near.acrossKm, 0.02, 1e-8);
  const TrackOffset behind = offsetFromLeg({0, 0, 0}, {1, 0, 0}, {-1, 0.5, 0});
  EXPECT_LT(behind.alongKm, 0);
  EXPECT_LT(behind.acrossKm, 0);
}

TEST(GreatCircle, EnclosedAreas) {
  const std::vector<Position> octant = {{0, 0, 0}, {90, 0, 0}, {90, 90, 0}, {0, 90, 0}};
  const double sphere = 4 * std::numbers::pi * 6371000.0 * 6371000.0;
  EXPECT_NEAR(enclosedArea(octant).squareMeters, sphere / 8, 1);
  const std::vector<Position> square = {
      {179.5, 0, 0}, {-179.5, 0, 0}, {-179.5, 1, 0}, {179.5, 1, 0}};
  EXPECT_NEAR(enclosedArea(square).squareDegrees, 1, 1e-9);
  EXPECT_NEAR(enclosedArea(square).squareMeters, 111194.9 * 111194.9, 2e6);
  const std::vector<Position> reversed(square.rbegin(), square.rend());
  EXPECT_NEAR(enclosedArea(reversed).squareMeters, enclosedArea(square).squareMeters, 1);
  EXPECT_EQ(enclosedArea(std::span(square).first(2)).squareMeters, 0);
  EXPECT_EQ(areaText({.squareDegrees = 1, .squareMeters = 12363683990.2614}),
            "1.000 deg^2\r\n12363683990.261 m^2");
}

}  // namespace
}  // namespace vgps
