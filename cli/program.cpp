#include "cli/program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>

#include "base/number.h"
#include "cli/commands.h"
#include "cli/version.h"

namespace vgps {
namespace {

// In the order of TalkerSetting.
constexpr std::array<std::string_view, 3> kTalkerWords = {"auto", "always", "never"};

// The library's own checks speak of limits and mappings; a person wants to read what is allowed.
CLI::Validator above0() {
  return {[](const std::string& text) {
            return leadingDouble(text) > 0 ? std::string() : text + " is no number above 0";
          },
          ""};
}

CLI::Validator talkerWord() {
  return {[](std::string& text) -> std::string {
            const auto found = std::find(kTalkerWords.begin(), kTalkerWords.end(), text);
            if (found == kTalkerWords.end()) return text + " is none of auto, always, never";
            text = std::to_string(found - kTalkerWords.begin());
            return {};
          },
          ""};
}

CLI::App* addMonitor(CLI::App& program, MonitorOptions& options) {
  CLI::App* const command = program.add_subcommand(
      "monitor",
      "Show the live fix of a receiver: one refreshed block on a terminal, one line a second "
      "otherwise. Ends with Ctrl-C.");
  command->add_option("--port", options.port, "The receiver's port (/dev/ttyUSB0, COM3)")
      ->option_text("DEV");
  command->add_option("--speed", options.speed, "Line speed in baud")
      ->check(above0())
      ->option_text("N (9600)");
  command->add_flag("--simulate", options.simulate, "A built-in trip instead of a receiver");
  command->add_option("--log", options.logPath, "Append what is received to this file")
      ->option_text("FILE");
  command->add_flag("--json", options.json, "Print one JSON object a second");
  command->add_option("--for", options.seconds, "End after so many seconds")
      ->check(above0())
      ->option_text("SECONDS");
  return command;
}

CLI::App* addReplay(CLI::App& program, ReplayOptions& options) {
  CLI::App* const command = program.add_subcommand(
      "replay",
      "Read a recorded log (NMEA text, SiRF binary, or both) as fast as it goes and print the "
      "state it leads to.");
  command->add_option("FILE", options.path, "The log")->required()->option_text(" ");
  command->add_flag("--json", options.json, "Print the state as one JSON object");
  command->add_flag("--lines", options.lines, "Print one JSON object for each line of the log");
  command
      ->add_option("--talkers", options.talkers,
                   "Whether RMC, GGA and GSA of other talkers than GP count: auto (when GP is "
                   "silent), always, never")
      ->transform(talkerWord())
      ->option_text("auto|always|never");
  command
      ->add_option("--utc-offset", options.utcOffsetMinutes,
                   "UTC minus local time in minutes: -120 where clocks are two hours ahead of UTC")
      ->check(CLI::Range(-1440, 1440))
      ->option_text("MINUTES");
  return command;
}

CLI::App* addPorts(CLI::App& program, PortsOptions& options) {
  CLI::App* const command = program.add_subcommand(
      "ports",
      "Listen to every serial port for three seconds and tell where a receiver answers, and why "
      "not elsewhere.");
  command->add_option("--port", options.ports, "Only these ports")->option_text("DEV");
  command->add_option("--speed", options.speed, "Line speed in baud")
      ->check(above0())
      ->option_text("N (9600)");
  command->add_flag("--json", options.json, "Print JSON");
  return command;
}

CLI::App* addSettings(CLI::App& program, SettingsOptions& options) {
  CLI::App* const command =
      program.add_subcommand("settings", "Show and change the settings in vgps.xml.");
  command->add_option("--file", options.file, "The document (vgps.xml beside the program)")
      ->option_text("FILE");
  command->require_subcommand(1);
  CLI::App* const list = command->add_subcommand("list", "Every setting with its value");
  list->add_flag("--json", options.json, "Print JSON");
  CLI::App* const get = command->add_subcommand("get", "One value");
  CLI::App* const set = command->add_subcommand("set", "Change one value in the file at once");
  for (CLI::App* const one : {list, get, set}) one->fallthrough();
  for (CLI::App* const one : {get, set}) {
    one->add_option("PATH", options.path, "Of elements: cfg\\gps")->required()->option_text(" ");
    one->add_option("KEY", options.key, "The attribute: port")->required()->option_text(" ");
  }
  set->add_option("VALUE", options.value, "What it is set to")->required()->option_text(" ");
  get->callback([&options] { options.action = SettingsOptions::Action::get; });
  set->callback([&options] { options.action = SettingsOptions::Action::set; });
  return command;
}

CLI::App* addXml(CLI::App& program, XmlOptions& options) {
  CLI::App* const command = program.add_subcommand(
      "xml", "Read an XML file, and save it in the program's own layout when -o is given.");
  command->add_option("FILE", options.file, "The file")->required()->option_text(" ");
  command->add_option("-o", options.output, "Where to save it")->option_text("OUT");
  return command;
}

CLI::App* addRecover(CLI::App& program, RecoverOptions& options) {
  using Action = RecoverOptions::Action;
  CLI::App* const command =
      program.add_subcommand("recover",
                             "Tell whether a recording was cut short by a crash or a power cut, "
                             "and go on with it, save or "
                             "discard it. Ends with 2 when a running program still records.");
  command->add_option("--file", options.file, "The settings beside which it lies (vgps.xml)")
      ->option_text("FILE");
  const auto action = [&options](Action chosen) {
    return [&options, chosen] { options.action = chosen; };
  };
  CLI::Option* const save =
      command->add_flag_callback("--save", action(Action::save), "Put it into the track library");
  CLI::Option* const discard =
      command->add_flag_callback("--discard", action(Action::discard), "Delete it");
  CLI::Option* const goOn = command->add_flag_callback(
      "--continue", action(Action::goOn),
      "Go on recording into it until Ctrl-C, then put it into the track library");
  save->excludes(discard)->excludes(goOn);
  discard->excludes(goOn);
  command->add_option("--port", options.port, "The receiver's port, to continue from")
      ->needs(goOn)
      ->option_text("DEV");
  command->add_option("--speed", options.speed, "Its line speed in baud")
      ->needs(goOn)
      ->check(above0())
      ->option_text("N (9600)");
  command->add_flag("--simulate", options.simulate, "Continue from the built-in trip")->needs(goOn);
  command->add_option("--for", options.seconds, "End after so many seconds")
      ->needs(goOn)
      ->check(above0())
      ->option_text("SECONDS");
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
  program.allow_windows_style_options(false);  // "/log" is a path everywhere
  program.set_version_flag("--version", std::string("vgps ") + kVersion, "Print the version");
  MonitorOptions monitorOptions;
  ReplayOptions replayOptions;
  PortsOptions portsOptions;
  const CLI::App* const monitor = addMonitor(program, monitorOptions);
  const CLI::App* const replay = addReplay(program, replayOptions);
  const CLI::App* const ports = addPorts(program, portsOptions);
  SettingsOptions settingsOptions;
  XmlOptions xmlOptions;
  const CLI::App* const settings = addSettings(program, settingsOptions);
  addXml(program, xmlOptions);
  arguments = withValueMarked(std::move(arguments));
  RecoverOptions recoverOptions;
  const CLI::App* const recover = addRecover(program, recoverOptions);
  std::reverse(arguments.begin(), arguments.end());  // as this overload of parse takes them
  try {
    program.parse(std::move(arguments));
  } catch (const CLI::Success& wanted) {  // --help, --version
    return program.exit(wanted);
  } catch (const CLI::ParseError& error) {
    return fail(firstLine(error.what()) + " (see vgps --help)");
  }
  if (program.get_subcommands().empty()) {
    return fail(
        "say what to do: monitor, replay, ports, settings, xml or recover (see vgps --help)");
  }
  if (monitor->parsed()) return runMonitor(monitorOptions);
  if (replay->parsed()) return runReplay(replayOptions);
  if (ports->parsed()) return runPorts(portsOptions);
  if (settings->parsed()) return runSettings(settingsOptions);
  if (recover->parsed()) return runRecover(recoverOptions);
  return runXml(xmlOptions);
}

}  // namespace vgps
