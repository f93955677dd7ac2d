#include <memory>

#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/position_text.h"
#include "geo/ellipsoids.h"
#include "geo/units.h"

namespace vgps {
namespace {

using GeoAction = GeoOptions::Action;
using Shared = std::shared_ptr<GeoOptions>;

std::string lowered(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  while (text.ends_with(' ')) text.pop_back();
  return text;
}

// Accepts an index of the ellipsoid list or a name in it.
CLI::Validator ellipsoidWord() {
  return {[](std::string& text) -> std::string {
            for (size_t i = 1; i < kEllipsoids; ++i) {
              const std::string number = std::to_string(i);
              if (text != number && lowered(text) != lowered(ellipsoids()[i].name)) continue;
              text = number;
              return {};
            }
            return text +
                   " is not an ellipsoid; use a number from 1 to 23 or a name listed in vgps geo "
                   "utm --help";
          },
          ""};
}

CLI::Validator plainNumber() {
  return {[](const std::string& text) {
            return typedNumber(text) ? std::string() : text + " is not a number";
          },
          ""};
}

std::string ellipsoidList() {
  std::string list = "Ellipsoids, by number or name:";
  for (size_t i = 1; i < kEllipsoids; ++i) {
    list += "\n  " + std::to_string(i) + (i < 10 ? "   " : "  ") + ellipsoids()[i].name;
  }
  return list;
}

constexpr int kMostCorners = 100000;

CLI::App* addQuestion(CLI::App& geo, const char* name, const char* does, GeoAction action,
                      int positions, const Shared& options, Chosen& chosen) {
  CLI::App* const command = geo.add_subcommand(name, does);
  command
      ->add_option(
          positions > 1 ? "POSITIONS" : "POSITION", options->positions,
          positions == 2 ? "Start and end position, each as LAT,LON" : "LAT,LON in decimal degrees")
      ->required()
      ->expected(positions)
      ->option_text(" ");
  command->add_flag("--json", options->json, "Print one JSON object");
  command->callback([options, action, &chosen] {
    options->action = action;
    chosen = [options] { return runGeo(*options); };
  });
  return command;
}

void addUnit(CLI::App& command, const Shared& options) {
  command
      .add_option("--unit", options->unit,
                  "Kilometers, statute miles, or nautical miles (default: km)")
      ->transform(oneOf({{"km", kKilometers}, {"mi", kMiles}, {"nmi", kNauticalMiles}}))
      ->option_text("km|mi|nmi");
}

CLI::App& addMeasure(CLI::App& command, const Shared& options) {
  command.add_flag("--as-recorded", options->asRecorded,
                   "Calculate on the sphere that recorded tracks use (default: the WGS-84 "
                   "ellipsoid)");
  return command;
}

void addDestination(CLI::App& geo, const Shared& options, Chosen& chosen) {
  CLI::App* const command = addQuestion(
      geo, "destination", "The position reached from a start, a course, and a distance.",
      GeoAction::destination, 1, options, chosen);
  command->add_option("--course", options->course, "Course in degrees true")
      ->required()
      ->check(plainNumber())
      ->option_text("DEGREES");
  command->add_option("--distance,--way", options->way, "Distance, in the unit of --unit")
      ->required()
      ->check(plainNumber())
      ->option_text("DISTANCE");
  addUnit(addMeasure(*command, options), options);
}

void addGrids(CLI::App& geo, const Shared& options, Chosen& chosen) {
  options->ellipsoid = kWgs84;
  options->digits = 5;
  options->pairs = 3;
  CLI::App* const utm = addQuestion(
      geo, "utm", "Zone, easting, and northing in whole meters, for example 32U 687299 5332401.",
      GeoAction::utm, 1, options, chosen);
  utm->add_option("--ellipsoid", options->ellipsoid, "Ellipsoid (default: 23, WGS-84)")
      ->transform(ellipsoidWord())
      ->option_text("N|NAME");
  utm->footer(ellipsoidList());
  CLI::App* const mgrs =
      addQuestion(geo, "mgrs", "MGRS grid reference on WGS-84, for example 32U PU 87299 32401.",
                  GeoAction::mgrs, 1, options, chosen);
  mgrs->add_option("--digits", options->digits,
                   "Digits each for easting and northing (default: 5, one meter)")
      ->check(CLI::Range(1, 5))
      ->option_text("1..5");
  CLI::App* const locator =
      addQuestion(geo, "locator", "Amateur radio grid locator, for example JN58sc.",
                  GeoAction::locator, 1, options, chosen);
  locator->add_option("--pairs", options->pairs, "Number of character pairs (default: 3)")
      ->check(CLI::Range(1, 5))
      ->option_text("1..5");
}

}  // namespace

void addGeoCommand(CLI::App& program, Chosen& chosen) {
  CLI::App& geo = *program.add_subcommand(
      "geo", "Convert positions and calculate distances, courses, and areas.");
  geo.require_subcommand(1);
  geo.footer(
      "Enter positions as LAT,LON in decimal degrees; south and west are negative:\n"
      "  vgps geo distance 48.1173,11.516667 52.52,13.4\n"
      "  vgps geo utm -33.8568,151.2153");
  const auto options = std::make_shared<GeoOptions>();
  CLI::App& distance =
      *addQuestion(geo, "distance", "Shortest distance on the surface of the earth.",
                   GeoAction::distance, 2, options, chosen);
  addUnit(addMeasure(distance, options), options);
  addMeasure(*addQuestion(geo, "bearing",
                          "Initial course from the first position to the second, in degrees true.",
                          GeoAction::bearing, 2, options, chosen),
             options);
  addDestination(geo, options, chosen);
  addMeasure(
      *addQuestion(geo, "area",
                   "Area enclosed by three or more positions. The last is joined to the first.",
                   GeoAction::area, 3, options, chosen),
      options)
      .get_option("POSITIONS")
      ->expected(3, kMostCorners)
      ->description("Three or more corners in order, each as LAT,LON");
  addQuestion(geo, "dms", "Latitude and longitude in degrees, minutes, and seconds.",
              GeoAction::dms, 1, options, chosen);
  addGrids(geo, options, chosen);
}

}  // namespace vgps
