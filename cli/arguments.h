#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands.h"

// The command-line definitions of each family of commands. When a command is recognized, its action
// is stored in `chosen`.
namespace vgps {

using Chosen = std::function<int()>;

void addRecordCommand(CLI::App& program, Chosen& chosen);
void addConvertCommand(CLI::App& program, Chosen& chosen);
void addLibraryCommand(CLI::App& program, Chosen& chosen);
void addInfoCommand(CLI::App& program, Chosen& chosen);
void addTrackCommand(CLI::App& program, Chosen& chosen);
void addGeoCommand(CLI::App& program, Chosen& chosen);
void addRecoverCommand(CLI::App& program, Chosen& chosen);

// CLI11's own checks report limits and mappings; this one tells the user what is allowed.
CLI::Validator positiveNumber();
// Rejects an empty name, such as from an unset shell variable.
CLI::Validator nonEmptyName();
// --simulate, alone or with "=walk" or "=trip"; `purpose` begins its help.
CLI::Option* addSimulate(CLI::App& command, Simulated& simulated, const std::string& purpose);
// --talkers; `defaultText` ends its help.
void addTalkers(CLI::App& command, std::function<void(TalkerSetting)> set,
                const std::string& defaultText);
// Accepts one of these words and replaces it by its number.
CLI::Validator oneOf(std::vector<std::pair<std::string, int>> words);

}  // namespace vgps
