#include "app/session/fix_values.h"

#include <cmath>

#include "geo/distance.h"

namespace vgps {
namespace {

constexpr uint32_t kCurrentMs = 5000;

bool isCurrent(const LastReceived::Arrival& arrival, uint32_t now) {
  return arrival.ever && now - arrival.tick <= kCurrentMs;
}

}  // namespace

int32_t currentQuality(const UiFix& shown, uint32_t now) {
  const bool told = shown.fix.fixStatus == 1 && isCurrent(shown.arrivals.quality, now);
  return told ? shown.quality : shown.fix.fixStatus;
}

std::optional<Accuracy> currentAccuracy(const UiFix& shown, uint32_t now) {
  const auto gst = isCurrent(shown.arrivals.errors, now) ? shown.gst : std::nullopt;
  const bool diluted = isCurrent(shown.arrivals.dilution, now);
  return estimateAccuracy(currentQuality(shown, now), diluted ? shown.satellites.hdop : 0,
                          diluted ? shown.satellites.vdop : 0, gst);
}

KnownValues knownValues(const UiFix& shown) {
  const FixRecord& fix = shown.fix;
  const auto heard = [&](SentenceType type) { return shown.stats.of(type).count > 0; };
  const LastReceived& arrivals = shown.arrivals;
  const bool moves = fix.speedKnots != 0 || fix.speedMps != 0 || fix.speedKmh != 0;
  const DateTime& utc = fix.utcTime;
  return {.status = heard(SentenceType::rmc) || heard(SentenceType::gga),
          .position = std::isfinite(fix.latitude) && std::isfinite(fix.longitude) &&
                      !isNoPosition(fix.longitude, fix.latitude),
          .altitude = fix.altitude != 0 || fix.altitudeKnown(),
          .speed = moves || fix.speedKnown(),
          // A receiver at rest leaves the course empty, so 0 is north only in motion.
          .course = fix.course != 0 || (fix.courseKnown() && moves),
          .variation = fix.magneticVariation != 0,
          // Midnight is never stored as a time of day.
          .time = utc.hour != 0 || utc.minute != 0 || utc.second != 0 || utc.millisecond != 0,
          .date = utc.day != 0,
          .used = arrivals.used.ever,
          .inView = arrivals.view.ever};
}

}  // namespace vgps
