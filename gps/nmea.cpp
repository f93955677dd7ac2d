#include "gps/nmea.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "base/number.h"
#include "geo/units.h"
#include "gps/fields.h"
#include "gps/gps_fix.h"

namespace vgps {
namespace {

constexpr int32_t kRmcTag = 0x88;
constexpr int32_t kGgaTag = 0x410;
constexpr int32_t kSatellitesTag = 0x3A0;

double degreesOf(std::string_view field) {
  double degrees = 0;
  ddmmToDegrees(field, nullptr, &degrees);
  return degrees;
}

double signedDegrees(std::string_view field, std::string_view hemisphere, char negative) {
  const double degrees = degreesOf(field);
  return hemisphere.size() == 1 && hemisphere[0] == negative ? -degrees : degrees;
}

float leadingFloat(std::string_view field) { return static_cast<float>(leadingDouble(field)); }

int twoDigits(const char* p) {
  const unsigned tens = static_cast<unsigned char>(p[0] - '0');
  const unsigned ones = static_cast<unsigned char>(p[1] - '0');
  return tens < 10 && ones < 10 ? static_cast<int>(tens * 10 + ones) : -1;
}

// Three numbers of two digits each, as receivers write times and dates; the general reading takes
// what damaged lines leave of them ("1235", "2208-1").
bool readThreePairs(std::string_view& rest, uint16_t& a, uint16_t& b, uint16_t& c) {
  if (rest.size() >= 6) {
    const int first = twoDigits(rest.data());
    const int second = twoDigits(rest.data() + 2);
    const int third = twoDigits(rest.data() + 4);
    if (first >= 0 && second >= 0 && third >= 0) {
      a = static_cast<uint16_t>(first);
      b = static_cast<uint16_t>(second);
      c = static_cast<uint16_t>(third);
      rest.remove_prefix(6);
      return true;
    }
  }
  return scanUint16(rest, 2, a) && scanUint16(rest, 2, b) && scanUint16(rest, 2, c);
}

// hhmmss.sss; the milliseconds are the digits read, so ".5" is 5 ms.
DateTime timeOf(std::string_view field) {
  DateTime time;
  if (!readThreePairs(field, time.hour, time.minute, time.second)) return time;
  if (field.empty() || field.front() != '.') return time;
  field.remove_prefix(1);
  scanUint16(field, 3, time.millisecond);
  return time;
}

bool isMidnight(const DateTime& time) {
  return time.hour == 0 && time.minute == 0 && time.second == 0;
}

void storeTimeOfDay(DateTime& to, const DateTime& from) {
  to.hour = from.hour;
  to.minute = from.minute;
  to.second = from.second;
  to.millisecond = from.millisecond;
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// The exclusive-or of all characters but the first, eight at a time, folded at the end.
uint8_t xorOf(std::string_view sentence) {
  if (!sentence.empty()) sentence.remove_prefix(1);
  uint64_t wide = 0;
  for (; sentence.size() >= sizeof wide; sentence.remove_prefix(sizeof wide)) {
    uint64_t eight = 0;
    std::memcpy(&eight, sentence.data(), sizeof eight);
    wide ^= eight;
  }
  for (const char c : sentence) wide ^= static_cast<uint8_t>(c);
  wide ^= wide >> 32;
  wide ^= wide >> 16;
  wide ^= wide >> 8;
  return static_cast<uint8_t>(wide);
}

// The first six characters as one number, so that a sentence is told by integer compares.
constexpr uint64_t nameKey(std::string_view text) {
  std::array<char, 8> name{};
  std::copy_n(text.data(), 6, name.data());
  return std::bit_cast<uint64_t>(name);
}

}  // namespace

NmeaSentence::NmeaSentence() { std::memset(static_cast<void*>(this), 0, sizeof *this); }

// Only what a sentence of that kind can fill: the satellite records are large, and a line that is
// none of them fills nothing. The size comes from a table so that the library clears it; compilers
// inline a slow instruction for a size they know.
void NmeaSentence::begin(int32_t newKind, int32_t newTag) {
  static constexpr std::array<size_t, 5> kRecordSizes = {0, sizeof rmc, sizeof gga, 0,
                                                         std::max(sizeof gsa, sizeof gsv)};
  kind = newKind;
  tag = newTag;
  std::memset(static_cast<void*>(&rmc), 0, kRecordSizes[static_cast<size_t>(newKind)]);
}

void splitFields(std::string_view sentence, std::vector<std::string_view>& fields) {
  fields.clear();
  for (;;) {
    const size_t comma = sentence.find(',');
    fields.push_back(sentence.substr(0, comma));
    if (comma == std::string_view::npos) return;
    sentence.remove_prefix(comma + 1);
  }
}

//  48 07.038      whole degrees, then minutes from two characters before the point
//  011 31.000
void ddmmToDegrees(std::string_view field, int32_t* milliseconds, double* degrees) {
  if (milliseconds != nullptr) *milliseconds = 0;
  if (degrees != nullptr) *degrees = 0;
  const size_t point = field.find('.');
  if (point == std::string_view::npos) return;
  const size_t minutesAt = point < 2 ? 0 : point - 2;
  const double minutes = leadingFloat(field.substr(minutesAt));
  const int32_t whole = leadingInt(field.substr(0, minutesAt));
  if (degrees != nullptr) *degrees = whole + minutes / 60.0;
  if (milliseconds != nullptr) {
    const double exact = whole * 3600000.0 + minutes * 60000.0;
    constexpr double kLimit = 2147483647.0;
    *milliseconds = static_cast<int32_t>(exact > kLimit    ? kLimit
                                         : exact < -kLimit ? -kLimit
                                         : exact == exact  ? exact
                                                           : 0.0);
  }
}

uint8_t nmeaChecksum(std::string_view sentence) {
  return xorOf(sentence.substr(0, sentence.find('*')));
}

Checksum checkNmeaChecksum(std::string_view sentence) {
  // The last star: in two sentences glued together the first one belongs to a lost half.
  const size_t star = sentence.rfind('*');
  if (star == std::string_view::npos || sentence.size() < star + 3) return Checksum::absent;
  const int high = hexDigit(sentence[star + 1]);
  const int low = hexDigit(sentence[star + 2]);
  if (high < 0 || low < 0) return Checksum::absent;
  return xorOf(sentence.substr(0, star)) == high * 16 + low ? Checksum::right : Checksum::wrong;
}

void GpsFix::applyPosition(double newLongitude, double newLatitude) {
  longitude = newLongitude;
  latitude = newLatitude;
}

// Receivers without a clock yet send 000000; a sentence of that time leaves the stored one alone.
void GpsFix::applyTimeOfDay(const DateTime& utc, const DateTime& local) {
  if (isMidnight(utc)) return;
  storeTimeOfDay(utcTime, utc);
  storeTimeOfDay(localTime, local);
}

void GpsFix::takeAltitude(double metres, bool apply) {
  if (metres > state.maxAltitude) {
    state.maxAltitude = metres;
    state.hooks.maxAltitudeChanged();
  }
  if (apply) altitude = metres;
}

// $GPGGA,time,lat,N,lon,E,quality,used,hdop,altitude,M,geoid,M,age,station*hh
//   0     1    2   3  4  5    6     7    8     9     10  11  12 13   14
void GpsFix::parseGga(std::string_view text, NmeaSentence::Quality& out, bool apply) {
  const Fields fields(text);
  if (fields.has(6)) {
    out.quality = leadingInt(fields[6]);
    if (apply) {
      const bool lost = fixStatus == 1 && out.quality == 0;
      const bool gained = fixStatus == 0 && out.quality == 1;
      if (lost || gained) {
        state.hooks.playSound(lost ? "ERR2" : "OK");
        state.hooks.repaint();
      }
      fixStatus = out.quality;
    }
  }
  if (fields.has(5)) {
    out.latitude = signedDegrees(fields[2], fields[3], 'S');
    out.longitude = signedDegrees(fields[4], fields[5], 'W');
    if (apply) applyPosition(out.longitude, out.latitude);
  }
  if (fields.has(1)) {
    out.utc = timeOf(fields[1]);
    out.local = timeOfDayMinusMinutes(out.utc, state.options.utcOffsetMinutes);
    if (apply) applyTimeOfDay(out.utc, out.local);
  }
  if (fields.has(7)) {
    out.usedCount = leadingInt(fields[7]);
    if (apply) satellites->usedCount = out.usedCount;
  }
  if (fields.has(9)) {
    out.altitude = leadingInt(fields[9]);
    takeAltitude(out.altitude, apply);
  }
  // Some receivers leave field 9 empty or report their height in the geoid column.
  if (fields.has(11) && (out.altitude == 0 || state.options.altitudeFromGeoidField)) {
    out.altitude = leadingInt(fields[11]);
    takeAltitude(out.altitude, apply);
  }
}

// $GPRMC,time,status,lat,N,lon,E,knots,course,date,variation,W*hh
//   0     1     2     3  4  5  6   7     8     9      10     11
void GpsFix::parseRmc(std::string_view text, NmeaSentence::Position& out, bool apply) {
  const Fields fields(text);
  if (fields.has(2)) {
    out.valid = fields[2] == "A" ? 1 : 0;
    if (apply) fixStatus = out.valid;
  }
  if (fields[0] == "$GPRMCX") {
    parseRmcx(text, out, apply);
    return;
  }
  if (fields.has(6)) {
    out.latitude = signedDegrees(fields[3], fields[4], 'S');
    out.longitude = signedDegrees(fields[5], fields[6], 'W');
    if (apply) applyPosition(out.longitude, out.latitude);
  }
  if (fields.has(1)) {
    out.utc = timeOf(fields[1]);
    out.local = timeOfDayMinusMinutes(out.utc, state.options.utcOffsetMinutes);
    if (apply) applyTimeOfDay(out.utc, out.local);
  }
  if (fields.has(9)) {
    std::string_view date = fields[9];
    readThreePairs(date, out.utc.day, out.utc.month, out.utc.year);
    out.utc.year = static_cast<uint16_t>(out.utc.year + 2000);
    if (apply && out.utc.day != 0) {
      utcTime.year = out.utc.year;
      utcTime.month = out.utc.month;
      utcTime.day = out.utc.day;
    }
  }
  if (fields.has(7)) takeSpeed(leadingFloat(fields[7]), out, apply);
  if (fields.has(8)) {
    out.course = leadingDouble(fields[8]);
    if (apply) course = out.course;
  }
  if (fields.has(10)) {
    out.magneticVariation = leadingDouble(fields[10]);
    // Unlike the hemispheres this letter may be the last field, with the checksum behind it.
    const bool west = fields.has(11) && !fields[11].empty() && fields[11][0] == 'W';
    if (west) out.magneticVariation = -out.magneticVariation;
    if (apply) magneticVariation = out.magneticVariation;
  }
}

void GpsFix::takeSpeed(double knots, NmeaSentence::Position& out, bool apply) {
  const Speeds speeds = speedsFromKnots(knots);
  out.knots = speeds.knots;
  out.mps = speeds.mps;
  out.kmh = speeds.kmh;
  out.mph = speeds.mph;
  const double inUnit = speedInUnit(speeds, state.options.speedUnit);
  if (inUnit > state.maxSpeed) {
    state.maxSpeed = inUnit;
    state.hooks.maxSpeedChanged();
  }
  if (!apply) return;
  speedKnots = speeds.knots;
  speedMps = speeds.mps;
  speedKmh = speeds.kmh;
  speedMph = speeds.mph;
}

// The program's own sentence for simulated positions: signed degrees, longitude first, no letters.
// $GPRMCX,time,A,lon,lat,altitude,course,km/h
//    0     1   2  3   4     5       6     7
void GpsFix::parseRmcx(std::string_view text, NmeaSentence::Position& out, bool apply) {
  const Fields fields(text);
  if (!fields.has(4)) return;
  out.longitude = leadingDouble(fields[3]);
  out.latitude = leadingDouble(fields[4]);
  if (apply) applyPosition(out.longitude, out.latitude);
  if (fields.has(5)) {
    out.altitude = leadingDouble(fields[5]);
    if (apply) altitude = out.altitude;
  }
  if (fields.has(6)) {
    out.course = leadingDouble(fields[6]);
    if (apply) course = out.course;
  }
  if (fields.has(7)) {
    out.kmh = leadingDouble(fields[7]);
    out.mps = out.kmh / kKmhPerMps;
    if (apply) {
      speedKnots = speedMph = speedSpare = 0;
      speedMps = out.mps;
      speedKmh = out.kmh;
    }
  }
}

// $GPGSA,mode,fix,prn x 12,pdop,hdop,vdop*hh
//   0     1    2   3..14   15   16   17
void GpsFix::parseGsa(std::string_view text, NmeaSentence::Active& out, bool apply) {
  const Fields fields(text);
  for (size_t i = 3; i <= 14 && fields.has(i); ++i) {
    if (fields[i].empty()) continue;
    const int32_t prn = leadingInt(fields[i]);
    if (prn < 0 || prn >= kSatelliteSlots) continue;
    out.slots[static_cast<size_t>(prn)].used = 1;
    // Never cleared here: a satellite once used stays marked until GSV lists it anew.
    if (apply) satellites->slots[static_cast<size_t>(prn)].used = 1;
  }
  const auto takeDop = [&](size_t index, float& to, float& live) {
    if (!fields.has(index)) return;
    to = leadingFloat(fields[index]);
    if (apply) live = to;
  };
  takeDop(15, out.pdop, satellites->pdop);
  takeDop(16, out.hdop, satellites->hdop);
  takeDop(17, out.vdop, satellites->vdop);
  state.satellitesInUseKnown = true;
}

// $GPGSV,messages,message,in view,{prn,elevation,azimuth,snr} x 1..4*hh
//   0       1        2       3      4      5        6     7
void GpsFix::parseGsv(std::string_view text, NmeaSentence::InView& out, bool apply) {
  const Fields fields(text);
  if (!fields.has(2)) return;
  if (leadingInt(fields[2]) == 1 && apply) {
    for (SatelliteInfo& slot : satellites->slots) slot.visible = 0;
  }
  if (fields.has(6)) takeSatellites(fields, out, apply);
  if (fields.has(3)) {
    out.inViewCount = leadingInt(fields[3]);
    if (apply) satellites->inViewCount = out.inViewCount;
  }
}

// Puts a group into its slot. False when the list ends there: slots are numbered by PRN.
bool GpsFix::takeSatellite(const Fields& fields, size_t at, NmeaSentence::InView& out, bool apply) {
  const int32_t prn = leadingInt(fields[at]);
  if (prn >= kSatelliteSlots) return false;
  if (prn < 0) return true;
  const float elevation = leadingFloat(fields[at + 1]);
  const float azimuth = leadingFloat(fields[at + 2]);
  const float snr = fields.has(at + 3) ? leadingFloat(fields[at + 3]) : 0;
  // Field by field into both: copying what was just written makes the processor wait for it.
  const auto fill = [&](SatelliteInfo& slot) {
    slot.visible = 1;
    slot.used = 0;
    slot.prn = prn;
    slot.elevation = elevation;
    slot.azimuth = azimuth;
    slot.snr = snr;
  };
  fill(out.slots[static_cast<size_t>(prn)]);
  if (apply) fill(satellites->slots[static_cast<size_t>(prn)]);
  return true;
}

// Groups of four fields. The first may lack its last field (reads 0), later ones must be whole.
void GpsFix::takeSatellites(const Fields& fields, NmeaSentence::InView& out, bool apply) {
  static_assert(Fields::kKept % 4 == 0);
  if (!takeSatellite(fields, 4, out, apply)) return;
  size_t at = 8;
  for (; at + 4 <= fields.size(); at += 4) {
    if (!takeSatellite(fields, at, out, apply)) return;
  }
  bool more = fields.more();
  for (std::string_view rest = more ? fields.rest() : std::string_view(); more;) {
    const Fields further(rest);
    for (at = 0; at + 4 <= further.size(); at += 4) {
      if (!takeSatellite(further, at, out, apply)) return;
    }
    more = further.more();
    if (more) rest = further.rest();
  }
}

bool GpsFix::parseSentence(std::string_view text, NmeaSentence& out, bool apply) {
  out.begin(kNoSentence, 0);
  if (text.empty() || text[0] != '$') return false;
  if (text.size() < 6) return true;
  const uint64_t key = nameKey(text);
  if (key == nameKey("$GPGGA")) {
    out.begin(kGga, kGgaTag);
    parseGga(text, out.gga, apply);
  } else if (key == nameKey("$GPRMC")) {
    out.begin(kRmc, kRmcTag);
    parseRmc(text, out.rmc, apply);
  } else if (key == nameKey("$GPGSA")) {
    out.begin(kSatellites, kSatellitesTag);
    parseGsa(text, out.gsa, apply);
  } else if (key == nameKey("$GPGSV")) {
    out.begin(kSatellites, kSatellitesTag);
    parseGsv(text, out.gsv, apply);
  }
  return true;
}

}  // namespace vgps
