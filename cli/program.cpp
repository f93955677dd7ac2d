#include "cli/program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <map>

#include "cli/commands.h"
#include "cli/version.h"

namespace vgps {
namespace {

const std::map<std::string, TalkerSetting> kTalkerWords = {{"auto", TalkerSetting::automatic},
                                                           {"always", TalkerSetting::always},
                                                           {"never", TalkerSetting::never}};

CLI::App* addMonitor(CLI::App& program, MonitorOptions& options) {
  CLI::App* const command = program.add_subcommand(
      "monitor",
      "Show the live fix of a receiver: one refreshed block on a terminal, one line a second "
      "otherwise. Ends with Ctrl-C.");
  command->add_option("--port", options.port, "The receiver's port (/dev/ttyUSB0, COM3)")
      ->type_name("DEV");
  command->add_option("--speed", options.speed, "Line speed in baud")
      ->type_name("N")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command->add_flag("--simulate", options.simulate, "A built-in trip instead of a receiver");
  command->add_option("--log", options.logPath, "Append what is received to this file")
      ->type_name("FILE");
  command->add_flag("--json", options.json, "Print one JSON object a second");
  command->add_option("--for", options.seconds, "End after so many seconds")
      ->type_name("SECONDS")
      ->check(CLI::PositiveNumber);
  return command;
}

CLI::App* addReplay(CLI::App& program, ReplayOptions& options) {
  CLI::App* const command = program.add_subcommand(
      "replay",
      "Read a recorded log (NMEA text, SiRF binary, or both) as fast as it goes and print the "
      "state it leads to.");
  command->add_option("file", options.path, "The log")->required()->type_name("FILE");
  command->add_flag("--json", options.json, "Print the state as one JSON object");
  command->add_flag("--lines", options.lines, "Print one JSON object for each line of the log");
  command
      ->add_option("--talkers", options.talkers,
                   "Read RMC, GGA and GSA of other talkers than GP: auto (when GP is silent), "
                   "always, never")
      ->transform(CLI::CheckedTransformer(kTalkerWords).description("auto|always|never"))
      ->type_name("");
  command
      ->add_option("--utc-offset", options.utcOffsetMinutes,
                   "UTC minus local time in minutes: -120 where clocks are two hours ahead of UTC")
      ->type_name("MINUTES")
      ->check(CLI::Range(-1440, 1440));
  return command;
}

CLI::App* addPorts(CLI::App& program, PortsOptions& options) {
  CLI::App* const command = program.add_subcommand(
      "ports",
      "Listen to every serial port for three seconds and tell where a receiver answers, and why "
      "not elsewhere.");
  command->add_option("--port", options.ports, "Only these ports")->type_name("DEV");
  command->add_option("--speed", options.speed, "Line speed in baud")
      ->type_name("N")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command->add_flag("--json", options.json, "Print JSON");
  return command;
}

std::string firstLine(std::string_view text) {
  return std::string(text.substr(0, text.find('\n')));
}

}  // namespace

int fail(std::string_view message) {
  std::fprintf(stderr, "vgps: %.*s\n", static_cast<int>(message.size()), message.data());
  return 1;
}

int finishOutput() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return 0;
  return fail("cannot write to standard output");
}

int runProgram(std::vector<std::string> arguments) {
  CLI::App program("Reads GPS receivers and their logs.", "vgps");
  program.set_version_flag("--version", std::string("vgps ") + kVersion, "Print the version");
  program.require_subcommand(1);
  MonitorOptions monitorOptions;
  ReplayOptions replayOptions;
  PortsOptions portsOptions;
  const CLI::App* const monitor = addMonitor(program, monitorOptions);
  const CLI::App* const replay = addReplay(program, replayOptions);
  addPorts(program, portsOptions);
  std::reverse(arguments.begin(), arguments.end());  // as this overload of parse takes them
  try {
    program.parse(std::move(arguments));
  } catch (const CLI::Success& wanted) {  // --help, --version
    return program.exit(wanted);
  } catch (const CLI::ParseError& error) {
    return fail(firstLine(error.what()) + " (see vgps --help)");
  }
  if (monitor->parsed()) return runMonitor(monitorOptions);
  if (replay->parsed()) return runReplay(replayOptions);
  return runPorts(portsOptions);
}

}  // namespace vgps
