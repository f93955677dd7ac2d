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
  command.add_option("FILE", options->files, "The track file")
      ->required()
      ->expected(1)
      ->check(aName())
      ->option_text(" ");
}

void addOutput(CLI::App& command, const Shared& options) {
  command.add_option("-o", options->output, "Where the result goes; may be the file itself")
      ->required()
      ->check(aName())
      ->option_text("OUT");
}

void addSplit(CLI::App& track, const Shared& options, Chosen& chosen) {
  CLI::App* const command = addEdit(track, "split", "Make two tracks of one; no point is in both.",
                                    TrackAction::split, options, chosen);
  addFile(*command, options);
  command
      ->add_option("--at", options->at,
                   "The number of the point with which the second part begins; points count from 1")
      ->required()
      ->check(above0())
      ->option_text("POINT");
  command->add_option("-o", options->output, "Where the first part goes")
      ->required()
      ->check(aName())
      ->option_text("FIRST");
  command->add_option("--second", options->secondOutput, "Where the second part goes")
      ->required()
      ->check(aName())
      ->option_text("SECOND");
}

void addThin(CLI::App& track, const Shared& options, Chosen& chosen) {
  CLI::App* const command = addEdit(
      track, "thin",
      "Leave points out: first those that crowd, then those at which the way does not turn. "
      "Points with a mark, a status or an attachment stay in the second step, the two ends always.",
      TrackAction::thin, options, chosen);
  addFile(*command, options);
  addOutput(*command, options);
  command
      ->add_option("--metres", options->metres,
                   "A point goes when the distances to its two neighbours and that between them "
                   "add up to no more (15)")
      ->check(above0())
      ->option_text("METRES");
  command
      ->add_option("--angle", options->angle,
                   "A point goes when the way turns there by no more degrees (10)")
      ->check(above0())
      ->option_text("DEGREES");
}

void addTrim(CLI::App& track, const Shared& options, Chosen& chosen) {
  CLI::App* const command =
      addEdit(track, "trim", "Keep what lies between two points or two times.", TrackAction::trim,
              options, chosen);
  command->footer(
      "FROM and TO are a point's number, from 1, or a local time as the points have it:\n"
      "  vgps track trim Ride.XML -o Ride.XML --from 12 --to 340\n"
      "  vgps track trim Ride.XML -o Noon.XML --from \"2010-07-05 12:00\"");
  addFile(*command, options);
  addOutput(*command, options);
  command->add_option("--from", options->from, "The first to stay (the first of the track)")
      ->check(aName())
      ->option_text("FROM");
  command->add_option("--to", options->to, "The last to stay (the last of the track)")
      ->check(aName())
      ->option_text("TO");
}

}  // namespace

void addRecordCommand(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<RecordOptions>();
  CLI::App* const command = program.add_subcommand(
      "record",
      "Record a track out of a log: its fixes pass the recording filter as those of a receiver do. "
      "The points' time, in a recording that of the computer, is taken from the log's own UTC.");
  command->add_option("--replay", options->log, "The log (NMEA text, SiRF binary, or both)")
      ->required()
      ->check(aName())
      ->option_text("LOG");
  command->add_option("-o", options->output, "The track file; written whole or not at all")
      ->required()
      ->check(aName())
      ->option_text("TRACK");
  command
      ->add_option(
          "--settings", options->settings,
          "A settings document: thresholds, every Nth fix, and what is written of each "
          "point (cfg\\track; rsc, rtc, rbc, rci, res, smv of cfg\\vgps). Without it those "
          "of a first start: positions and cells, no speeds or times")
      ->check(aName())
      ->option_text("FILE");
  command
      ->add_option("--utc-offset", options->utcOffsetMinutes,
                   "UTC minus local time in minutes, for the times in the file: -120 where clocks "
                   "are two hours ahead of UTC (0)")
      ->check(CLI::Range(-1440, 1440))
      ->option_text("MINUTES");
  command->callback([options, &chosen] { chosen = [options] { return runRecord(*options); }; });
}

void addInfoCommand(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<InfoOptions>();
  CLI::App* const command = program.add_subcommand(
      "info",
      "What a track file amounts to: points, length, duration, moving and stopped time, heights, "
      "bounds, speeds.");
  command->footer(
      "Stopped is the time between points that lie so close for it that the way between them makes "
      "less than 1 km/h. A climb or descent counts once the height has turned back by more than "
      "5 m, so that a receiver's noise climbs nothing.");
  command->add_option("FILE", options->file, "The track file")
      ->required()
      ->check(aName())
      ->option_text(" ");
  command
      ->add_option("--speed-unit", options->speedUnit,
                   "The unit in which the file's speeds were written (kmh)")
      ->transform(oneOf({{"kmh", kKmh}, {"knots", kKnots}, {"mps", kMps}, {"mph", kMph}}))
      ->option_text("kmh|knots|mps|mph");
  command->add_flag("--json", options->json, "Print one JSON object; null is what is not known");
  command->callback([options, &chosen] { chosen = [options] { return runInfo(*options); }; });
}

void addTrackCommand(CLI::App& program, Chosen& chosen) {
  CLI::App& track = *program.add_subcommand("track", "Edit track files.");
  track.require_subcommand(1);
  track.footer(
      "Results are written whole or not at all. Of a damaged file the good points are used; where "
      "the result takes its place it is kept beside, named .bad.");
  const auto options = std::make_shared<TrackOptions>();
  CLI::App* const join = addEdit(track, "join", "One track out of several, one behind the other.",
                                 TrackAction::join, options, chosen);
  join->add_option("FILES", options->files, "Two track files or more, in this order")
      ->required()
      ->expected(2, 10000)
      ->check(aName())
      ->option_text(" ");
  addOutput(*join, options);
  addSplit(track, options, chosen);
  CLI::App* const reverse =
      addEdit(track, "reverse",
              "The last point becomes the first. Times, marks and courses stay with their points.",
              TrackAction::reverse, options, chosen);
  addFile(*reverse, options);
  addOutput(*reverse, options);
  addThin(track, options, chosen);
  addTrim(track, options, chosen);
}

}  // namespace vgps
