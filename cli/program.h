#pragma once

#include <string>
#include <vector>

namespace vgps {

// Runs `vgps` with these arguments (without the program's name). Returns the exit status: 0, or 1
// after one line on standard error.
int runProgram(std::vector<std::string> arguments);

}  // namespace vgps
