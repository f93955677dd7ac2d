#pragma once

#include <cstdint>

// Every command of the desktop program, by the names in res/commands.def.
namespace vgps {

enum class Command : uint32_t {
#define COMMAND(number, name) name = (number),
#define COMMANDS(first, last, name) name = (first), name##Last = (last),
#include "res/commands.def"
#undef COMMAND
#undef COMMANDS
};

// How far a command stands behind the first one of its family.
constexpr uint32_t operator-(Command command, Command first) {
  return static_cast<uint32_t>(command) - static_cast<uint32_t>(first);
}

}  // namespace vgps
