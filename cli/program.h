#pragma once

#include <string>
#include <vector>

namespace vgps {

// `vgps` with these arguments (without the program's name). The exit status: 0, or 1 after one line
// on standard error.
int runProgram(std::vector<std::string> arguments);

}  // namespace vgps
