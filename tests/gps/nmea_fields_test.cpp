#include <gtest/gtest.h>

#include "gps/accuracy.h"
#include "tests/fakes/gps_world.h"

// What a sentence that ends early still says: a value is read as soon as its last field is there.
namespace vgps {
namespace {

const std::string kGgaFields = "$GPGGA,123519,4807.500,N,01130.000,E,1,08,0.9,545.4,M,46.9,M,,*47";
const std::string kRmcFields = "$GPRMC,123519,A,4807.500,N,01130.000,E,10,084.5,230394,003.5,W*6A";
const std::string kRmcxLine = "$GPRMCX,123519,A,23.5,-37.5,100,90,36*00";
const std::string kBefore[] = {
    "$GPRMC,010203,V,1030.000,S,02030.000,W,50,001.5,040506,007.5,E*6A",
    "$GPGGA,010203,1030.000,S,02030.000,W,2,03,0.9,700,M,90,M,,*47",
};

std::string firstFields(const std::string& line, size_t count) {
  size_t end = 0;
  for (; count > 0 && end != std::string::npos; --count) end = line.find(',', end + 1);
  return line.substr(0, end);
}

struct Value {
  const char* name;
  size_t fields;  // so many are needed
  double (*live)(const GpsFix&);
  double (*reported)(const NmeaSentence&);
  double stored;
};

void cutAtEveryField(const std::string& line, const std::vector<Value>& values, size_t most) {
  for (size_t count = 1; count <= most; ++count) {
    const std::string text = firstFields(line, count);
    for (const bool apply : {true, false}) {
      GpsWorld world;
      for (const std::string& before : kBefore) world.parse(before);
      const GpsWorld& constant = world;
      std::vector<double> before;
      for (const Value& value : values) before.push_back(value.live(constant.fix));
      const NmeaSentence out = world.parse(text, apply);
      for (size_t i = 0; i < values.size(); ++i) {
        const Value& value = values[i];
        ASSERT_NE(before[i], value.stored) << value.name;
        const bool there = count >= value.fields;
        EXPECT_EQ(value.live(world.fix), there && apply ? value.stored : before[i])
            << value.name << " " << text;
        EXPECT_EQ(value.reported(out), there ? value.stored : 0) << value.name << " " << text;
      }
    }
  }
}

#define LIVE(member) [](const GpsFix& fix) { return static_cast<double>(fix.member); }
#define REPORTED(member) [](const NmeaSentence& out) { return static_cast<double>(out.member); }

TEST(NmeaFields, GgaCutAtEveryField) {
  cutAtEveryField(kGgaFields,
                  {{"time", 2, LIVE(utcTime.hour), REPORTED(gga.utc.hour), 12},
                   {"seconds", 2, LIVE(utcTime.second), REPORTED(gga.utc.second), 19},
                   {"local time", 2, LIVE(localTime.hour), REPORTED(gga.local.hour), 12},
                   {"latitude", 6, LIVE(latitude), REPORTED(gga.latitude), 48.125},
                   {"longitude", 6, LIVE(longitude), REPORTED(gga.longitude), 11.5},
                   {"quality", 7, LIVE(fixStatus), REPORTED(gga.quality), 1},
                   {"used", 8, LIVE(satellites->usedCount), REPORTED(gga.usedCount), 8},
                   {"altitude", 10, LIVE(altitude), REPORTED(gga.altitude), 545}},
                  15);
}

TEST(NmeaFields, RmcCutAtEveryField) {
  cutAtEveryField(kRmcFields,
                  {{"time", 2, LIVE(utcTime.hour), REPORTED(rmc.utc.hour), 12},
                   {"local time", 2, LIVE(localTime.minute), REPORTED(rmc.local.minute), 35},
                   {"status", 3, LIVE(fixStatus), REPORTED(rmc.valid), 1},
                   {"latitude", 7, LIVE(latitude), REPORTED(rmc.latitude), 48.125},
                   {"longitude", 7, LIVE(longitude), REPORTED(rmc.longitude), 11.5},
                   {"knots", 8, LIVE(speedKnots), REPORTED(rmc.knots), 10},
                   {"m/s", 8, LIVE(speedMps), REPORTED(rmc.mps), 5.1444441080093384},
                   {"km/h", 8, LIVE(speedKmh), REPORTED(rmc.kmh), 18.519999980926514},
                   {"mph", 8, LIVE(speedMph), REPORTED(rmc.mph), 11.507794428449568},
                   {"course", 9, LIVE(course), REPORTED(rmc.course), 84.5},
                   {"year", 10, LIVE(utcTime.year), REPORTED(rmc.utc.year), 2094},
                   {"month", 10, LIVE(utcTime.month), REPORTED(rmc.utc.month), 3},
                   {"day", 10, LIVE(utcTime.day), REPORTED(rmc.utc.day), 23}},
                  12);
}

TEST(NmeaFields, RmcxCutAtEveryField) {
  cutAtEveryField(kRmcxLine,
                  {{"status", 3, LIVE(fixStatus), REPORTED(rmc.valid), 1},
                   {"longitude", 5, LIVE(longitude), REPORTED(rmc.longitude), 23.5},
                   {"latitude", 5, LIVE(latitude), REPORTED(rmc.latitude), -37.5},
                   {"altitude", 6, LIVE(altitude), REPORTED(rmc.altitude), 100},
                   {"course", 7, LIVE(course), REPORTED(rmc.course), 90},
                   {"km/h", 8, LIVE(speedKmh), REPORTED(rmc.kmh), 36},
                   {"m/s", 8, LIVE(speedMps), REPORTED(rmc.mps), 10.00000026490954},
                   // Units that the sentence does not give are cleared, not left from before.
                   {"knots", 8, LIVE(speedKnots), REPORTED(rmc.knots), 0},
                   {"mph", 8, LIVE(speedMph), REPORTED(rmc.mph), 0}},
                  8);
}

#undef LIVE
#undef REPORTED

TEST(NmeaFields, VariationAndGeoidHeightChangeWithTheFieldsBehindThem) {
  struct {
    std::string line;
    size_t fields;
    double altitude, variation;
  } const rows[] = {
      {kGgaFields, 9, 90, 7.5},  {kGgaFields, 10, 545, 7.5}, {kGgaFields, 11, 545, 7.5},
      {kGgaFields, 12, 46, 7.5}, {kGgaFields, 15, 46, 7.5},  {kRmcFields, 10, 90, 7.5},
      {kRmcFields, 11, 90, 3.5}, {kRmcFields, 12, 90, -3.5}, {kRmcxLine, 8, 100, 7.5},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    world.state.options.altitudeFromGeoidField = true;
    for (const std::string& before : kBefore) world.parse(before);
    world.parse(firstFields(row.line, row.fields));
    EXPECT_EQ(world.fix.altitude, row.altitude) << row.line << row.fields;
    EXPECT_EQ(world.fix.magneticVariation, row.variation) << row.line << row.fields;
  }
}

TEST(NmeaFields, OnlyTheOwnSentenceClearsTheSpareSpeed) {
  GpsWorld world;
  world.fix.speedSpare = 7;
  world.parse(kRmcFields);
  world.parse(firstFields(kRmcxLine, 7));
  world.parse(kRmcxLine, false);
  EXPECT_EQ(world.fix.speedSpare, 7);
  EXPECT_EQ(world.parse(kRmcxLine).rmc.spare, 0);
  EXPECT_EQ(world.fix.speedSpare, 0);
}

TEST(NmeaFields, TheLocalTimeIsReportedInTheZoneChosen) {
  GpsWorld world;
  world.state.options.utcOffsetMinutes = -90;
  EXPECT_EQ(world.parse(kGgaFields, false).gga.local.hour, 14);
  EXPECT_EQ(world.parse(kRmcFields, false).rmc.local.minute, 5);
}

TEST(NmeaFields, EachNewMaximumIsTold) {
  struct {
    const char *altitude, *geoid;
    int told;
  } const rows[] = {{"0", "0", 0},    {"500", "40", 1}, {"500", "40", 1},
                    {"499", "40", 1}, {"501", "40", 2}, {"", "502", 3}};
  for (const bool apply : {true, false}) {
    GpsWorld world;
    for (const auto& row : rows) {
      world.parse(std::string("$GPGGA,1,1.1,N,1.1,E,1,08,0.9,") + row.altitude + ",M," + row.geoid,
                  apply);
      EXPECT_EQ(world.hooks.maxAltitudeChanges, row.told) << row.altitude << " " << row.geoid;
    }
    EXPECT_EQ(world.hooks.maxSpeedChanges, 0);
    world.parse(kRmcFields, apply);
    EXPECT_EQ(world.hooks.maxSpeedChanges, 1);
  }
}

TEST(Accuracy, IsEstimatedFromWhatTheReceiverTells) {
  const auto gst = gstOf("$GNGST,123519,1.2,0.9,0.7,12.0,0.3,0.4,0.8*5C");
  ASSERT_TRUE(gst);
  const struct {
    int32_t quality;
    double hdop, vdop;
    std::optional<GstReport> gst;
    double horizontal, vertical;  // 0: unknown
  } rows[] = {
      {1, 1.3, 2, {}, 5.2, 8},    {2, 1.3, 0, {}, 1.95, 0},   {0, 1.3, 2, gst, 0, 0},
      {1, 0, 2, {}, 0, 0},        {1, 99.99, 99, {}, 0, 0},   {4, 0.6, 1, {}, 0, 0},
      {4, 0.6, 1, gst, 0.5, 0.8}, {1, 1.3, 2, gst, 0.5, 0.8}, {6, 1, 1, {}, 0, 0},
  };
  for (const auto& row : rows) {
    const auto found = estimateAccuracy(row.quality, row.hdop, row.vdop, row.gst);
    EXPECT_NEAR(found ? found->horizontal : 0, row.horizontal, 1e-12) << row.quality;
    EXPECT_NEAR(found ? found->vertical : 0, row.vertical, 1e-12) << row.quality;
    if (found) {
      EXPECT_EQ(found->byReceiver, row.gst.has_value());
    }
  }
  for (const char* const line :
       {"", "$", "$GP", "$GPGST", "$GPGST,1,,,,,,,*57", "$GPGSV,1,1,1,1,1,1,1,1",
        "GPGST,1,1,1,1,1,1,1,1", "$GPGST,1,1,1,1,1,nan,1,1"}) {
    EXPECT_FALSE(gstOf(line)) << line;
  }
}

}  // namespace
}  // namespace vgps
