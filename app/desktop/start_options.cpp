#include "app/desktop/start_options.h"

#include <string_view>

#include "base/number.h"

namespace vgps {
namespace {

void refuse(StartOptions& options, std::string_view argument) {
  if (!options.unknownArguments.empty()) options.unknownArguments += ' ';
  options.unknownArguments += argument;
}

bool takeSpeed(StartOptions& options, std::string_view value) {
  const int32_t speed = leadingInt(value);
  if (speed <= 0 || value.find_first_not_of("0123456789") != std::string_view::npos) return false;
  options.speed = static_cast<uint32_t>(speed);
  return true;
}

bool takeValue(StartOptions& options, std::string_view name, std::string_view value) {
  if (name == "--speed") return takeSpeed(options, value);
  if (value.empty()) return false;
  options.port = value;
  return true;
}

bool takeSwitch(StartOptions& options, std::string_view argument) {
  if (argument == "--simulate") return options.simulate = true;
  if (argument == "-log") return options.log = true;
  if (argument == "-as1") return options.installPocketPc = true;
  if (argument == "-as2") return options.installMobile5 = true;
  return false;
}

}  // namespace

StartOptions parseStartOptions(std::span<const std::string> arguments) {
  StartOptions options;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    const size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    if (takeSwitch(options, argument)) continue;
    if (argument == "-simtrack" || argument == "-simruntrack") {
      options.simulateTrack = true;
      options.runTrack = argument == "-simruntrack";
      if (i + 1 < arguments.size() && !arguments[i + 1].starts_with("-")) {
        options.trackPath = arguments[++i];
      }
      continue;
    }
    std::string taken(argument);
    std::string_view value;
    bool understood = name == "--port" || name == "--speed";
    if (equals != std::string_view::npos) {
      value = argument.substr(equals + 1);
    } else if (understood && i + 1 < arguments.size() && !arguments[i + 1].starts_with("--")) {
      value = arguments[++i];
      taken.append(" ").append(value);
    }
    understood = understood && takeValue(options, name, value);
    if (!understood) refuse(options, taken);
  }
  return options;
}

}  // namespace vgps
