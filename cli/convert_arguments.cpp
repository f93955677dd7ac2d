#include <memory>

#include "cli/arguments.h"
#include "cli/commands.h"

namespace vgps {

void addConvertCommand(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<ConvertCommandOptions>();
  CLI::App* const command = program.add_subcommand(
      "convert",
      "Convert tracks, routes, and waypoints between GPX, KML, KMZ, LOC, GeoJSON, CSV, and track "
      "files (.xml), and receiver logs (.nmea, .log, .txt) into any of them.");
  command
      ->add_option("IN", options->inputs,
                   "Files to read; the formats are recognized; - for standard input")
      ->required()
      ->check(nonEmptyName())
      ->option_text(" ");
  command
      ->add_option("-o", options->output,
                   "File to write, in the format of its extension; a folder for several track "
                   "files; - for standard output")
      ->required()
      ->check(nonEmptyName())
      ->option_text("OUT");
  command->add_option("--from", options->from, "Format of standard input (default: recognized)")
      ->check(CLI::IsMember({"gpx", "kml", "kmz", "loc", "geojson", "csv", "xml", "nmea"}))
      ->option_text("gpx|kml|kmz|loc|geojson|csv|xml|nmea");
  command->add_option("--to", options->to, "Format to write, whatever the name of the output")
      ->option_text("gpx|kml|kmz|loc|geojson|csv|xml");
  command->add_option("--as", options->as, "Turn everything into tracks, routes, or waypoints")
      ->transform(oneOf({{"track", 1}, {"route", 2}, {"waypoints", 3}}))
      ->option_text("track|route|waypoints");
  command->add_option("--gpx", options->gpx, "Version of GPX to write (default: 1.1)")
      ->transform(oneOf({{"1.0", 10}, {"1.1", 11}}))
      ->option_text("1.0|1.1");
  command->add_option("--name", options->name, "Name of the track")->option_text("NAME");
  command->add_flag("--all-points", options->allPoints,
                    "Take every fix of a log instead of those that pass the recording filter");
  command->add_flag("--join", options->join, "Join several tracks into one track file");
  command->add_flag("--report", options->report,
                    "Print one line on standard error for each thing that the target cannot hold");
  command->callback([options, &chosen] { chosen = [options] { return runConvert(*options); }; });
}

}  // namespace vgps
