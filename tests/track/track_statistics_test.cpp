#include "track/track_statistics.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/track/recording_world.h"

namespace vgps {
namespace {

// At 0 N, where 0.001 degrees are 111 m; so many seconds after 23:59 of a year's last day.
TrackPoint after(int seconds, double longitude, double altitude = 0) {
  TrackPoint point = pointAt(longitude, 0.5, altitude);
  const auto part = [](int value) { return static_cast<uint16_t>(value); };
  point.localTime = {2010, 12, 0, 31, 23, 59, part(seconds), 0};
  if (seconds >= 60) {
    point.localTime = {2011, 1, 0, 1, 0, part(seconds / 60 - 1), part(seconds % 60), 0};
  }
  return point;
}

TEST(TrackStatistics, TimesAndWays) {
  Track track;
  // 111 m in 30 s, a stop of 200 s, 222 m in 30 s; a point without a time in between.
  track.points.push_back(after(0, 10));
  track.points.push_back(after(30, 10.001));
  track.points.push_back(after(230, 10.00101));
  track.points.push_back(pointAt(10.002, 0.5));
  track.points.push_back(after(260, 10.00301));
  track.points[1].speedKmh = 13.5;
  const TrackStatistics all = statisticsOf(track);
  EXPECT_EQ(all.points, 5U);
  EXPECT_NEAR(all.distanceKm, 0.3347, 0.0005);
  EXPECT_EQ(all.distanceKm, all.distance3dKm);
  ASSERT_TRUE(all.times);
  EXPECT_EQ(all.times->seconds, 260);
  EXPECT_EQ(all.times->movingSeconds, 60);
  EXPECT_NEAR(all.times->movingKm, 0.3336, 0.0005);
  EXPECT_NEAR(all.averageKmh(), 4.63, 0.01);
  EXPECT_NEAR(all.movingKmh(), 20.0, 0.05);
  EXPECT_EQ(all.times->first.hour, 23);
  EXPECT_EQ(all.times->last.hour, 0);
  EXPECT_EQ(all.maxKmh, 13.5);
}

TEST(TrackStatistics, WhatIsNotKnown) {
  Track track;
  EXPECT_FALSE(statisticsOf(track).bounds);
  track.points.push_back(after(0, 10, 100));
  EXPECT_FALSE(statisticsOf(track).times);  // one time is no duration
  EXPECT_EQ(statisticsOf(track).averageKmh(), 0);
  EXPECT_EQ(statisticsOf(track).lowest, 100);
  track.points.push_back(after(0, 11, 100));
  track.points[1].localTime.month = 13;
  EXPECT_FALSE(statisticsOf(track).times);
  // A clock that was put back makes no time negative and nothing longer than the whole.
  track.points[1] = after(50, 10.1);
  track.points.push_back(after(20, 10.2));
  track.points.push_back(after(40, 10.3));
  EXPECT_EQ(statisticsOf(track).times->seconds, 40);
  EXPECT_EQ(statisticsOf(track).times->movingSeconds, 40);
}

TEST(TrackStatistics, ClimbsWithoutTheNoise) {
  const struct {
    const char* what;
    std::vector<double> heights;
    double climb, descent;
  } rows[] = {
      {"standing", {100, 103, 99, 102, 98.5, 103}, 0, 0},
      {"a hill", {100, 105.5, 103, 120, 117, 121, 110, 112, 99}, 21, 22},
      {"a cliff", {0, 10, -50}, 10, 60},
      {"a valley first", {50, 20, 20, 24, 60}, 40, 30},
      {"stairs in noise", {0, 4, 1, 8, 5, 12, 9, 16, 13}, 16, 0},
      {"exactly five meters are noise", {10, 15, 10}, 0, 0},
  };
  for (const auto& row : rows) {
    Track track;
    for (const double height : row.heights) track.points.push_back(pointAt(10, 50, height));
    const TrackStatistics all = statisticsOf(track);
    EXPECT_DOUBLE_EQ(all.climb, row.climb) << row.what;
    EXPECT_DOUBLE_EQ(all.descent, row.descent) << row.what;
  }
}

TEST(TrackStatistics, HeightsLengthenTheWay) {
  Track track;
  track.points.push_back(pointAt(11.516667, 48.1173, 545));
  track.points.push_back(pointAt(11.526667, 48.1173, 645));
  const TrackStatistics all = statisticsOf(track);
  EXPECT_NEAR(all.distanceKm, 0.74230127527387657, 1e-14);
  EXPECT_NEAR(all.distance3dKm, 0.74900679808079629, 1e-14);
  EXPECT_EQ(all.highest, 645);
}

TEST(TrackStatistics, BoundsAcrossTheDateLine) {
  const struct {
    const char* what;
    std::vector<double> longitudes;
    double west, east;
  } rows[] = {
      {"plain", {10, 12, 9, 11}, 9, 12},
      {"eastward", {179, -179, -178}, 179, -178},
      {"westward and back", {-179, 178, -177}, 178, -177},
      {"once around", {0.5, 100, -160, -60, 1}, -180, 180},
  };
  for (const auto& row : rows) {
    Track track;
    for (const double longitude : row.longitudes) {
      track.points.push_back(pointAt(longitude, longitude / 10));
    }
    const TrackStatistics all = statisticsOf(track);
    ASSERT_TRUE(all.bounds);
    EXPECT_NEAR(all.bounds->west, row.west, 1e-9) << row.what;
    EXPECT_NEAR(all.bounds->east, row.east, 1e-9) << row.what;
    EXPECT_EQ(all.bounds->south,
              *std::min_element(row.longitudes.begin(), row.longitudes.end()) / 10);
  }
}

}  // namespace
}  // namespace vgps
