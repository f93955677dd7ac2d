#include "display/readout_text.h"

#include <algorithm>
#include <cmath>

#include "base/number.h"
#include "geo/units.h"

namespace vgps {
namespace {

// The 32-bit rounding of 0.001 degrees: nearer to 0, 0 than this is "no position".
constexpr double kNoPositionDegrees = 0.0010000000474974513;

constexpr std::array<const char*, 4> kStates = {"not connected", "no data", "no fix", "fix"};

uint64_t countOf(const Scene& scene, CountedKind kind) { return scene.stats.of(kind).count; }

std::string twoDigits(uint32_t value) {
  const std::string digits = std::to_string(value);
  return digits.size() < 2 ? '0' + digits : digits;
}

// Midnight in UTC is never stored as a time of day, so zeros mean that none has come.
bool hasTime(const DateTime& utc) {
  return utc.hour != 0 || utc.minute != 0 || utc.second != 0 || utc.millisecond != 0;
}

std::string timeText(const DateTime& time) {
  return twoDigits(time.hour) + ':' + twoDigits(time.minute) + ':' + twoDigits(time.second);
}

std::string dateText(const DateTime& time) {
  if (time.day == 0) return kDashes;
  return std::to_string(time.year) + '-' + twoDigits(time.month) + '-' + twoDigits(time.day);
}

std::string offsetText(int32_t utcOffsetMinutes) {
  const int32_t ahead = -utcOffsetMinutes;
  const auto minutes = static_cast<uint32_t>(std::abs(ahead));
  return std::string("UTC") + (ahead < 0 ? '-' : '+') + twoDigits(minutes / 60) + ':' +
         twoDigits(minutes % 60);
}

std::string degreesText(double degrees, char positive, char negative) {
  return fixedText(std::fabs(degrees), 6) + "° " + (degrees < 0 ? negative : positive);
}

// Position sentences of a receiver without a fix carry empty fields, which read as 0.
bool saidWithFix(const Scene& scene, CountedKind kind) {
  return scene.fix.fixStatus != 0 && countOf(scene, kind) > 0;
}

void fillSpeed(const Scene& scene, ReadoutTexts& texts) {
  const FixRecord& fix = scene.fix;
  const Speeds speeds = {fix.speedKnots, fix.speedMps, fix.speedKmh, fix.speedMph};
  const bool moving = speeds.knots != 0 || speeds.mps != 0 || speeds.kmh != 0 || speeds.mph != 0;
  // Simulated sentences give some units only: a lone 0 beside them is no speed.
  const bool zeroHolds = !moving && saidWithFix(scene, CountedKind::rmc);
  size_t other = 0;
  for (int32_t unit = kKmh; unit <= kMph; ++unit) {
    const double value = speedInUnit(speeds, unit);
    std::string text = speedText(value, unit);
    if (value == 0 && !zeroHolds) text = kDashes + text.substr(text.find(' '));
    if (unit == scene.speedUnit) {
      texts.speed = text;
    } else if (other < texts.otherSpeeds.size()) {
      texts.otherSpeeds[other++] = text;
    }
  }
  texts.maxSpeed = scene.maxSpeed > 0 ? "max " + fixedText(scene.maxSpeed, 2) : "max --";
}

void fillCourse(const Scene& scene, ReadoutTexts& texts) {
  const FixRecord& fix = scene.fix;
  // A receiver at rest leaves the course empty, so 0 is north only in motion.
  const bool known = fix.course != 0 || (saidWithFix(scene, CountedKind::rmc) && fix.speedKmh > 0);
  texts.course = known ? fixedText(fix.course, 1) + "°" : kDashes;
  texts.courseDetail = known ? compassPoint(fix.course) : "";
  if (fix.magneticVariation == 0) return;
  if (known) texts.courseDetail += ", ";
  texts.courseDetail += "var " + fixedText(std::fabs(fix.magneticVariation), 1) + "° " +
                        (fix.magneticVariation < 0 ? 'W' : 'E');
}

void fillAltitude(const Scene& scene, ReadoutTexts& texts) {
  const auto text = [&](double metres) {
    return altitudeText(altitudeInUnit(metres, scene.altitudeUnit), scene.altitudeUnit);
  };
  const double altitude = scene.fix.altitude;
  const bool known = altitude != 0 || saidWithFix(scene, CountedKind::gga);
  texts.altitude = known ? text(altitude) : kDashes;
  texts.maxAltitude = scene.maxAltitude > 0 ? "max " + text(scene.maxAltitude) : "max --";
}

std::string dopText(float dop) { return dop == 0 ? kDashes : fixedText(dop, 1); }

void fillSatellites(const Scene& scene, ReadoutTexts& texts) {
  const SatelliteTable& table = scene.satellites;
  const auto isUsed = [](const auto& satellite) { return satellite.used != 0; };
  int32_t used = table.usedCount;
  // A receiver that sends no GGA still lists in GSA which satellites it uses.
  if (used == 0 && scene.satellitesInUseKnown && countOf(scene, CountedKind::gga) == 0) {
    used = static_cast<int32_t>(std::count_if(table.slots.begin(), table.slots.end(), isUsed));
  }
  const bool usedKnown = used != 0 || countOf(scene, CountedKind::gga) > 0;
  const int32_t inView = std::max(table.inViewCount, distinctSatellites(scene.view));
  const bool inViewKnown = inView != 0 || countOf(scene, CountedKind::gsv) > 0;
  texts.satellitesUsed = usedKnown ? std::to_string(used) : kDashes;
  texts.satellitesInView = inViewKnown ? std::to_string(inView) : kDashes;
  texts.pdop = dopText(table.pdop);
  texts.hdop = dopText(table.hdop);
  texts.vdop = dopText(table.vdop);
}

// The older, the coarser: each new text is a new drawing, and a silent receiver should cost none.
std::string ageText(uint32_t ms) {
  uint32_t seconds = ms / 1000;
  if (seconds > 10) seconds -= seconds % 5;
  if (seconds < 60) return std::to_string(seconds) + " s";
  const uint32_t minutes = seconds / 60;
  return minutes < 60 ? std::to_string(minutes) + " min" : std::to_string(minutes / 60) + " h";
}

void fillState(const Scene& scene, ReadoutTexts& texts) {
  const bool flowing = scene.state == ReceiverState::noFix || scene.state == ReceiverState::fix;
  texts.state = kStates[static_cast<size_t>(scene.state)];
  if (scene.fixSeen && scene.state != ReceiverState::notConnected) {
    texts.age = "fix " + ageText(scene.fixAgeMs) + " ago";
  }
  if (scene.state == ReceiverState::notConnected) return;
  texts.rate = fixedText(flowing ? scene.sentencesPerSecond : 0, 1) + " sentences/s";
}

}  // namespace

const char* fixQualityText(int32_t fixStatus) {
  constexpr std::array<const char*, 9> kQualities = {
      "no fix",    "GPS fix",   "differential fix", "PPS fix",  "RTK fixed",
      "RTK float", "estimated", "manual input",     "simulated"};
  if (fixStatus < 0 || fixStatus >= static_cast<int32_t>(kQualities.size())) return "unknown fix";
  return kQualities[static_cast<size_t>(fixStatus)];
}

const char* compassPoint(double degrees) {
  constexpr std::array<const char*, 16> kPoints = {"N",  "NNE", "NE", "ENE", "E",  "ESE",
                                                   "SE", "SSE", "S",  "SSW", "SW", "WSW",
                                                   "W",  "WNW", "NW", "NNW"};
  const double turns = degrees / 360;
  const double sixteenths = std::floor((turns - std::floor(turns)) * 16 + 0.5);
  // A receiver may send any number, and a huge one has no fraction left.
  return std::isfinite(sixteenths) ? kPoints[static_cast<size_t>(sixteenths) % 16] : "";
}

bool hasPosition(const FixRecord& fix) {
  return std::fabs(fix.latitude) > kNoPositionDegrees ||
         std::fabs(fix.longitude) > kNoPositionDegrees;
}

int32_t distinctSatellites(std::span<const ViewedSatellite> view) {
  int32_t count = 0;
  for (size_t i = 0; i < view.size(); ++i) {
    const auto same = [&](const ViewedSatellite& before) {
      return before.system == view[i].system && before.id == view[i].id;
    };
    if (std::none_of(view.begin(), view.begin() + static_cast<ptrdiff_t>(i), same)) ++count;
  }
  return count;
}

ReadoutTexts readoutTexts(const Scene& scene) {
  ReadoutTexts texts;
  const FixRecord& fix = scene.fix;
  const bool position = hasPosition(fix);
  texts.latitude = position ? degreesText(fix.latitude, 'N', 'S') : "no position";
  texts.longitude = position ? degreesText(fix.longitude, 'E', 'W') : "";
  const bool current = scene.state == ReceiverState::fix;
  texts.quality = current ? fixQualityText(fix.fixStatus) : fixQualityText(0);
  fillSpeed(scene, texts);
  fillCourse(scene, texts);
  fillAltitude(scene, texts);
  const bool timeKnown = hasTime(fix.utcTime);
  texts.utc = timeKnown ? timeText(fix.utcTime) : kDashes;
  texts.date = dateText(fix.utcTime);
  texts.local = timeKnown ? timeText(fix.localTime) : kDashes;
  texts.offset = offsetText(scene.utcOffsetMinutes);
  fillSatellites(scene, texts);
  fillState(scene, texts);
  return texts;
}

}  // namespace vgps
