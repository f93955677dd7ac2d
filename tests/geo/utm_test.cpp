#include "geo/utm.h"

#include <gtest/gtest.h>

#include "geo/ellipsoids.h"

namespace vgps {
namespace {

TEST(Utm, PositionsOnWgs84) {
  struct {
    double latitude, longitude;
    const char* zone;
    double easting, northing;
  } const rows[] = {
      {48.1173, 11.516666666666667, "32U", 687299.57498867845, 5332401.204337324},
      {60, 5, "32V", 276979.92501178768, 6658157.1513286149},
      {-33.8568, 151.2153, "56H", 334900.57042479434, 6252288.7819702514},
      {37.9, 23.7, "34S", 737396.0802494227, 4198157.3266164558},
      {40.7128, -74.006, "18T", 583959.37207009597, 4507350.9633468036},
      {0, 0, "31N", 166021.4457688331, 0},
      {-0.5, 10, "32M", 611276.44030070794, 9944726.4885525983},
      {83.9, 8.9, "31X", 569875.90919446154, 9320510.6632432491},
      {72, 42, "38X", 396566.94333160843, 7991508.481445767},
      {-80, 0, "31C", 441867.7817524143, 1116915.1124257091},
      {84, 20, "34X", 488330.47806931526, 9328195.0390086714},
      {45, 181, "1T", 342369.35953252472, 4984896.1327360887},
      {45, 180, "1T", 263553.97426314489, 4987329.4661262222},
      {45, -180, "1T", 263553.97426314489, 4987329.4661262222},
  };
  for (const auto& row : rows) {
    const UtmPosition utm = utmFromDegrees(kWgs84, row.latitude, row.longitude);
    EXPECT_EQ(utm.zoneText(), row.zone);
    EXPECT_NEAR(utm.easting, row.easting, 1e-6) << row.zone;
    EXPECT_NEAR(utm.northing, row.northing, 1e-6) << row.zone;
  }
}

TEST(Utm, ZonesAndBandsAtTheirEdges) {
  struct {
    double latitude, longitude;
    const char* zone;
  } const rows[] = {
      {84.0001, 20, "34"}, {-80.0001, 20, "34"}, {55.9999, 5, "31U"}, {56, 3, "32V"},
      {56, 2.9999, "31V"}, {63.9999, 11, "32V"}, {64, 5, "31W"},      {72, 8.9999, "31X"},
      {72, 9, "33X"},      {72, 20.9999, "33X"}, {72, 21, "35X"},     {72, 33, "37X"},
      {71.9999, 9, "32W"}, {0, 179.9999, "60N"}, {-0.0001, 0, "31M"}, {8, 0, "31P"},
      {0, -181, "60N"},    {0, 541, "1N"},       {0, 1e300, "31N"},
  };
  for (const auto& row : rows) {
    const std::string zone = utmFromDegrees(kWgs84, row.latitude, row.longitude).zoneText();
    if (row.longitude == 1e300) {
      EXPECT_TRUE(zone.ends_with('N'));
    } else {
      EXPECT_EQ(zone, row.zone) << row.latitude << " " << row.longitude;
    }
  }
}

TEST(Utm, OtherEllipsoids) {
  EXPECT_NEAR(utmFromDegrees(3, 48.1173, 11.516666666666667).easting, 687276.80164385866, 1e-6);
  EXPECT_NEAR(utmFromDegrees(3, 48.1173, 11.516666666666667).northing, 5331857.0899885651, 1e-6);
  EXPECT_NEAR(utmFromDegrees(14, 48.1173, 11.516666666666667).easting, 687308.42024621065, 1e-6);
  EXPECT_NEAR(utmFromDegrees(14, 48.1173, 11.516666666666667).northing, 5332505.6135484595, 1e-6);
  const UtmPosition standard = utmFromDegrees(kWgs84, 48.1173, 11.516667);
  for (const int32_t unusable : {0, -1, 24, 99}) {
    EXPECT_EQ(utmFromDegrees(unusable, 48.1173, 11.516667).easting, standard.easting);
  }
  EXPECT_STREQ(ellipsoids()[4].name, "Bessel 1841 (Nambia) ");
  EXPECT_STREQ(ellipsoids()[8].name, "Fischer 1960 (Mercury) ");
  for (size_t i = 1; i < ellipsoids().size(); ++i) {
    EXPECT_EQ(ellipsoids()[i].identifier, static_cast<int32_t>(i));
  }
}

}  // namespace
}  // namespace vgps
