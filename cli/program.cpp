#include "cli/program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>

#include "base/allocation.h"
#include "base/number.h"
#include "base/version.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "platform/files.h"

namespace vgps {
namespace {

void addMonitor(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<MonitorOptions>();
  CLI::App* const command =
      program.add_subcommand("monitor",
                             "Show the live fix of a receiver: a refreshed block on a terminal, "
                             "otherwise one line per second. Press Ctrl+C to stop.");
  command
      ->add_option("--port", options->port,
                   "Port of the receiver, for example COM3 or /dev/ttyUSB0")
      ->option_text("DEV");
  command->add_option("--speed", options->speed, "Baud rate")
      ->check(positiveNumber())
      ->option_text("N (9600)");
  addSimulate(*command, options->simulated, "Use a built-in simulation instead of a receiver");
  command->add_option("--log", options->logPath, "Append all received data to this file")
      ->option_text("FILE");
  CLI::Option* const json =
      command->add_flag("--json", options->json, "Print one JSON object per second");
  command->add_flag("--all", options->all, "With --json: include internal values")->needs(json);
  command->add_option("--for", options->seconds, "Stop after this many seconds")
      ->check(positiveNumber())
      ->option_text("SECONDS");
  command->callback([options, &chosen] { chosen = [options] { return runMonitor(*options); }; });
}

void addReplay(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<ReplayOptions>();
  CLI::App* const command =
      program.add_subcommand("replay",
                             "Read a recorded log (NMEA text, SiRF binary, or both) at full speed "
                             "and print the final state.");
  command
      ->add_option("FILE", options->path,
                   "Log file to read, or - for standard input; then talkers other than GP are only "
                   "used after three seconds, as with a live receiver")
      ->required()
      ->option_text(" ");
  command->add_flag("--json", options->json, "Print the state as one JSON object");
  command->add_flag("--lines", options->lines, "Print one JSON object per line of the log");
  addTalkers(
      *command, [options](TalkerSetting talkers) { options->talkers = talkers; },
      " (default: auto)");
  command
      ->add_option("--utc-offset", options->utcOffsetMinutes,
                   "UTC minus local time in minutes, for example -120 for UTC+2")
      ->check(CLI::Range(-1440, 1440))
      ->option_text("MINUTES");
  command->callback([options, &chosen] { chosen = [options] { return runReplay(*options); }; });
}

void addPorts(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<PortsOptions>();
  CLI::App* const command =
      program.add_subcommand("ports",
                             "Listen to every serial port for three seconds and report which have "
                             "a receiver, and why the others do not.");
  command->add_option("--port", options->ports, "Check only these ports")->option_text("DEV");
  command->add_option("--speed", options->speed, "Baud rate")
      ->check(positiveNumber())
      ->option_text("N (9600)");
  command->add_flag("--search", options->search,
                    "Try all common baud rates; takes up to 30 seconds");
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options, &chosen] { chosen = [options] { return runPorts(*options); }; });
}

void addSettings(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<SettingsOptions>();
  CLI::App* const command =
      program.add_subcommand("settings", "Show or change the settings in vgps.xml.");
  command
      ->add_option("--file", options->file, "Settings file (default: vgps.xml next to the program)")
      ->check(nonEmptyName())
      ->option_text("FILE");
  command->require_subcommand(1);
  CLI::App* const list = command->add_subcommand("list", "List every setting and its value");
  list->add_flag("--json", options->json, "Print JSON");
  CLI::App* const get = command->add_subcommand("get", "Print one value");
  CLI::App* const set = command->add_subcommand("set", "Change one value and save the file");
  for (CLI::App* const one : {list, get, set}) one->fallthrough();
  for (CLI::App* const one : {get, set}) {
    one->add_option("PATH", options->path, "Element path, for example cfg\\gps")
        ->required()
        ->option_text(" ");
    one->add_option("KEY", options->key, "Attribute name, for example port")
        ->required()
        ->option_text(" ");
  }
  set->add_option("VALUE", options->value, "New value")->required()->option_text(" ");
  get->callback([options] { options->action = SettingsOptions::Action::get; });
  set->callback([options] { options->action = SettingsOptions::Action::set; });
  command->callback([options, &chosen] { chosen = [options] { return runSettings(*options); }; });
}

void addXml(CLI::App& program, Chosen& chosen) {
  const auto options = std::make_shared<XmlOptions>();
  CLI::App* const command = program.add_subcommand(
      "xml",
      "Read an XML file. With -o, save it in the program's own layout; exits with status 2 when "
      "another program is changing that file.");
  command->add_option("FILE", options->file, "File to read")
      ->required()
      ->check(nonEmptyName())
      ->option_text(" ");
  command->add_option("-o", options->output, "File to write")
      ->check(nonEmptyName())
      ->option_text("OUT");
  command->add_flag("--lenient", options->lenient,
                    "Accept other programs' files: values in single quotes, line breaks inside "
                    "tags, entities of the document type");
  command->callback([options, &chosen] { chosen = [options] { return runXml(*options); }; });
}

