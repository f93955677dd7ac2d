#include "geo/dms.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geo/grid_texts.h"

namespace vgps {
namespace {

TEST(Dms, PartsAreCutAndTheFractionIsA32BitFloat) {
  struct {
    double value;
    AngleKind kind;
    const char* text;
    int32_t sign;
  } const rows[] = {
      {48.1173, AngleKind::latitude, "48 7' 2.279''N", 1},
      {48.117300001780194, AngleKind::latitude, "48 7' 2.280''N", 1},
      {11.516666666666667, AngleKind::longitude, "11 31' 0.000''E", 1},
      {23.7, AngleKind::longitude, "23 42' 0.000''E", 1},
      {37.9, AngleKind::latitude, "37 54' 0.000''N", 1},
      {59.9999 / 3600, AngleKind::none, "0 0' 59.999'' ", 1},
      {12 + 59.0 / 60 + 59.9999 / 3600, AngleKind::none, "12 60' 0.000'' ", 1},
      {23.999999999, AngleKind::none, "23 60' 0.000'' ", 1},
      {179.9999999, AngleKind::longitude, "179 59' 59.999''E", 1},
      {151.2153, AngleKind::longitude, "151 12' 55.079''E", 1},
      {-33.8568, AngleKind::latitude, "33 51' 24.480''S", -1},
      {-74.006, AngleKind::longitude, "74 0' 21.600''W", -1},
      {89.99999, AngleKind::latitude, "89 59' 59.963''N", 1},
      {-0.5, AngleKind::latitude, "0 30' 0.000''S", -1},
      {1.0 / 3600, AngleKind::none, "0 0' 1.000'' ", 1},
      {-0.5, AngleKind::longitude, "0 30' 0.000''W", -1},
      {-0.5, AngleKind::none, "0 30' 0.000'' ", -1},
      {0, AngleKind::latitude, "0 0' 0.000''N", 1},
      {-0.0, AngleKind::longitude, "0 0' 0.000''E", 1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(dmsText(row.value, row.kind), row.text);
    EXPECT_EQ(dmsFromDegrees(row.value, row.kind).sign, row.sign) << row.text;
  }
  EXPECT_EQ(dmsText(std::nan(""), AngleKind::none), "0 0' 0.000'' ");
}

TEST(GridTexts, MilitaryGrid) {
  EXPECT_EQ(mgrsText(48.1173, 11.516667, 5), "32U PU 87299 32401");
  EXPECT_EQ(mgrsText(48.1173, 11.516667, 3), "32U PU 872 324");
  EXPECT_EQ(mgrsText(-33.8568, 151.2153, 5), "56H LH 34900 52288");
  EXPECT_EQ(mgrsText(0, 0, 5), "31N AA 66021 00000");
  EXPECT_EQ(mgrsText(85, 0, 5), "");
  EXPECT_EQ(mgrsText(48, 11, 6), "");
}

TEST(GridTexts, Locator) {
  EXPECT_EQ(maidenheadText(48.14666, 11.60833, 3), "JN58td");
  EXPECT_EQ(maidenheadText(-34.91, -56.21166, 3), "GF15vc");
  EXPECT_EQ(maidenheadText(38.92, -77.065, 2), "FM18");
  EXPECT_EQ(maidenheadText(90, 180, 3), "RR99xx");
  EXPECT_EQ(maidenheadText(-90, -180, 5), "AA00aa00aa");
  EXPECT_EQ(maidenheadText(91, 0, 3), "");
}

}  // namespace
}  // namespace vgps
