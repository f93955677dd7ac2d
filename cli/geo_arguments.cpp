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

// A number of the list or a name in it.
CLI::Validator ellipsoidWord() {
  return {
      [](std::string& text) -> std::string {
        for (size_t i = 1; i < kEllipsoids; ++i) {
          const std::string number = std::to_string(i);
          if (text != number && lowered(text) != lowered(ellipsoids()[i].name)) continue;
          text = number;
          return {};
        }
        return text +
               " is neither a number from 1 to 23 nor a name of the list in vgps geo utm --help";
      },
      ""};
}

CLI::Validator plainNumber() {
  return {[](const std::string& text) {
            return typedNumber(text) ? std::string() : text + " is no number";
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
      ->add_option(positions > 1 ? "POSITIONS" : "POSITION", options->positions,
                   positions == 2 ? "Two positions, LAT,LON each: from and to"
                                  : "LAT,LON in decimal degrees")
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
  command.add_option("--unit", options->unit, "Kilometres, statute or nautical miles (km)")
      ->transform(oneOf({{"km", kKilometres}, {"mi", kMiles}, {"nmi", kNauticalMiles}}))
      ->option_text("km|mi|nmi");
}

void addDestination(CLI::App& geo, const Shared& options, Chosen& chosen) {
  CLI::App* const command =
      addQuestion(geo, "destination", "Where a course leads after a way: LAT,LON.",
                  GeoAction::destination, 1, options, chosen);
  command->add_option("--course", options->course, "Degrees true")
      ->required()
      ->check(plainNumber())
      ->option_text("DEGREES");
  command->add_option("--way", options->way, "In the unit")
      ->required()
      ->check(plainNumber())
      ->option_text("WAY");
  addUnit(*command, options);
}

void addGrids(CLI::App& geo, const Shared& options, Chosen& chosen) {
  options->ellipsoid = kWgs84;
  options->digits = 5;
  options->pairs = 3;
  CLI::App* const utm =
      addQuestion(geo, "utm", "Zone, easting and northing in whole metres: 32U 687299 5332401.",
                  GeoAction::utm, 1, options, chosen);
  utm->add_option("--ellipsoid", options->ellipsoid, "The figure of the earth (23, WGS-84)")
      ->transform(ellipsoidWord())
      ->option_text("N|NAME");
  utm->footer(ellipsoidList());
  CLI::App* const mgrs =
      addQuestion(geo, "mgrs", "Military grid reference on WGS-84: 32U PU 87299 32401.",
                  GeoAction::mgrs, 1, options, chosen);
  mgrs->add_option("--digits", options->digits, "Of easting and northing each (5: metres)")
      ->check(CLI::Range(1, 5))
      ->option_text("1..5");
  CLI::App* const locator = addQuestion(geo, "locator", "Locator of radio amateurs: JN58sc.",
                                        GeoAction::locator, 1, options, chosen);
  locator->add_option("--pairs", options->pairs, "Pairs of characters (3)")
      ->check(CLI::Range(1, 5))
      ->option_text("1..5");
}

}  // namespace

void addGeoCommand(CLI::App& program, Chosen& chosen) {
  CLI::App& geo = *program.add_subcommand("geo", "Calculate with positions.");
  geo.require_subcommand(1);
  geo.footer(
      "Positions are typed LAT,LON in decimal degrees, south and west negative:\n"
      "  vgps geo distance 48.1173,11.516667 52.52,13.4\n"
      "  vgps geo utm -33.8568,151.2153");
  const auto options = std::make_shared<GeoOptions>();
  addUnit(*addQuestion(geo, "distance",
                       "Surface distance, by the program's own formula: which position comes first "
                       "makes a small difference.",
                       GeoAction::distance, 2, options, chosen),
          options);
  addQuestion(geo, "bearing", "The course at the first position towards the second, degrees true.",
              GeoAction::bearing, 2, options, chosen);
  addDestination(geo, options, chosen);
  addQuestion(geo, "area", "What three or more positions enclose, the last joined to the first.",
              GeoAction::area, 3, options, chosen)
      ->get_option("POSITIONS")
      ->expected(3, kMostCorners)
      ->description("Three or more positions, LAT,LON each: the corners in their order");
  addQuestion(geo, "dms", "Degrees, minutes and seconds of latitude and longitude.", GeoAction::dms,
              1, options, chosen);
  addGrids(geo, options, chosen);
}

}  // namespace vgps