std::vector<std::string> commandNames(const CLI::App& program) {
  std::vector<std::string> names;
  for (const CLI::App* const command :
       program.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  return names;
}

// "monitor, replay or xml"
std::string listed(const std::vector<std::string>& names) {
  std::string text;
  for (size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " or " : ", ";
    text += names[i];
  }
  return text;
}

// CLI11 takes "-.5" for an option, but accepts "-0.5" as a number.
void giveZerosToNumbers(std::vector<std::string>& arguments) {
  for (std::string& argument : arguments) {
    if (argument.starts_with("-.")) argument.insert(1, 1, '0');
  }
}

// Refers to the help of the command in these arguments.
std::string helpFor(const CLI::App& program, const std::vector<std::string>& arguments) {
  const std::vector<std::string> names = commandNames(program);
  const bool known =
      !arguments.empty() && std::find(names.begin(), names.end(), arguments[0]) != names.end();
  return " (see vgps " + (known ? arguments[0] + " " : "") + "--help)";
}

std::string firstLine(std::string_view text) {
  return std::string(text.substr(0, text.find('\n')));
}

}  // namespace

CLI::Validator positiveNumber() {
  return {[](const std::string& text) {
            return leadingDouble(text) > 0 ? std::string()
                                           : text + " is not a number greater than 0";
          },
          ""};
}

CLI::Validator nonEmptyName() {
  return {[](const std::string& text) {
            return text.empty() ? std::string("the file name must not be empty") : std::string();
          },
          ""};
}

void addTalkers(CLI::App& command, std::function<void(TalkerSetting)> set,
                const std::string& defaultText) {
  command
      .add_option_function<int>(
          "--talkers",
          [set = std::move(set)](int value) { set(static_cast<TalkerSetting>(value)); },
          "Use RMC, GGA, and GSA from talkers other than GP: auto (each kind that GP does not "
          "send, or sends without a fix), always, or never" +
              defaultText)
      ->transform(oneOf({{"auto", 0}, {"always", 1}, {"never", 2}}))
      ->option_text("auto|always|never");
}

CLI::Option* addSimulate(CLI::App& command, Simulated& simulated, const std::string& purpose) {
  const auto choose =
      [names = oneOf({{"walk", static_cast<int>(Simulated::walk)},
                      {"trip", static_cast<int>(Simulated::trip)}})](std::string& text) {
        if (text == "true") text = "walk";  // without a value
        return names(text);
      };
  return command
      .add_flag(
          "--simulate", simulated,
          purpose + ": a walk through a town, or with --simulate=trip a trip around the globe")
      ->transform(CLI::Validator(choose, ""))
      ->option_text("[=walk|trip]");
}

CLI::Validator oneOf(std::vector<std::pair<std::string, int>> words) {
  return {[words = std::move(words)](std::string& text) -> std::string {
            std::string names;
            for (const auto& [word, number] : words) {
              if (word != text) {
                names += (names.empty() ? "" : ", ") + word;
                continue;
              }
              text = std::to_string(number);
              return {};
            }
            return text + " is not one of " + names;
          },
          ""};
}

void warn(std::string_view message) {
  std::fprintf(stderr, "vgps: %.*s\n", static_cast<int>(message.size()), message.data());
}

int fail(std::string_view message) {
  warn(message);
  return 1;
}

std::string cannotRead(const std::string& file) {
  return isNotAFile(file) ? file + " is not a regular file" : "cannot read " + file;
}

int finishOutput() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return 0;
  return fail("cannot write to standard output");
}

namespace {

int runArguments(std::vector<std::string> arguments) {
  CLI::App program(
      "Reads GPS receivers and logs, records and edits tracks, and calculates with positions.",
      "vgps");
  program.allow_windows_style_options(false);  // "/log" is a path on every system
  program.set_version_flag("--version", std::string("vgps ") + kVersion, "Print the version");
  Chosen chosen;
  for (const auto add : {addMonitor, addReplay, addPorts, addRecordCommand, addConvertCommand,
                         addInfoCommand, addTrackCommand, addLibraryCommand, addGeoCommand,
                         addRecoverCommand, addSettings, addXml}) {
    add(program, chosen);
  }
  if (!arguments.empty() && arguments[0] == "geo") giveZerosToNumbers(arguments);
  const std::string help = helpFor(program, arguments);
  arguments = withValueMarked(std::move(arguments));
  std::reverse(arguments.begin(), arguments.end());  // this overload of parse expects reverse order
  try {
    program.parse(std::move(arguments));
  } catch (const CLI::Success& wanted) {  // --help, --version
    return program.exit(wanted);
  } catch (const CLI::ParseError& error) {
    return fail(firstLine(error.what()) + help);
  }
  return chosen ? chosen()
                : fail("no command given; choose " + listed(commandNames(program)) + help);
}

void tellOutOfMemory() { std::fputs("vgps: out of memory\n", stderr); }

}  // namespace

int runProgram(std::vector<std::string> arguments) {
  endWithoutMemory(tellOutOfMemory);
  try {
    return runArguments(std::move(arguments));
  } catch (const std::bad_alloc&) {
    tellOutOfMemory();
    return 1;
  }
}

}  // namespace vgps
