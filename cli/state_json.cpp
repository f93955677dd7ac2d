#include "cli/state_json.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vgps {
namespace {

// JSON has no infinity and would show null, so the largest number replaces it. A float reads back
// as the same double only if it is printed as a double.
double number(double value) {
  constexpr double kGreatest = std::numeric_limits<double>::max();
  return std::clamp(value, -kGreatest, kGreatest);
}

Json timeJson(const DateTime& time) {
  return {{"year", time.year},           {"month", time.month},
          {"dayOfWeek", time.dayOfWeek}, {"day", time.day},
          {"hour", time.hour},           {"minute", time.minute},
          {"second", time.second},       {"millisecond", time.millisecond}};
}

Json sentencesJson(const SentenceStats& stats) {
  const auto count = [&](SentenceType kind) { return stats.of(kind).count; };
  return {{"total", stats.total()},
          {"rmc", count(SentenceType::rmc)},
          {"gga", count(SentenceType::gga)},
          {"gsa", count(SentenceType::gsa)},
          {"gsv", count(SentenceType::gsv)},
          {"other", count(SentenceType::other)},
          {"rejected", stats.rejected},
          {"binary", stats.binary},
          {"checksumRight", stats.sum(&KindStats::checksumRight)},
          {"checksumWrong", stats.sum(&KindStats::checksumWrong)},
          {"checksumAbsent", stats.sum(&KindStats::checksumAbsent)}};
}

Json satellitesJson(const SatelliteTable& table) {
  Json visible = Json::array();
  Json used = Json::array();
  for (size_t prn = 0; prn < table.slots.size(); ++prn) {
    if (table.slots[prn].visible != 0) visible.push_back(prn);
    if (table.slots[prn].used != 0) used.push_back(prn);
  }
  return {{"usedCount", table.usedCount},
          {"inViewCount", table.inViewCount},
          {"pdop", number(table.pdop)},
          {"hdop", number(table.hdop)},
          {"vdop", number(table.vdop)},
          {"visible", visible},
          {"used", used}};
}

Json viewJson(const std::vector<ViewedSatellite>& satellites) {
  Json view = Json::array();
  for (const ViewedSatellite& satellite : satellites) {
    Json entry = {{"system", satelliteSystemName(satellite.system)},
                  {"id", satellite.id},
                  {"elevation", number(satellite.elevation)},
                  {"azimuth", number(satellite.azimuth)},
                  {"snr", number(satellite.snr)},
                  {"used", satellite.used}};
    // Distinguishes the signals of a satellite that is received on several frequencies.
    if (satellite.signal != 0) entry["signal"] = satellite.signal;
    view.push_back(std::move(entry));
  }
  return view;
}

}  // namespace

Json fixJson(const FixRecord& values, const GpsFix& connection) {
  return {{"fixStatus", values.fixStatus},
          {"longitude", number(values.longitude)},
          {"latitude", number(values.latitude)},
          {"altitude", number(values.altitude)},
          {"utcTime", timeJson(values.utcTime)},
          {"localTime", timeJson(values.localTime)},
          {"speedKnots", number(values.speedKnots)},
          {"speedMps", number(values.speedMps)},
          {"speedKmh", number(values.speedKmh)},
          {"speedMph", number(values.speedMph)},
          {"speedSpare", number(values.speedSpare)},
          {"course", number(values.course)},
          {"magneticVariation", number(values.magneticVariation)},
          {"lastSentenceKind", values.lastSentenceKind},
          {"portPath", connection.portPath},
          {"baudRate", connection.baudRate},
          {"simulate", connection.simulate.load()},
          {"useGpsApi", connection.useGpsApi},
          {"useSensorApi", connection.useSensorApi},
          {"running", connection.running.load()}};
}

Json stateJson(const UiFix& shown, const GpsFix& connection) {
  return {{"sentences", sentencesJson(shown.stats)},
          {"fix", fixJson(shown.fix, connection)},
          {"satellites", satellitesJson(shown.satellites)},
          {"view", viewJson(shown.view)},
          {"maxSpeed", number(shown.maxSpeed)},
          {"maxAltitude", number(shown.maxAltitude)},
          {"inputProtocol", shown.inputProtocol}};
}

}  // namespace vgps
