#pragma once

#include <string>
#include <vector>

namespace vgps {

// The second built-in simulation, for looking at the program: a walk through a town with heights,
// satellites and the speeds of a walker. All sentences of one second are one line of the
// simulation, with line ends between them. tools/make_walk.py makes them.
const std::vector<std::string>& townWalkLines();

}  // namespace vgps
