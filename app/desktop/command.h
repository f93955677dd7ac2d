#pragma once

#include <cstdint>

// All commands of the desktop program, by their names in res/commands.def.
namespace vgps {

enum class Command : uint32_t {
#define COMMAND(number, name) name = (number),
#define COMMANDS(first, last, name) name = (first), name##Last = (last),
#include "res/commands.def"
#undef COMMAND
#undef COMMANDS
};

// The index of a command in its family.
constexpr uint32_t operator-(Command command, Command first) {
  return static_cast<uint32_t>(command) - static_cast<uint32_t>(first);
}

}  // namespace vgps
