#include <cstdio>

#include "base/number.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/position_text.h"
#include "geo/dms.h"
#include "geo/ellipsoids.h"
#include "geo/geodesic.h"
#include "geo/great_circle.h"
#include "geo/grid_texts.h"
#include "geo/units.h"
#include "geo/utm.h"

namespace vgps {
namespace {

constexpr int kDecimals = 6;

// The answer to a question, as text and as JSON.
struct GeoAnswer {
  std::string text;
  Json json;
  std::string complaint;  // the error message; empty on success
};

// The name of a unit: "Km".
std::string unitName(int32_t unit) {
  const std::string text = distanceText(0, unit);
  return text.substr(text.find(' ') + 1);
}

GeoAnswer distanceAnswer(const Position& from, const Position& to, const GeoOptions& options) {
  const int32_t unit = options.unit;
  const double distance = options.asRecorded ? pointDistance(from, to, unit, unit, false)
                                             : distanceInUnit(geodesicKilometers(from, to), unit);
  return {fixedText(distance, kDecimals) + " " + unitName(unit),
          {{"distance", distance}, {"unit", unitName(unit)}},
          {}};
}

GeoAnswer bearingAnswer(const Position& from, const Position& to, bool asRecorded) {
  const double bearing = asRecorded ? initialBearing(from, to) : geodesicBearing(from, to);
  return {fixedText(bearing, kDecimals) + " degrees", {{"bearing", bearing}}, {}};
}

GeoAnswer areaAnswer(const std::vector<Position>& corners, bool asRecorded) {
  const Area area = asRecorded ? enclosedArea(corners) : geodesicArea(corners);
  std::string text = areaText(area);
  std::erase(text, '\r');  // the terminal has its own line endings
  return {std::move(text),
          {{"squareDegrees", area.squareDegrees}, {"squareMeters", area.squareMeters}},
          {}};
}

double kilometersIn(double way, int32_t unit) { return way / distanceInUnit(1, unit); }

GeoAnswer destinationAnswer(const Position& from, const GeoOptions& options) {
  const double kilometers = kilometersIn(options.way, options.unit);
  const Position to = options.asRecorded ? destination(from, options.course, kilometers)
                                         : geodesicDestination(from, options.course, kilometers);
  return {fixedText(to.y, kDecimals) + "," + fixedText(to.x, kDecimals),
          {{"latitude", to.y}, {"longitude", to.x}},
          {}};
}

// The text shows whole meters, truncated as on the position display.
GeoAnswer utmAnswer(const Position& at, int32_t ellipsoid) {
  const UtmPosition utm = utmFromDegrees(ellipsoid, at.y, at.x);
  return {utm.zoneText() + " " + decimalText(static_cast<int64_t>(utm.easting)) + " " +
              decimalText(static_cast<int64_t>(utm.northing)),
          {{"zone", utm.zoneText()},
           {"easting", utm.easting},
           {"northing", utm.northing},
           {"ellipsoid", ellipsoidOf(ellipsoid).name}},
          {}};
}

GeoAnswer dmsAnswer(const Position& at) {
  const std::string latitude = dmsText(at.y, AngleKind::latitude);
  const std::string longitude = dmsText(at.x, AngleKind::longitude);
  return {latitude + " " + longitude, {{"latitude", latitude}, {"longitude", longitude}}, {}};
}

GeoAnswer mgrsAnswer(const Position& at, int digits) {
  const std::string text = mgrsText(at.y, at.x, digits);
  if (text.empty())
    return {{},
            {},
            "the position is outside the grid, which covers latitudes from 80 degrees south to 84 "
            "degrees north"};
  return {text, {{"mgrs", text}}, {}};
}

GeoAnswer locatorAnswer(const Position& at, int pairs) {
  const std::string text = maidenheadText(at.y, at.x, pairs);
  return {text, {{"locator", text}}, {}};
}

GeoAnswer answerOf(const GeoOptions& options, const std::vector<Position>& at) {
  using Action = GeoOptions::Action;
  switch (options.action) {
    case Action::distance: return distanceAnswer(at[0], at[1], options);
    case Action::bearing: return bearingAnswer(at[0], at[1], options.asRecorded);
    case Action::destination: return destinationAnswer(at[0], options);
    case Action::utm: return utmAnswer(at[0], options.ellipsoid);
    case Action::dms: return dmsAnswer(at[0]);
    case Action::mgrs: return mgrsAnswer(at[0], options.digits);
    case Action::area: return areaAnswer(at, options.asRecorded);
    case Action::locator: return locatorAnswer(at[0], options.pairs);
  }
  return {};
}

}  // namespace

int runGeo(const GeoOptions& options) {
  std::vector<Position> positions;
  for (const std::string& text : options.positions) {
    std::string complaint;
    const std::optional<Position> position = typedPosition(text, complaint);
    if (!position) return fail(complaint);
    positions.push_back(*position);
  }
  const GeoAnswer answer = answerOf(options, positions);
  if (!answer.complaint.empty()) return fail(answer.complaint);
  std::puts((options.json ? jsonText(answer.json, 2) : answer.text).c_str());
  return finishOutput();
}

}  // namespace vgps
