#include "cli/state_json.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "app/session/fix_values.h"
#include "app/session/line_notes.h"
#include "cli/state_text.h"

namespace vgps {
namespace {

// JSON has no infinity and would show null, so the largest number replaces it. A float reads back
// as the same double only if it is printed as a double.
double number(double value) {
  constexpr double kGreatest = std::numeric_limits<double>::max();
  return std::clamp(value, -kGreatest, kGreatest);
}

Json orNull(bool known, double value) { return known ? Json(number(value)) : Json(nullptr); }

Json timeJson(const DateTime& time) {
  return {{"year", time.year},           {"month", time.month},
          {"dayOfWeek", time.dayOfWeek}, {"day", time.day},
          {"hour", time.hour},           {"minute", time.minute},
          {"second", time.second},       {"millisecond", time.millisecond}};
}

const char* reasonName(LeftOutReason reason) {
  constexpr std::array<const char*, 5> kNames = {"none", "waitingForGps", "anotherTalker",
                                                 "turnedOff", "unknownTalker"};
  return kNames[static_cast<size_t>(reason)];
}

Json leftOutJson(const SentenceStats& stats) {
  Json list = Json::array();
  for (const LeftOutSentences& one : std::span(stats.leftOut).first(stats.leftOutKinds)) {
    Json entry = {{"sentence", nameOfTalker(one.talker) + sentenceTypeName(one.type)},
                  {"count", one.count},
                  {"reason", reasonName(one.why.reason)}};
    if (one.why.reason == LeftOutReason::another) entry["used"] = nameOfTalker(one.why.instead);
    list.push_back(std::move(entry));
  }
  return list;
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
          {"checksumAbsent", stats.sum(&KindStats::checksumAbsent)},
          {"strayStarts", stats.strayStarts},
          {"leftOut", leftOutJson(stats)}};
}

Json satellitesJson(const UiFix& shown) {
  const SatelliteTable& table = shown.satellites;
  Json visible = Json::array();
  Json used = Json::array();
  for (size_t prn = 0; prn < table.slots.size(); ++prn) {
    if (table.slots[prn].visible != 0) visible.push_back(prn);
    if (table.slots[prn].used != 0) used.push_back(prn);
  }
  return {{"usedCount", usedSatellites(shown)},
          {"inViewCount", table.inViewCount},
          {"pdop", orNull(table.pdop != 0, table.pdop)},
          {"hdop", orNull(table.hdop != 0, table.hdop)},
          {"vdop", orNull(table.vdop != 0, table.vdop)},
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

// Internal values, of no use to users of the fix.
constexpr std::array<const char*, 8> kInternals = {"speedSpare",   "lastSentenceKind", "portPath",
                                                   "baudRate",     "simulate",         "useGpsApi",
                                                   "useSensorApi", "running"};

Json accuracyJson(const UiFix& shown, uint32_t now) {
  const auto accuracy = currentAccuracy(shown, now);
  if (!accuracy) return nullptr;
  return {{"horizontal", accuracy->horizontal},
          {"vertical", orNull(accuracy->vertical > 0, accuracy->vertical)},
          {"source", accuracy->byReceiver ? "GST" : "DOP"},
          {"estimate", true}};
}

Json knownFixJson(const UiFix& shown, const KnownValues& known, const GpsFix& connection) {
  Json fix = fixJson(shown.fix, connection);
  fix["altitudeExact"] = number(shown.fix.preciseAltitude());
  const std::pair<bool, std::vector<const char*>> groups[] = {
      {known.status, {"fixStatus"}},
      {known.position, {"longitude", "latitude"}},
      {known.altitude, {"altitude", "altitudeExact"}},
      {known.time || known.date, {"utcTime", "localTime"}},
      {known.speed, {"speedKnots", "speedMps", "speedKmh", "speedMph"}},
      {known.course, {"course"}},
      {known.variation, {"magneticVariation"}},
  };
  for (const auto& [isKnown, names] : groups) {
    if (isKnown) continue;
    for (const char* const name : names) fix[name] = nullptr;
  }
  return fix;
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

std::string isoTime(const DateTime& utc) {
  char text[64];
  std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", unsigned{utc.year},
                unsigned{utc.month}, unsigned{utc.day}, unsigned{utc.hour}, unsigned{utc.minute},
                unsigned{utc.second}, unsigned{utc.millisecond});
  return text;
}

Json stateJson(const UiFix& shown, const GpsFix& connection, uint32_t now, bool internals) {
  const KnownValues known = knownValues(shown);
  Json state = {{"time", nullptr}, {"quality", nullptr}, {"accuracy", accuracyJson(shown, now)}};
  if (known.time && known.date && isCalendarTime(shown.fix.utcTime)) {
    state["time"] = isoTime(shown.fix.utcTime);
  }
  if (known.status) state["quality"] = fixStatusText(currentQuality(shown, now));
  state["sentences"] = sentencesJson(shown.stats);
  state["fix"] = knownFixJson(shown, known, connection);
  if (!internals) {
    for (const char* const name : kInternals) state["fix"].erase(name);
  }
  state["satellites"] = satellitesJson(shown);
  for (const auto& [name, isKnown] :
       {std::pair{"usedCount", known.used}, {"inViewCount", known.inView}}) {
    if (!isKnown) state["satellites"][name] = nullptr;
  }
  state["view"] = viewJson(shown.view);
  state["maxSpeed"] = orNull(shown.maxSpeed > 0 || known.speed, shown.maxSpeed);
  state["maxAltitude"] = orNull(shown.maxAltitude > 0, shown.maxAltitude);
  if (internals) state["inputProtocol"] = shown.inputProtocol;
  return state;
}

}  // namespace vgps
