#pragma once

#include <windows.h>

#include <span>
#include <string>

namespace vgps {

// Runs the desktop program and returns its exit code. `show` is the initial window state.
int runDesktop(HINSTANCE instance, int show, std::span<const std::string> arguments);

}  // namespace vgps
