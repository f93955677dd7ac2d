#include "gps/nmea.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/fakes/gps_world.h"
#include "tests/fakes/sample_lines.h"

namespace vgps {
namespace {

std::string gga(const std::string& altitude, const std::string& geoid,
                const std::string& quality = "1") {
  return "$GPGGA,123519,4807.038,N,01131.000,E," + quality + ",08,0.9," + altitude + ",M," + geoid +
         ",M,,*47";
}

std::string rmc(const std::string& time, const std::string& status = "A") {
  return "$GPRMC," + time + "," + status + ",4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A";
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

TEST(Nmea, SpeedsInFourUnitsFromKnotsRoundedTo32Bits) {
  struct {
    const char* field;
    double knots, mps, kmh, mph;
  } const rows[] = {
      {"022.4", 22.399999618530273, 11.523554605695949, 41.484799250793458, 25.777459080739511},
      {"10", 10, 5.1444441080093384, 18.519999980926514, 11.507794428449568},
      {"23.4", 23.399999618530273, 12.037999016496883, 43.336799248886109, 26.928238523584469},
      {"355.1", 355.10000610351562, 182.67921341533111, 657.64521062641143, 408.64178717804447},
      {"0.1", 0.10000000149011612, 0.051444441846675293, 0.18520000256896019, 0.11507794599929068},
      {"100", 100, 51.444441080093384, 185.19999980926514, 115.07794428449567},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    world.parse(std::string("$GPRMC,1,A,4807.038,N,01131.000,E,") + row.field);
    EXPECT_EQ(world.fix.speedKnots, row.knots) << row.field;
    EXPECT_EQ(world.fix.speedMps, row.mps) << row.field;
    EXPECT_EQ(world.fix.speedKmh, row.kmh) << row.field;
    EXPECT_EQ(world.fix.speedMph, row.mph) << row.field;
  }
}

TEST(Nmea, WhatASentenceDoesNotSay) {
  GpsWorld world;
  world.parse(kGgaLine);
  EXPECT_EQ(world.fix.satellites->hdop, 0);  // field 8 is not read
  world.parse(kRmcLine);
  EXPECT_EQ(world.fix.utcTime.dayOfWeek, 0);
  EXPECT_EQ(world.fix.localTime.day, 0);  // of the local time only the time of day is kept
  EXPECT_EQ(world.fix.altitude, 545);
}

TEST(Nmea, OwnPositionSentenceIsLongitudeFirstInSignedDegrees) {
  GpsWorld world;
  world.parse(kRmcLine);
  const double maxSpeed = world.state.maxSpeed;
  world.parse("$GPRMCX,101010.000,A,23.7,-37.9,100,90,36000");
  EXPECT_EQ(world.fix.longitude, 23.7);
  EXPECT_EQ(world.fix.latitude, -37.9);
  EXPECT_EQ(world.fix.altitude, 100);
  EXPECT_EQ(world.fix.course, 90);
  EXPECT_EQ(world.fix.speedKnots, 0);
  EXPECT_EQ(world.fix.speedMph, 0);
  EXPECT_EQ(world.state.maxSpeed, maxSpeed);
  EXPECT_EQ(world.fix.utcTime.hour, 12);  // its time is not read
  const NmeaSentence out = world.parse("$GPRMCX,101010.000,A,23.7,37.9,100,90,36");
  EXPECT_EQ(out.kind, kRmc);
  EXPECT_EQ(world.fix.speedKmh, 36);
  EXPECT_EQ(world.fix.speedMps, 10.00000026490954);
  EXPECT_EQ(world.fix.fixStatus, 1);
  world.parse("$GPRMCX,101010.000,V,1");  // too short for a position, not for the status
  EXPECT_EQ(world.fix.fixStatus, 0);
  EXPECT_EQ(world.fix.longitude, 23.7);
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

TEST(Nmea, AltitudeDropsDecimalsAndFallsBackToTheGeoidColumn) {
  struct {
    const char *altitude, *geoid;
    bool always;
    double stored, maximum;
  } const rows[] = {
      {"545.4", "46.9", false, 545, 545},
      {"-12.7", "46.9", false, -12, 0},
      {"", "46.9", false, 46, 46},
      {"0.9", "46.9", false, 46, 46},
      {"0", "0", false, 0, 0},
      {"545.4", "46.9", true, 46, 545},  // field 9 has raised the maximum already
      {"123.9", "", false, 123, 123},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    world.state.options.altitudeFromGeoidField = row.always;
    world.parse(gga(row.altitude, row.geoid));
    EXPECT_EQ(world.fix.altitude, row.stored) << row.altitude;
    EXPECT_EQ(world.state.maxAltitude, row.maximum) << row.altitude;
  }
}

TEST(Nmea, WithoutApplySatellitesChangeOnlyTheirUseFlag) {
  GpsWorld world;
  for (const std::string& line :
       {kGgaLine, std::string("$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39"),
        std::string("$GPGSV,2,1,08,01,40,083,46,02,17,308,41*75")}) {
    world.parse(line, false);
  }
  EXPECT_EQ(world.fix.satellites->pdop, 0);
  EXPECT_EQ(world.fix.satellites->inViewCount, 0);
  EXPECT_EQ(world.fix.satellites->slots[4].used, 0);
  EXPECT_EQ(world.fix.satellites->slots[1].visible, 0);
  EXPECT_TRUE(world.hooks.sounds.empty());
  EXPECT_TRUE(world.state.satellitesInUseKnown);
}

TEST(Nmea, MaximumSpeedIsKeptInTheUnitOfTheTime) {
  GpsWorld world;
  world.parse(kRmcLine);
  world.state.options.speedUnit = 1;
  world.parse(kRmcLine);  // 22.4 knots are less than 41.48, whatever these were
  EXPECT_EQ(world.state.maxSpeed, 41.484799250793458);
  EXPECT_EQ(world.hooks.maxSpeedChanges, 1);
}

TEST(Nmea, TimesAreReadDigitByDigitAndMidnightIsNoTime) {
  struct {
    const char* field;
    uint16_t hour, minute, second, millisecond;
  } const rows[] = {
      {"081836.75", 8, 18, 36, 75},  {"123519.5", 12, 35, 19, 5},
      {"123519.50", 12, 35, 19, 50}, {"123519.1234", 12, 35, 19, 123},
      {"1235", 12, 35, 0, 0},        {"000001", 0, 0, 1, 0},
      {"000000.500", 23, 59, 58, 7},  // nothing stored: the time from before
      {"", 23, 59, 58, 7},           {"12x519", 12, 0, 0, 0},
      {" 12 35 1", 12, 35, 1, 0},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    world.parse(rmc("235958.7"));
    world.parse(rmc(row.field));
    EXPECT_EQ(world.fix.utcTime.hour, row.hour) << row.field;
    EXPECT_EQ(world.fix.utcTime.minute, row.minute) << row.field;
    EXPECT_EQ(world.fix.utcTime.second, row.second) << row.field;
    EXPECT_EQ(world.fix.utcTime.millisecond, row.millisecond) << row.field;
  }
}

TEST(Nmea, LocalTimeBorrowsAndCarriesThroughMidnight) {
  struct {
    const char* utc;
    int32_t offset;
    uint16_t hour, minute;
  } const rows[] = {
      {"233000", -120, 1, 30},  {"233000", 2760, 1, 30}, {"013000", 120, 23, 30},
      {"120000", -330, 17, 30}, {"120000", 0, 12, 0},    {"000100", 1, 0, 0},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    world.state.options.utcOffsetMinutes = row.offset;
    world.parse(rmc(row.utc));
    EXPECT_EQ(world.fix.localTime.hour, row.hour) << row.utc << " " << row.offset;
    EXPECT_EQ(world.fix.localTime.minute, row.minute) << row.utc << " " << row.offset;
  }
}

TEST(Nmea, DamagedDatesLeaveWhatCanBeRead) {
  struct {
    const char* field;
    uint16_t year, month, day;
  } const rows[] = {
      {"220899", 2099, 8, 22},
      {"2208-1", 1999, 8, 22},  // a receiver after the week rollover: -1 wraps in 16 bits
      {"", 2010, 6, 20},        // no day, nothing stored
      {"000000", 2010, 6, 20},
      {"31", 2000, 0, 31},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    world.parse("$GPRMC,1,A,4807.038,N,01131.000,E,1,1,200610");
    world.parse(std::string("$GPRMC,1,A,4807.038,N,01131.000,E,1,1,") + row.field);
    EXPECT_EQ(world.fix.utcTime.year, row.year) << row.field;
    EXPECT_EQ(world.fix.utcTime.month, row.month) << row.field;
    EXPECT_EQ(world.fix.utcTime.day, row.day) << row.field;
  }
}

TEST(Nmea, TheChecksumStaysInTheLastFieldAndIsNotCompared) {
  GpsWorld world;
  world.parse("$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*00");
  EXPECT_EQ(world.fix.altitude, 545);
  EXPECT_EQ(world.parse("$GPRMC,123519,A*6C").rmc.valid, 0);
  EXPECT_EQ(world.parse("$GPRMC,123519,A,").rmc.valid, 1);
  EXPECT_EQ(world.parse("$GPGSV,2,1,08,01,40,083,45*75").gsv.slots[1].snr, 45);
}

TEST(Nmea, OnlyTheExactHemisphereLettersNegate) {
  struct {
    const char *latitude, *longitude;
    int latitudeSign, longitudeSign;
  } const rows[] = {{"S", "W", -1, -1}, {"", "", 1, 1}, {"s", "w", 1, 1}, {"S ", "W*6A", 1, 1}};
  for (const auto& row : rows) {
    GpsWorld world;
    const std::string fields =
        std::string("4807.038,") + row.latitude + ",01131.000," + row.longitude;
    world.parse("$GPRMC,1,A," + fields);
    EXPECT_EQ(std::signbit(world.fix.latitude), row.latitudeSign < 0) << fields;
    EXPECT_EQ(std::signbit(world.fix.longitude), row.longitudeSign < 0) << fields;
    world.parse("$GPGGA,1," + fields + ",1");
    EXPECT_EQ(std::signbit(world.fix.latitude), row.latitudeSign < 0) << fields;
    EXPECT_EQ(std::signbit(world.fix.longitude), row.longitudeSign < 0) << fields;
  }
}

TEST(Nmea, StatusVStillStoresPositionTimeAndSpeed) {
  GpsWorld world;
  world.parse(rmc("123519", "V"));
  EXPECT_EQ(world.fix.fixStatus, 0);
  EXPECT_EQ(world.fix.latitude, 48.117300001780194);
  EXPECT_EQ(world.fix.utcTime.hour, 12);
  EXPECT_EQ(world.fix.speedKnots, 22.399999618530273);
}

TEST(Nmea, SoundsOnlyBetweenQualitiesNoneAndOne) {
  struct {
    std::vector<std::string> lines;
    std::vector<std::string> sounds;
  } const rows[] = {
      {{gga("1", "1", "0"), gga("1", "1", "1")}, {"OK"}},
      {{gga("1", "1", "1"), gga("1", "1", "0")}, {"OK", "ERR2"}},
      {{gga("1", "1", "2"), gga("1", "1", "0")}, {}},
      {{gga("1", "1", "1"), gga("1", "1", "2"), gga("1", "1", "1")}, {"OK"}},
      {{kRmcLine, kGgaLine}, {}},  // RMC has set the status already
      {{kRmcLine, rmc("1", "V"), gga("1", "1", "0")}, {}},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    for (const std::string& line : row.lines) world.parse(line);
    EXPECT_EQ(world.hooks.sounds, row.sounds) << row.lines[0];
    EXPECT_EQ(world.hooks.repaints, static_cast<int>(row.sounds.size()));
  }
}

TEST(Nmea, VariationIsWestWhenItsFieldBeginsWithW) {
  for (const auto& [field, variation] :
       {std::pair{"W*6A", -3.1}, {"W", -3.1}, {"E", 3.1}, {"", 3.1}, {"*6A", 3.1}}) {
    GpsWorld world;
    world.parse(std::string("$GPRMC,1,A,4807.038,N,01131.000,E,1,1,200610,003.1,") + field);
    EXPECT_EQ(world.fix.magneticVariation, variation) << field;
  }
}

TEST(Nmea, GsaMarksUsedSatellitesAndNeverClearsThem) {
  GpsWorld world;
  auto& slots = world.fix.satellites->slots;
  world.parse("$GPGSA,A,3,01,40,05,,-3,,,,,,,34,2.5,1.3,2.1*39");
  EXPECT_EQ(slots[1].used, 1);
  EXPECT_EQ(slots[5].used, 1);
  EXPECT_EQ(slots[34].used, 1);
  EXPECT_EQ(world.fix.satellites->pdop, 2.5F);
  EXPECT_EQ(world.fix.satellites->hdop, 1.3F);
  EXPECT_EQ(world.fix.satellites->vdop, 2.1F);
  const NmeaSentence out = world.parse("$GPGSA,A,3,05,,,,,,,,,,,,2.5,1.3,2.1*39");
  EXPECT_EQ(out.gsa.slots[1].used, 0);
  EXPECT_EQ(slots[1].used, 1);
  world.parse("$GPGSV,1,1,01,01,40,083,46*75");  // listing it anew does
  EXPECT_EQ(slots[1].used, 0);
  EXPECT_EQ(slots[1].visible, 1);
}

TEST(Nmea, GsvListsTheSatellitesInView) {
  GpsWorld world;
  auto& slots = world.fix.satellites->slots;
  const auto visible = [&] {
    std::vector<int> prns;
    for (int i = 0; i < kSatelliteSlots; ++i) {
      if (slots[static_cast<size_t>(i)].visible != 0) prns.push_back(i);
    }
    return prns;
  };
  world.parse("$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75");
  EXPECT_EQ(visible(), (std::vector<int>{1, 2, 12, 14}));
  EXPECT_EQ(slots[12].elevation, 7);
  EXPECT_EQ(slots[12].azimuth, 344);
  EXPECT_EQ(slots[14].snr, 45);
  EXPECT_EQ(world.fix.satellites->inViewCount, 8);
  world.parse("$GPGSV,2,2,08,20,40,083,46");  // a later message adds
  EXPECT_EQ(visible(), (std::vector<int>{1, 2, 12, 14, 20}));
  world.parse("$GPGSV,2,1,08,03,40,083,46");  // the first begins anew
  EXPECT_EQ(visible(), (std::vector<int>{3}));
  world.parse("$GPGSV,1,1,08,01,1,1,1,40,1,1,1,05,1,1,1");  // above 34 the reading ends
  EXPECT_EQ(visible(), (std::vector<int>{1}));
  world.parse("$GPGSV,1,1,08,,,,");  // an empty group is number 0
  EXPECT_EQ(visible(), (std::vector<int>{0}));
  world.parse("$GPGSV,1,1,08,07,40,083");  // the first group may lack its last field
  EXPECT_EQ(visible(), (std::vector<int>{7}));
  EXPECT_EQ(slots[7].snr, 0);
  world.parse("$GPGSV,1,1,08,07,40,083,1,08,40,083");  // a later one not
  EXPECT_EQ(visible(), (std::vector<int>{7}));
  world.parse("$GPGSV,1,1,08,-7,40,083,1,08,40,083,1");
  EXPECT_EQ(visible(), (std::vector<int>{8}));
  std::string many = "$GPGSV,1,1,99";
  for (int i = 0; i < 30; ++i) many += "," + std::to_string(i) + ",1,2,3";
  world.parse(many);  // any number of groups
  EXPECT_EQ(visible().size(), 30U);
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
