#include "cli/state_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "app/session/fix_values.h"
#include "app/session/line_notes.h"
#include "base/number.h"
#include "geo/distance.h"
#include "geo/units.h"

namespace vgps {
namespace {

constexpr std::array<const char*, 9> kQualityNames = {
    "no fix",    "GPS fix",   "differential fix", "PPS fix",  "RTK fixed",
    "RTK float", "estimated", "manual input",     "simulated"};

std::string degreesText(double degrees, const char* positive, const char* negative) {
  return fixedText(std::fabs(degrees), 6) + " " + (std::signbit(degrees) ? negative : positive);
}

std::string speedsText(const FixRecord& fix, bool known) {
  const auto text = [&](double value) { return orDashes(known, fixedText(value, 2)); };
  return text(fix.speedKmh) + " km/h  " + text(fix.speedKnots) + " kn  " + text(fix.speedMps) +
         " m/s  " + text(fix.speedMph) + " mph";
}

std::string accuracyText(const UiFix& shown, uint32_t now) {
  const auto accuracy = currentAccuracy(shown, now);
  if (!accuracy) return kUnknown;
  const auto meters = [](double value) {
    return value < 1 ? fixedText(std::max(value, 0.01), 2) : fixedText(value, 1);
  };
  const std::string vertical =
      accuracy->vertical > 0 ? ", vertical " + meters(accuracy->vertical) + " m" : "";
  return "about " + meters(accuracy->horizontal) + " m" + vertical + " (estimated from " +
         (accuracy->byReceiver ? "GST)" : "DOP)");
}

std::string clockText(const DateTime& time) {
  char text[32];
  std::snprintf(text, sizeof text, "%02u:%02u:%02u.%03u", time.hour, time.minute, time.second,
                time.millisecond);
  return text;
}

// "GPS 8 of 11, Galileo 5 of 9": used of those in view.
std::string systemsText(const std::vector<ViewedSatellite>& view) {
  const std::vector<ViewedSatellite> satellites = strongestSignals(view);
  std::string text;
  for (size_t system = 0; system <= static_cast<size_t>(SatelliteSystem::navic); ++system) {
    size_t seen = 0;
    size_t used = 0;
    for (const ViewedSatellite& satellite : satellites) {
      if (static_cast<size_t>(satellite.system) != system) continue;
      ++seen;
      used += satellite.used ? 1 : 0;
    }
    if (seen == 0) continue;
    if (!text.empty()) text += ", ";
    text += satelliteSystemName(static_cast<SatelliteSystem>(system));
    text += " " + std::to_string(used) + " of " + std::to_string(seen);
  }
  return text.empty() ? "none" : text;
}

std::string countsText(const SentenceStats& stats) {
  std::string text = std::to_string(stats.total()) + " (";
  for (size_t kind = 0; kind < kSentenceTypes; ++kind) {
    text += std::string(sentenceTypeName(static_cast<SentenceType>(kind))) + " " +
            std::to_string(stats.kinds[kind].count) + ", ";
  }
  return text + "binary " + std::to_string(stats.binary) + ")";
}

}  // namespace

std::string fixStatusText(int32_t fixStatus) {
  const bool known = fixStatus >= 0 && fixStatus < static_cast<int32_t>(kQualityNames.size());
  return known ? kQualityNames[static_cast<size_t>(fixStatus)]
               : "quality " + std::to_string(fixStatus);
}

std::string positionText(const FixRecord& fix) {
  if (isNoPosition(fix.longitude, fix.latitude)) return "none";
  return degreesText(fix.latitude, "N", "S") + "  " + degreesText(fix.longitude, "E", "W");
}

std::string timeText(const DateTime& time) {
  if (time.day == 0) return clockText(time);
  char date[32];
  std::snprintf(date, sizeof date, "%04u-%02u-%02u ", time.year, time.month, time.day);
  return date + clockText(time);
}

std::vector<TextRow> stateRows(const UiFix& shown, uint32_t now) {
  const FixRecord& fix = shown.fix;
  const SatelliteTable& table = shown.satellites;
  const SentenceStats& stats = shown.stats;
  const KnownValues known = knownValues(shown);
  const auto dop = [](float value) { return orDashes(value != 0, fixedText(value, 1)); };
  std::vector<TextRow> rows = {
      {"Fix", orDashes(known.status, fixStatusText(currentQuality(shown, now)))},
      {"Position", orDashes(known.position, positionText(fix))},
      {"Accuracy", accuracyText(shown, now)},
      {"Altitude", orDashes(known.altitude, fixedText(fix.altitude, 0)) + " m"},
      {"Speed", speedsText(fix, known.speed)},
      {"Course", orDashes(known.course, fixedText(fix.course, 1)) + " degrees, variation " +
                     orDashes(known.variation, fixedText(fix.magneticVariation, 1))},
      {"UTC", orDashes(known.time || known.date, timeText(fix.utcTime))},
      {"Local time", orDashes(known.time, clockText(fix.localTime))},
      {"Maximum", orDashes(shown.maxSpeed > 0 || known.speed, fixedText(shown.maxSpeed, 2)) +
                      " km/h, " + orDashes(shown.maxAltitude > 0, fixedText(shown.maxAltitude, 0)) +
                      " m"},
      {"Satellites", orDashes(known.used, std::to_string(table.usedCount)) + " used, " +
                         orDashes(known.inView, std::to_string(table.inViewCount)) + " in view"},
      {"DOP", "position " + dop(table.pdop) + ", horizontal " + dop(table.hdop) + ", vertical " +
                  dop(table.vdop)},
      {"Systems", systemsText(shown.view)},
      {"Sentences", countsText(stats)},
      {"Rejected", std::to_string(stats.rejected)},
      {"Checksums", std::to_string(stats.sum(&KindStats::checksumRight)) + " correct, " +
                        std::to_string(stats.sum(&KindStats::checksumWrong)) + " wrong, " +
                        std::to_string(stats.sum(&KindStats::checksumAbsent)) + " missing"},
  };
  if (stats.strayStarts > 0) {
    rows.push_back({"Stray start", std::to_string(stats.strayStarts) +
                                       (stats.strayStarts == 1 ? " sentence" : " sentences") +
                                       " with characters in front"});
  }
  if (const std::string leftOut = leftOutText(stats); !leftOut.empty()) {
    rows.push_back({"Left out", leftOut});
  }
  return rows;
}

}  // namespace vgps
