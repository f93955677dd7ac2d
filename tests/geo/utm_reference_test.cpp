#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "geo/ellipsoids.h"
#include "geo/grid_texts.h"
#include "geo/utm.h"
#if VEXA_HAVE_GEOGRAPHICLIB
#include <GeographicLib/MGRS.hpp>
#include <GeographicLib/TransverseMercator.hpp>
#endif

// The grid beside an exact transverse Mercator projection.
namespace vgps {
namespace {

#if VEXA_HAVE_GEOGRAPHICLIB
TEST(UtmReference, WithinAMetreBetweenTheBands) {
  std::mt19937_64 random(20100705);
  std::uniform_real_distribution<double> latitudes(-80, 84);
  std::uniform_real_distribution<double> longitudes(-180, 180);
  const auto& exact = GeographicLib::TransverseMercator::UTM();
  for (int i = 0; i < 100000; ++i) {
    const double latitude = latitudes(random);
    const double longitude = longitudes(random);
    const UtmPosition utm = utmFromDegrees(kWgs84, latitude, longitude);
    double x = 0;
    double y = 0;
    exact.Forward(utm.zone * 6 - 183, latitude, longitude, x, y);
    ASSERT_NEAR(utm.easting, x + 500000, 1) << latitude << " " << longitude;
    ASSERT_NEAR(utm.northing, y + (latitude < 0 ? 10000000 : 0), 1) << latitude << " " << longitude;
  }
}

// The letters and figures for a grid position; that the position is right is told above.
TEST(UtmReference, MilitaryGridOfTheSamePosition) {
  std::mt19937_64 random(20100706);
  std::uniform_real_distribution<double> latitudes(-80, 84);
  std::uniform_real_distribution<double> longitudes(-180, 180);
  for (int i = 0; i < 20000; ++i) {
    const double latitude = latitudes(random);
    const double longitude = longitudes(random);
    const UtmPosition utm = utmFromDegrees(kWgs84, latitude, longitude);
    std::string expected;
    GeographicLib::MGRS::Forward(utm.zone, latitude >= 0, utm.easting, utm.northing, latitude, 5,
                                 expected);
    std::string text = mgrsText(latitude, longitude, 5);
    text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
    ASSERT_EQ((utm.zone < 10 ? "0" : "") + text, expected) << latitude << " " << longitude;
  }
}
#else
TEST(UtmReference, WithinAMetreBetweenTheBands) {
  GTEST_SKIP() << "GeographicLib is not installed (libgeographiclib-dev): no comparison";
}
#endif

}  // namespace
}  // namespace vgps
