#pragma once

#include <windows.h>

#include <span>
#include <string>

namespace vgps {

// The desktop program from its start to its end; the exit code. `show`: how the window first shows.
int runDesktop(HINSTANCE instance, int show, std::span<const std::string> arguments);

}  // namespace vgps
