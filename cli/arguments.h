#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <utility>
#include <vector>

// What the command line takes, for each family of commands. A command that was recognised puts what
// is to be done into `chosen`.
namespace vgps {

using Chosen = std::function<int()>;

void addRecordCommand(CLI::App& program, Chosen& chosen);
void addConvertCommand(CLI::App& program, Chosen& chosen);
void addInfoCommand(CLI::App& program, Chosen& chosen);
void addTrackCommand(CLI::App& program, Chosen& chosen);
void addGeoCommand(CLI::App& program, Chosen& chosen);
void addRecoverCommand(CLI::App& program, Chosen& chosen);

// The library's own checks speak of limits and mappings; the user wants to read what is allowed.
CLI::Validator positiveNumber();
// An empty name, as a script's unset variable leaves it, is none.
CLI::Validator nonEmptyName();
// One of some words, for the number beside it.
CLI::Validator oneOf(std::vector<std::pair<std::string, int>> words);

}  // namespace vgps
