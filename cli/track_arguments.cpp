#include <memory>

#include "cli/arguments.h"
#include "cli/commands.h"
#include "geo/units.h"

namespace vgps {
namespace {

using TrackAction = TrackOptions::Action;
using Shared = std::shared_ptr<TrackOptions>;

CLI::App* addEdit(CLI::App& track, const char* name, const char* does, TrackAction action,
                  const Shared& options, Chosen& chosen) {
  CLI::App* const command = track.add_subcommand(name, does);
  command->callback([options, action, &chosen] {
    options->action = action;
    chosen = [options] { return runTrack(*options); };
  });
  return command;
}

void addFile(CLI::App& command, const Shared& options) {
  command.add_option("FILE", options->files, "Track file to read")
      ->required()
      ->expected(1)
      ->check(nonEmptyName())
      ->option_text(" ");
}

void addOutput(CLI::App& command, const Shared& options) {
  command.add_option("-o", options->output, "File to write; may be the input file")
      ->required()
      ->check(nonEmptyName())
      ->option_text("OUT");
}

void addSplit(CLI::App& track, const Shared& options, Chosen& chosen) {
  CLI::App* const command =
      addEdit(track, "split", "Split a track in two. No point is in both parts.",
              TrackAction::split, options, chosen);
  addFile(*command, options);
  command
      ->add_option("--at", options->at,
                   "Number of the first point of the second part, counted from 1")
      ->required()
      ->check(positiveNumber())
      ->option_text("POINT");
  command->add_option("-o", options->output, "File to write the first part to")
      ->required()
      ->check(nonEmptyName())
      ->option_text("FIRST");
  command->add_option("--second", options->secondOutput, "File to write the second part to")
      ->required()
      ->check(nonEmptyName())
      ->option_text("SECOND");
}

void addThin(CLI::App& track, const Shared& options, Chosen& chosen) {
  CLI::App* const command =
      addEdit(track, "thin",
              "Remove points: first those that are too close together, then those where the track "
              "does not turn. The second step keeps points with a mark, a status, or an "
              "attachment. Both ends are always kept.",
              TrackAction::thin, options, chosen);
  addFile(*command, options);
  addOutput(*command, options);
  command
      ->add_option("--meters,--meters", options->meters,
                   "Remove a point when the distances to its two neighbors and between them add up "
                   "to no more than this (default: 15)")
      ->check(positiveNumber())
      ->option_text("METERS");
  command
      ->add_option("--angle", options->angle,
                   "Remove a point where the track turns by no more than this (default: 10)")
      ->check(positiveNumber())
      ->option_text("DEGREES");
}

void addTrim(CLI::App& track, const Shared& options, Chosen& chosen) {
  CLI::App* const command =
      addEdit(track, "trim", "Keep only the part between two points or two times.",
              TrackAction::trim, options, chosen);
  command->footer(
      "FROM and TO are point numbers, counted from 1, or local times:\n"
      "  vgps track trim Ride.XML -o Ride.XML --from 12 --to 340\n"
      "  vgps track trim Ride.XML -o Noon.XML --from \"2010-07-05 12:00\"");
  addFile(*command, options);
  addOutput(*command, options);
  command
      ->add_option("--from", options->from,
                   "First point or time to keep (default: start of the track)")
      ->check(nonEmptyName())
      ->option_text("FROM");
  command->add_option("--to", options->to, "Last point or time to keep (default: end of the track)")
      ->check(nonEmptyName())
      ->option_text("TO");
}

}  // namespace

void addRecordCommand(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<RecordOptions>();
  CLI::App* const command = program.add_subcommand(
      "record",
      "Record a track from a receiver until Ctrl+C, or from a log. The fixes pass through the "
      "recording filter. What a receiver sends is on disk within seconds, in TRACK.journal, which "
      "is "
      "deleted when the track is written. With --replay, point times come from the UTC in the log, "
      "not from the computer's clock.");
  CLI::Option* const replay =
      command
          ->add_option("--replay", options->log,
                       "Log file (NMEA text, SiRF binary, or both), or - for standard input")
          ->check(nonEmptyName())
          ->option_text("LOG");
  CLI::Option* const port = command->add_option("--port", options->port, "Port of the receiver")
                                ->check(nonEmptyName())
                                ->option_text("DEV");
  CLI::Option* const simulate =
      command->add_flag("--simulate", options->simulate, "Record the built-in trip");
  replay->excludes(port)->excludes(simulate);
  port->excludes(simulate);
  command->add_option("--speed", options->speed, "Baud rate of the receiver")
      ->needs(port)
      ->check(positiveNumber())
      ->option_text("N (9600)");
  command->add_option("--for", options->seconds, "Stop after this many seconds")
      ->excludes(replay)
      ->check(positiveNumber())
      ->option_text("SECONDS");
  command
      ->add_option_function<int>(
          "--talkers",
          [options](int value) { options->talkers = static_cast<TalkerSetting>(value); },
          "Use RMC, GGA, and GSA from talkers other than GP: auto (only when GP is silent), "
          "always, or never (default: as the settings say)")
      ->transform(oneOf({{"auto", 0}, {"always", 1}, {"never", 2}}))
      ->option_text("auto|always|never");
  command
      ->add_option("-o", options->output, "Track file to write; written completely or not at all")
      ->required()
      ->check(nonEmptyName())
      ->option_text("TRACK");
  command
      ->add_option(
          "--settings", options->settings,
          "Settings file with the thresholds, the number of fixes to skip, and the values stored "
          "with each point (cfg\\track; rsc, rtc, rbc, rci, res, smv of cfg\\vgps). Without it, "
          "default settings apply (positions and cells, no speeds or times)")
      ->check(nonEmptyName())
      ->option_text("FILE");
  command
      ->add_option("--utc-offset", options->utcOffsetMinutes,
                   "UTC minus local time in minutes, used for the times in the file, for example "
                   "-120 for UTC+2 (default: 0)")
      ->check(CLI::Range(-1440, 1440))
      ->option_text("MINUTES");
  command->callback([options, &chosen] { chosen = [options] { return runRecord(*options); }; });
}

void addInfoCommand(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<InfoOptions>();
  CLI::App* const command =
      program.add_subcommand("info",
                             "Summarize a track file: points, length, duration, moving and stopped "
                             "time, altitudes, bounds, speeds. Of a track library, every track, or "
                             "the one that --track names.");
  command->footer(
      "Time between two points counts as stopped when the speed between them is below 1 km/h. A "
      "climb or descent counts only after the altitude has reversed by more than 5 m, so that "
      "receiver noise is ignored.");
  command->add_option("FILE", options->file, "Track file to read")
      ->required()
      ->check(nonEmptyName())
      ->option_text(" ");
  command->add_option("--track", options->track, "Number or name of one track of a library")
      ->check(nonEmptyName())
      ->option_text("N|NAME");
  command
      ->add_option("--speed-unit", options->speedUnit,
                   "Unit of the speeds in the file (default: kmh)")
      ->transform(oneOf({{"kmh", kKmh}, {"knots", kKnots}, {"mps", kMps}, {"mph", kMph}}))
      ->option_text("kmh|knots|mps|mph");
  command->add_flag("--as-recorded", options->asRecorded,
                    "Measure on the sphere that recorded tracks use (default: the WGS-84 "
                    "ellipsoid)");
  command->add_flag(
      "--json", options->json,
      "Print one JSON object, or an array for all tracks of a library; unknown values are "
      "null");
  command->callback([options, &chosen] { chosen = [options] { return runInfo(*options); }; });
}

void addTrackCommand(CLI::App& program, Chosen& chosen) {
  CLI::App& track = *program.add_subcommand("track", "Edit track files.");
  track.require_subcommand(1);
  track.footer(
      "Each result file is written completely or not at all. From a damaged file, only the "
      "readable points are used. If the result replaces a damaged file, the original is kept next "
      "to it with the extension .bad.");
  const auto options = std::make_shared<TrackOptions>();
  CLI::App* const join =
      addEdit(track, "join", "Join several tracks end to end.", TrackAction::join, options, chosen);
  join->add_option("FILES", options->files, "Two or more track files, in order")
      ->required()
      ->expected(2, 10000)
      ->check(nonEmptyName())
      ->option_text(" ");
  addOutput(*join, options);
  addSplit(track, options, chosen);
  CLI::App* const reverse =
      addEdit(track, "reverse",
              "Reverse the order of the points. Times, marks, and courses stay with their points.",
              TrackAction::reverse, options, chosen);
  addFile(*reverse, options);
  addOutput(*reverse, options);
  addThin(track, options, chosen);
  addTrim(track, options, chosen);
}

}  // namespace vgps
