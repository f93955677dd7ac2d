#include "gps/nmea.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>

#include "base/number.h"
#include "tests/fakes/gps_world.h"
#include "tests/fakes/sample_lines.h"
#include "tests/places.h"

namespace vgps {
namespace {

// The numbers of the marked satellites.
std::string satellites(const GpsWorld& world, uint8_t SatelliteInfo::*mark) {
  std::string numbers;
  for (size_t i = 0; i < kSatelliteSlots; ++i) {
    if (world.fix.satellites->slots[i].*mark != 0) numbers += ' ' + std::to_string(i);
  }
  return numbers.empty() ? "none" : numbers.substr(1);
}

std::string dayAndTime(const DateTime& time) {
  char text[64];
  std::snprintf(text, sizeof text, "%u-%02u-%02u %02u:%02u:%02u.%03u", unsigned{time.year},
                unsigned{time.month}, unsigned{time.day}, unsigned{time.hour},
                unsigned{time.minute}, unsigned{time.second}, unsigned{time.millisecond});
  return text;
}

#define NUMBER(member) \
  [](const GpsWorld& world) { return shortestText(static_cast<double>(world.member)); }

const std::map<std::string, std::string (*)(const GpsWorld&)> kValues = {
    {"latitude", NUMBER(fix.latitude)},
    {"longitude", NUMBER(fix.longitude)},
    {"altitude", NUMBER(fix.altitude)},
    {"course", NUMBER(fix.course)},
    {"variation", NUMBER(fix.magneticVariation)},
    {"knots", NUMBER(fix.speedKnots)},
    {"m/s", NUMBER(fix.speedMps)},
    {"km/h", NUMBER(fix.speedKmh)},
    {"mph", NUMBER(fix.speedMph)},
    {"status", NUMBER(fix.fixStatus)},
    {"inView", NUMBER(fix.satellites->inViewCount)},
    {"pdop", NUMBER(fix.satellites->pdop)},
    {"hdop", NUMBER(fix.satellites->hdop)},
    {"vdop", NUMBER(fix.satellites->vdop)},
    {"elevation12", NUMBER(fix.satellites->slots[12].elevation)},
    {"azimuth12", NUMBER(fix.satellites->slots[12].azimuth)},
    {"snr14", NUMBER(fix.satellites->slots[14].snr)},
    {"snr7", NUMBER(fix.satellites->slots[7].snr)},
    {"greatestAltitude", NUMBER(state.maxAltitude)},
    {"greatestSpeed", NUMBER(state.maxSpeed)},
    {"newGreatestSpeeds", NUMBER(hooks.maxSpeedChanges)},
    {"repaints", NUMBER(hooks.repaints)},
    {"utc", [](const GpsWorld& world) { return dayAndTime(world.fix.utcTime); }},
    {"local", [](const GpsWorld& world) { return dayAndTime(world.fix.localTime); }},
    {"visible", [](const GpsWorld& world) { return satellites(world, &SatelliteInfo::visible); }},
    {"used", [](const GpsWorld& world) { return satellites(world, &SatelliteInfo::used); }},
    {"sounds",
     [](const GpsWorld& world) {
       std::string all;
       for (const std::string& sound : world.hooks.sounds) all += (all.empty() ? "" : " ") + sound;
       return all.empty() ? "none" : all;
     }},
};

#undef NUMBER

void setOption(GpsOptions& options, const std::string& name, const std::string& value) {
  if (name == "utcOffset") options.utcOffsetMinutes = std::stoi(value);
  if (name == "speedUnit") options.speedUnit = std::stoi(value);
  if (name == "geoid") options.altitudeFromGeoidField = value == "1";
}

TEST(Nmea, SentencesSayWhatIsListed) {
  std::ifstream lines(std::filesystem::path(sourceFolder()) / "tests/answers/sentences.txt");
  if (!lines) GTEST_SKIP() << "tests/answers/sentences.txt is not here";
  auto world = std::make_unique<GpsWorld>();
  std::string sentence;
  size_t compared = 0;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string name, value;
    words >> name >> std::ws;
    std::getline(words, value);
    if (line.empty()) world = std::make_unique<GpsWorld>();
    if (line.starts_with('@')) setOption(world->state.options, name.substr(1), value);
    if (line.starts_with('$')) world->parse(sentence = line);
    if (!line.starts_with("  ")) continue;
    ASSERT_TRUE(kValues.contains(name)) << line;
    EXPECT_EQ(kValues.at(name)(*world), value) << name << " after " << sentence;
    ++compared;
  }
  EXPECT_GT(compared, 100U);
}

TEST(Nmea, AnglesHoldTheirMinutesAs32BitFloats) {
  struct {
    const char* field;
    double degrees;
    int32_t milliseconds;
  } const rows[] = {
      {"4807.038", 48.117300001780194, 173222280},
      {"01131.000", 11.516666666666667, 41460000},
      {"4916.45", 49.274166679382326, 177387000},
      {"12311.12", 123.18533333142598, 443467199},
      {"3723.2475", 37.387458324432373, 134594849},
      {"2342.4242", 23.707069969177248, 85345451},
      {"8959.9999", 89.999998346964517, 323999994},
      {"17959.9999", 179.99999834696453, 647999994},
      {"00007.6543", 0.12757167021433513, 459258},
      {"0000.0001", 1.6666666245631252e-06, 5},
      {"4807", 0, 0},  // without a point there is no angle
      {"", 0, 0},
      {".5", 0.0083333333333333332, 30000},
      {"7.5", 0.125, 450000},
      {"-4807.5", -47.875, -172350000},  // the sign belongs to the whole degrees alone
  };
  for (const auto& row : rows) {
    int32_t milliseconds = -1;
    double degrees = -1;
    ddmmToDegrees(row.field, &milliseconds, &degrees);
    EXPECT_EQ(degrees, row.degrees) << row.field;
    EXPECT_EQ(milliseconds, row.milliseconds) << row.field;
  }
  int32_t huge = 0;
  ddmmToDegrees("99999999999.0", &huge, nullptr);
  EXPECT_EQ(huge, 2147483647);
}

TEST(Nmea, RecognitionIsByPrefix) {
  struct {
    const char* line;
    bool accepted;
    int32_t kind, tag;
  } const rows[] = {
      {"$GPGGA", true, kGga, 0x410},
      {"$GPGGAX,1", true, kGga, 0x410},
      {"$GPRMCY,1,A", true, kRmc, 0x88},
      {"$GPGSA,A,3", true, kSatellites, 0x3A0},
      {"$GPGSV,1,1", true, kSatellites, 0x3A0},
      {"$GNGGA,123519,4807.038,N,01131.000,E,1", true, 0, 0},
      {"$PSRF100,0,9600", true, 0, 0},
      {"$", true, 0, 0},
      {"$GPG", true, 0, 0},
      {"GPGGA,123519,4807.038,N", false, 0, 0},
      {"", false, 0, 0},
      {"!AIVDM,1,1", false, 0, 0},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    const NmeaSentence out = world.parse(row.line);
    EXPECT_EQ(world.accepted, row.accepted) << row.line;
    EXPECT_EQ(out.kind, row.kind) << row.line;
    EXPECT_EQ(out.tag, row.tag) << row.line;
    EXPECT_EQ(world.fix.latitude, 0) << row.line;
  }
}

TEST(Nmea, WithoutApplySatellitesChangeOnlyTheirUseFlag) {
  GpsWorld world;
  world.parse(kGgaLine, false);
  const NmeaSentence out = world.parse("$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39", false);
  EXPECT_EQ(out.gsa.slots[4].used, 1);
  EXPECT_EQ(out.gsa.slots[1].used, 0);
  world.parse("$GPGSV,2,1,08,01,40,083,46,02,17,308,41*75", false);
  EXPECT_EQ(world.fix.satellites->pdop, 0);
  EXPECT_EQ(world.fix.satellites->inViewCount, 0);
  EXPECT_EQ(world.fix.satellites->slots[4].used, 0);
  EXPECT_EQ(world.fix.satellites->slots[1].visible, 0);
  EXPECT_TRUE(world.hooks.sounds.empty());
  EXPECT_TRUE(world.state.satellitesInUseKnown);
}

TEST(Nmea, TheChecksumStaysInTheLastFieldAndIsNotCompared) {
  GpsWorld world;
  world.parse("$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*00");
  EXPECT_EQ(world.fix.altitude, 545);
  EXPECT_EQ(world.parse("$GPRMC,123519,A*6C").rmc.valid, 0);
  EXPECT_EQ(world.parse("$GPRMC,123519,A,").rmc.valid, 1);
  EXPECT_EQ(world.parse("$GPGSV,2,1,08,01,40,083,45*75").gsv.slots[1].snr, 45);
}

TEST(Nmea, HostileLinesAreTakenAsTheyCome) {
  const std::string lines[] = {
      "$GPGGA" + std::string(5000, ','),
      "$GPRMC" + std::string(5000, ','),
      "$GPGSA" + std::string(5000, ','),
      "$GPGSV" + std::string(5000, ','),
      "$GPGGA," + std::string(100000, '9') + "," + std::string(100000, '9') + "." +
          std::string(100000, '9') + ",N,1.1,E," + std::string(100000, '9') + ",1,1,-99999999999",
      "$GPRMC,1,A,1e400.1,N,-1e-400.1,E,1e999,nan,99999999999,inf,W",
      std::string("$GPRMC,\0\0,A\0,4807.038\0,N", 24),
      "$GPGSV,-1,-1,-1,-1,-1,-1,-1,99999999999,1,1,1",
      "$GPGSA,A,3,-1,99999999999,-99999999999,,,,,,,,,,1e999,-1e999,nan",
  };
  for (const std::string& line : lines) {
    GpsWorld world;
    world.parse(line);
    EXPECT_TRUE(world.accepted);
    EXPECT_FALSE(std::isnan(world.fix.course));
  }
}

TEST(Nmea, FieldsAreCutAtEveryComma) {
  std::vector<std::string_view> fields;
  splitFields("$GPGGA,,a,b*47", fields);
  EXPECT_EQ(fields, (std::vector<std::string_view>{"$GPGGA", "", "a", "b*47"}));
  splitFields("", fields);
  EXPECT_EQ(fields, (std::vector<std::string_view>{""}));
  splitFields("$,", fields);
  EXPECT_EQ(fields, (std::vector<std::string_view>{"$", ""}));
}

TEST(Nmea, ChecksumsAreToldApart) {
  EXPECT_EQ(checkNmeaChecksum(kGgaLine), Checksum::right);
  EXPECT_EQ(checkNmeaChecksum(kRmcLine), Checksum::right);
  EXPECT_EQ(checkNmeaChecksum("$GPGGA,1*00"), Checksum::wrong);
  EXPECT_EQ(checkNmeaChecksum("$GPGGA,1*6E" + kRmcLine), Checksum::wrong);  // two glued together
  EXPECT_EQ(checkNmeaChecksum("$GPGGA,1"), Checksum::absent);
  EXPECT_EQ(checkNmeaChecksum("$GPGGA,1*4"), Checksum::absent);
  EXPECT_EQ(checkNmeaChecksum("$GPGGA,1*4z"), Checksum::absent);
  EXPECT_EQ(nmeaChecksum("$PSRF105,1*3E"), 0x3E);
}

}  // namespace
}  // namespace vgps
