#include "gps/nmea.h"

#include <algorithm>
#include <cstring>

#include "base/number.h"
#include "geo/units.h"
#include "gps/gps_fix.h"

namespace vgps {
namespace {

constexpr int32_t kRmcTag = 0x88;
constexpr int32_t kGgaTag = 0x410;
constexpr int32_t kSatellitesTag = 0x3A0;

// The same result as `ddmmToDegrees` in a single pass, for fields of digits, a point, and digits.
// Returns false for any other field.
bool readPlainAngle(std::string_view field, double& degrees) {
  constexpr size_t kMostDigits = 8;
  size_t at = 0;
  uint32_t whole = 0;
  for (; at < field.size() && isDigit(field[at]); ++at) {
    whole = whole * 10 + static_cast<uint32_t>(field[at] - '0');
  }
  if (at == 0 || at > kMostDigits || at == field.size() || field[at] != '.') return false;
  const size_t point = at++;
  uint64_t decimals = 0;
  for (; at < field.size() && isDigit(field[at]); ++at) {
    decimals = decimals * 10 + static_cast<uint64_t>(field[at] - '0');
  }
  const size_t count = at - point - 1;
  if (count > kMostDigits || at != field.size()) return false;
  const double power = kPowersOfTen[count];
  const double scaled = whole % 100 * power + static_cast<double>(decimals);
  const auto minutes = static_cast<float>(scaled / power);
  degrees = static_cast<int32_t>(whole / 100) + double{minutes} / 60.0;
  return true;
}

double degreesOf(std::string_view field) {
  double degrees = 0;
  if (!readPlainAngle(field, degrees)) ddmmToDegrees(field, nullptr, &degrees);
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

// Reads three two-digit numbers, as in times and dates. What remains in damaged lines ("1235",
// "2208-1") is left to the general parser.
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

// hhmmss.sss. The milliseconds are the digits as written, so ".5" means 5 ms.
DateTime timeOf(std::string_view field) {
  DateTime time;
  if (!readThreePairs(field, time.hour, time.minute, time.second)) return time;
  if (field.empty() || field.front() != '.') return time;
  field.remove_prefix(1);
  scanUint16(field, 3, time.millisecond);
  return time;
}

// The decimals of hhmmss.sss as a fraction of a second.
uint32_t millisecondsOfTime(std::string_view field) {
  const size_t point = std::min(field.find('.'), field.size());
  uint32_t milliseconds = 0;
  uint32_t unit = 100;
  for (size_t at = point + 1; at < field.size() && isDigit(field[at]); ++at, unit /= 10) {
    milliseconds += unit * static_cast<uint32_t>(field[at] - '0');
  }
  return milliseconds;
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

}  // namespace

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

namespace {

void noteAltitude(GpsState& state, double meters) {
  if (meters <= state.maxAltitude) return;
  state.maxAltitude = meters;
  state.hooks.maxAltitudeChanged();
}

void noteSpeed(GpsState& state, const Speeds& speeds) {
  const double inUnit = speedInUnit(speeds, state.options.speedUnit);
  if (inUnit <= state.maxSpeed) return;
  state.maxSpeed = inUnit;
  state.hooks.maxSpeedChanged();
}

// A receiver whose clock is not set yet sends 000000; such a sentence does not change the stored
// time.
uint32_t readTime(std::string_view field, const GpsState& state, DateTime& utc, DateTime& local) {
  utc = timeOf(field);
  local = timeOfDayMinusMinutes(utc, state.options.utcOffsetMinutes);
  return isMidnight(utc) ? 0U : kSaidTime;
}

// Returns `bit` if the field starts with a number, otherwise 0.
uint32_t gaveNumber(std::string_view field, Said bit) {
  const bool number = !field.empty() && (isDigit(field[0]) || field[0] == '-' || field[0] == '.');
  return number ? bit : 0U;
}

// $GPGGA,time,lat,N,lon,E,quality,used,hdop,altitude,M,geoid,M,age,station*hh
//   0     1    2   3  4  5    6     7    8     9     10  11  12 13   14
uint32_t parseGga(const Fields& fields, GpsState& state, NmeaSentence::Quality& out) {
  uint32_t said = 0;
  if (fields.has(6)) {
    out.quality = fields.wholeNumber(6);
    said |= kSaidQuality;
  }
  if (fields.has(5)) {
    out.latitude = signedDegrees(fields[2], fields[3], 'S');
    out.longitude = signedDegrees(fields[4], fields[5], 'W');
    said |= kSaidPosition;
  }
  if (fields.has(1)) said |= readTime(fields[1], state, out.utc, out.local);
  if (fields.has(7)) {
    out.usedCount = fields.wholeNumber(7);
    said |= kSaidUsedCount;
  }
  if (fields.has(9)) {
    out.altitude = leadingInt(fields[9]);
    out.exactAltitude = leadingDouble(fields[9]);
    noteAltitude(state, out.altitude);
    said |= kSaidAltitude | gaveNumber(fields[9], kGaveAltitude);
  }
  // Some receivers leave field 9 empty or report their altitude in the geoid field.
  if (fields.has(11) && (out.altitude == 0 || state.options.altitudeFromGeoidField)) {
    out.altitude = leadingInt(fields[11]);
    // The record lacks the decimals, but 0.5 m is an altitude too.
    if (out.exactAltitude == 0 || state.options.altitudeFromGeoidField) {
      out.exactAltitude = leadingDouble(fields[11]);
    }
    noteAltitude(state, out.altitude);
    said |= gaveNumber(fields[11], kGaveAltitude);
  }
  return said;
}

// The program's own sentence for simulated positions: signed degrees, longitude first, without
// hemisphere letters. Its time is ignored.
// $GPRMCX,time,A,lon,lat,altitude,course,km/h
//    0     1   2  3   4     5       6     7
uint32_t parseRmcx(const Fields& fields, NmeaSentence::Position& out) {
  if (!fields.has(4)) return 0;
  uint32_t said = kSaidPosition;
  out.longitude = leadingDouble(fields[3]);
  out.latitude = leadingDouble(fields[4]);
  if (fields.has(5)) {
    out.altitude = leadingDouble(fields[5]);
    said |= kSaidAltitude | gaveNumber(fields[5], kGaveAltitude);
  }
  if (fields.has(6)) {
    out.course = leadingDouble(fields[6]);
    said |= kSaidCourse | gaveNumber(fields[6], kGaveCourse);
  }
  if (fields.has(7)) {
    out.kmh = leadingDouble(fields[7]);
    out.mps = out.kmh / kKmhPerMps;
    said |= kSaidSpeed | gaveNumber(fields[7], kGaveSpeed);
  }
  return said;
}

uint32_t readDate(std::string_view field, DateTime& utc) {
  readThreePairs(field, utc.day, utc.month, utc.year);
  utc.year = static_cast<uint16_t>(utc.year + 2000);
  return utc.day == 0 ? 0U : kSaidDate;
}

void readSpeed(double knots, GpsState& state, NmeaSentence::Position& out) {
  const Speeds speeds = speedsFromKnots(knots);
  out.knots = speeds.knots;
  out.mps = speeds.mps;
  out.kmh = speeds.kmh;
  out.mph = speeds.mph;
  noteSpeed(state, speeds);
}

// $GPRMC,time,status,lat,N,lon,E,knots,course,date,variation,W*hh
//   0     1     2     3  4  5  6   7     8     9      10     11
uint32_t parseRmc(const Sentence& sentence, GpsState& state, NmeaSentence::Position& out) {
  const Fields& fields = sentence.fields;
  uint32_t said = 0;
  if (fields.has(2)) {
    out.valid = fields[2] == "A" ? 1 : 0;
    said |= kSaidValidity;
  }
  if (sentence.isExtendedRmc()) return said | parseRmcx(fields, out);
  if (fields.has(6)) {
    out.latitude = signedDegrees(fields[3], fields[4], 'S');
    out.longitude = signedDegrees(fields[5], fields[6], 'W');
    said |= kSaidPosition;
  }
  if (fields.has(1)) said |= readTime(fields[1], state, out.utc, out.local);
  if (fields.has(9)) said |= readDate(fields[9], out.utc);
  if (fields.has(7)) {
    readSpeed(leadingFloat(fields[7]), state, out);
    said |= kSaidSpeed | gaveNumber(fields[7], kGaveSpeed);
  }
  if (fields.has(8)) {
    out.course = leadingDouble(fields[8]);
    said |= kSaidCourse | gaveNumber(fields[8], kGaveCourse);
  }
  if (fields.has(10)) {
    out.magneticVariation = leadingDouble(fields[10]);
    // Unlike the hemisphere letters, this one may be the last field, followed by the checksum.
    const bool west = fields.has(11) && !fields[11].empty() && fields[11][0] == 'W';
    if (west) out.magneticVariation = -out.magneticVariation;
    said |= kSaidVariation;
  }
  return said;
}

// Calls `mark` for the satellites in a GSA, except empty channels and PRNs without a slot.
template <typename Mark>
void forSlots(const DecodedSentence& decoded, Mark mark) {
  const GsaReport& report = decoded.gsa;
  const Fields& fields = decoded.sentence.fields;
  for (size_t i = 0; i < report.channels; ++i) {
    const int32_t prn = report.ids[i];
    const bool hasSlot = prn >= 0 && prn < kSatelliteSlots;
    if (hasSlot && !fields.isEmpty(GsaReport::kFirst + i)) mark(static_cast<size_t>(prn));
  }
}

uint32_t parseGsa(const DecodedSentence& decoded, GpsState& state, NmeaSentence::Active& out) {
  const Fields& fields = decoded.sentence.fields;
  uint32_t said = kSaidUsed;
  forSlots(decoded, [&](size_t prn) { out.slots[prn].used = 1; });
  const auto readDop = [&](size_t index, float& to, Said bit) {
    if (!fields.has(index)) return;
    to = leadingFloat(fields[index]);
    said |= bit;
  };
  readDop(15, out.pdop, kSaidPdop);
  readDop(16, out.hdop, kSaidHdop);
  readDop(17, out.vdop, kSaidVdop);
  state.satellitesInUseKnown = true;
  return said;
}

// Calls `take` for each satellite in a GSV that has a slot, in order. Slots are numbered by PRN;
// the list ends at the first satellite without one. The first group may lack its last field; later
// ones must be complete.
template <typename Take>
void forListed(const DecodedSentence& decoded, Take take) {
  const auto goesOn = [&](const GsvReport::Satellite& satellite) {
    if (satellite.id >= kSatelliteSlots) return false;
    if (satellite.id >= 0) take(static_cast<size_t>(satellite.id), satellite);
    return true;
  };
  const Fields& fields = decoded.sentence.fields;
  const size_t whole = (fields.size() - GsvReport::kHead) / 4;
  const size_t groups = std::min(decoded.gsv.groups, std::max<size_t>(whole, 1));
  for (size_t i = 0; i < groups; ++i) {
    if (!goesOn(decoded.gsv.satellites[i])) return;
  }
  static_assert(Fields::kKept % 4 == 0);
  GsvReport::Satellite satellite;
  for (size_t at = GsvReport::kHead + 4 * GsvReport::kGroups; at + 4 <= fields.size(); at += 4) {
    readGsvGroup(fields, at, satellite);
    if (!goesOn(satellite)) return;
  }
  bool more = fields.more();
  for (std::string_view rest = more ? fields.rest() : std::string_view(); more;) {
    const Fields further(rest);
    for (size_t at = 0; at + 4 <= further.size(); at += 4) {
      readGsvGroup(further, at, satellite);
      if (!goesOn(satellite)) return;
    }
    more = further.more();
    if (more) rest = further.rest();
  }
}

// Assigns each field: copying a struct that was just written makes the processor wait.
void fillSlot(SatelliteInfo& slot, const GsvReport::Satellite& satellite) {
  slot.visible = 1;
  slot.used = 0;
  slot.prn = satellite.id;
  slot.elevation = satellite.elevation;
  slot.azimuth = satellite.azimuth;
  slot.snr = satellite.snr;
}

uint32_t parseGsv(const DecodedSentence& decoded, NmeaSentence::InView& out) {
  const Fields& fields = decoded.sentence.fields;
  if (!fields.has(2)) return 0;
  uint32_t said = decoded.gsv.message == 1 ? kSaidNewCycle : 0U;
  if (fields.has(6)) {
    forListed(decoded, [&](size_t prn, const GsvReport::Satellite& satellite) {
      fillSlot(out.slots[prn], satellite);
    });
    said |= kSaidInView;
  }
  if (fields.has(3)) {
    out.inViewCount = decoded.gsv.inView;
    said |= kSaidInViewCount;
  }
  return said;
}

void applyPosition(double longitude, double latitude, GpsFix& fix) {
  fix.longitude = longitude;
  fix.latitude = latitude;
}

void applyTimeOfDay(const DateTime& utc, const DateTime& local, GpsFix& fix) {
  storeTimeOfDay(fix.utcTime, utc);
  storeTimeOfDay(fix.localTime, local);
}

// The repaint for a fix that is gained or lost still shows the previous values.
void applyQuality(int32_t quality, GpsFix& fix) {
  const bool lost = fix.fixStatus == 1 && quality == 0;
  const bool gained = fix.fixStatus == 0 && quality == 1;
  if (lost || gained) {
    fix.state.hooks.playSound(lost ? "ERR2" : "OK");
    fix.state.hooks.repaint();
  }
  fix.fixStatus = quality;
}

void markKnown(GpsFix& fix, Unknown value, bool given) {
  fix.unknown = given ? fix.unknown & ~value : fix.unknown | value;
}

// If a sentence should report a value but does not, the value is marked as not measured; without a
// fix, nothing is measured.
void applyMarks(GpsFix& fix, int32_t kind, uint32_t said) {
  if (kind == kGga) {
    markKnown(fix, kUnknownAltitude, (said & kGaveAltitude) != 0);
  } else {
    markKnown(fix, kUnknownSpeed, (said & kGaveSpeed) != 0);
    markKnown(fix, kUnknownCourse, (said & kGaveCourse) != 0);
    if ((said & kGaveAltitude) != 0) markKnown(fix, kUnknownAltitude, true);
    if ((said & kSaidDate) != 0) markKnown(fix, kUnknownDate, true);
  }
  if (fix.fixStatus == 0) fix.unknown = kAllUnknown;
}

void applyGga(const NmeaSentence::Quality& record, uint32_t said, GpsFix& fix) {
  if ((said & kSaidQuality) != 0) applyQuality(record.quality, fix);
  if ((said & kSaidPosition) != 0) applyPosition(record.longitude, record.latitude, fix);
  if ((said & kSaidTime) != 0) applyTimeOfDay(record.utc, record.local, fix);
  if ((said & kSaidUsedCount) != 0) fix.satellites->usedCount = record.usedCount;
  if ((said & kSaidAltitude) != 0) {
    fix.altitude = record.altitude;
    fix.exactAltitude = record.exactAltitude;
  }
  applyMarks(fix, kGga, said);
}

void applyRmc(const NmeaSentence::Position& record, uint32_t said, bool extended, GpsFix& fix) {
  if ((said & kSaidValidity) != 0) fix.fixStatus = record.valid;
  if ((said & kSaidPosition) != 0) applyPosition(record.longitude, record.latitude, fix);
  if ((said & kSaidTime) != 0) applyTimeOfDay(record.utc, record.local, fix);
  if ((said & kSaidDate) != 0) {
    fix.utcTime.year = record.utc.year;
    fix.utcTime.month = record.utc.month;
    fix.utcTime.day = record.utc.day;
  }
  if ((said & kSaidAltitude) != 0) fix.altitude = fix.exactAltitude = record.altitude;
  if ((said & kSaidSpeed) != 0) {
    fix.speedKnots = record.knots;
    fix.speedMps = record.mps;
    fix.speedKmh = record.kmh;
    fix.speedMph = record.mph;
    if (extended) fix.speedSpare = 0;
  }
  if ((said & kSaidCourse) != 0) fix.course = record.course;
  if ((said & kSaidVariation) != 0) fix.magneticVariation = record.magneticVariation;
  applyMarks(fix, kRmc, said);
}

// Never clears `used` here: a satellite stays marked as used until GSV lists it again.
void applyGsa(const DecodedSentence& decoded, const NmeaSentence::Active& record, uint32_t said,
              SatelliteTable& table) {
  forSlots(decoded, [&](size_t prn) { table.slots[prn].used = 1; });
  if ((said & kSaidPdop) != 0) table.pdop = record.pdop;
  if ((said & kSaidHdop) != 0) table.hdop = record.hdop;
  if ((said & kSaidVdop) != 0) table.vdop = record.vdop;
}

void applyGsv(const DecodedSentence& decoded, const NmeaSentence::InView& record, uint32_t said,
              SatelliteTable& table) {
  if ((said & kSaidNewCycle) != 0) {
    for (SatelliteInfo& slot : table.slots) slot.visible = 0;
  }
  if ((said & kSaidInView) != 0) {
    forListed(decoded, [&](size_t prn, const GsvReport::Satellite& satellite) {
      fillSlot(table.slots[prn], satellite);
    });
  }
  if ((said & kSaidInViewCount) != 0) table.inViewCount = record.inViewCount;
}

}  // namespace

uint32_t parseRecord(const DecodedSentence& decoded, GpsState& state, NmeaSentence& out) {
  switch (decoded.sentence.parsedType()) {
    case SentenceType::gga:
      out.begin(kGga, kGgaTag);
      return parseGga(decoded.sentence.fields, state, out.gga);
    case SentenceType::rmc:
      out.begin(kRmc, kRmcTag);
      return parseRmc(decoded.sentence, state, out.rmc);
    case SentenceType::gsa:
      out.begin(kSatellites, kSatellitesTag);
      return parseGsa(decoded, state, out.gsa);
    case SentenceType::gsv:
      out.begin(kSatellites, kSatellitesTag);
      return parseGsv(decoded, out.gsv);
    case SentenceType::other: break;
  }
  out.begin(kNoSentence, 0);
  return 0;
}

void applyRecord(const DecodedSentence& decoded, const NmeaSentence& record, uint32_t said,
                 GpsFix& fix) {
  // GGA and RMC have it in the same field.
  if ((said & kSaidTime) != 0) {
    fix.utcMilliseconds = millisecondsOfTime(decoded.sentence.fields[1]);
  }
  switch (decoded.sentence.parsedType()) {
    case SentenceType::gga: applyGga(record.gga, said, fix); break;
    case SentenceType::rmc:
      applyRmc(record.rmc, said, decoded.sentence.isExtendedRmc(), fix);
      break;
    case SentenceType::gsa: applyGsa(decoded, record.gsa, said, *fix.satellites); break;
    case SentenceType::gsv: applyGsv(decoded, record.gsv, said, *fix.satellites); break;
    case SentenceType::other: break;
  }
}

}  // namespace vgps
