#include "geo/units.h"

#include <gtest/gtest.h>

namespace vgps {
namespace {

TEST(Units, KnotsInAllUnits) {
  const Speeds speeds = speedsFromKnots(10);
  EXPECT_EQ(speeds.mps, 5.1444441080093384);
  EXPECT_EQ(speeds.kmh, 18.519999980926514);
  EXPECT_EQ(speeds.mph, 11.507794428449568);
  EXPECT_EQ(speedInUnit(speeds, kKmh), speeds.kmh);
  EXPECT_EQ(speedInUnit(speeds, kKnots), 10);
  EXPECT_EQ(speedInUnit(speeds, kMps), speeds.mps);
  EXPECT_EQ(speedInUnit(speeds, kMph), speeds.mph);
  EXPECT_EQ(speedInUnit(speeds, 4), 0);
  EXPECT_EQ(speedInUnit(speeds, -1), 0);
}

TEST(Units, DistancesAndAltitudes) {
  EXPECT_EQ(distanceInUnit(100, kKilometers), 100);
  EXPECT_EQ(distanceInUnit(100, kMiles), 62.137119008106275);
  EXPECT_EQ(distanceInUnit(100, kNauticalMiles), 53.995680401181744);
  EXPECT_EQ(distanceInUnit(100, 3), 0);
  EXPECT_EQ(distanceInUnit(100, -1), 0);
  EXPECT_EQ(altitudeInUnit(545, kInches), 21456.649417877197);
  EXPECT_EQ(altitudeInUnit(545, kFeet), 1787.5999844074249);
}

TEST(Units, Texts) {
  const double kmh = 41.484799250793458;
  EXPECT_EQ(speedText(kmh, kKmh), "41.48 Km/H");
  EXPECT_EQ(speedText(22.399999618530273, kKnots), "22.40 Knots");
  EXPECT_EQ(speedText(11.523554605695949, kMps), "11.52 m/s");
  EXPECT_EQ(speedText(25.777459080739511, kMph), "25.78 MpH");
  EXPECT_EQ(speedText(1, 4), "");
  EXPECT_EQ(distanceText(509.1481833889535, kKilometers), "509.15 Km");
  EXPECT_EQ(distanceText(1, kMiles), "1.00 Mi");
  EXPECT_EQ(distanceText(1, kNauticalMiles), "1.00 Nmi");
  EXPECT_EQ(altitudeText(545, kMeters), "545.00m");
  EXPECT_EQ(altitudeText(altitudeInUnit(545, kInches), kInches), "21456.65i");
  EXPECT_EQ(altitudeText(altitudeInUnit(545, kFeet), kFeet), "1787.60f");
  EXPECT_EQ(altitudeStatisticsText(altitudeInUnit(545, kFeet), kFeet), "1787.60ft");
  EXPECT_EQ(altitudeStatisticsText(100, kMeters), "100.00m");
  EXPECT_EQ(hoursMinutesText(3905), "01:05");
  EXPECT_EQ(hoursMinutesText(100 * 3600), "100:00");
  EXPECT_EQ(shareText(12.5), "12.50%");
}

}  // namespace
}  // namespace vgps
