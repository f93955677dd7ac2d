#pragma once

#include <string>
#include <vector>

#include "track/track.h"

namespace vgps {

// A track as lines of the simulation: a valid fix at its first point, then for each point one
// sentence of our own, which carries position, altitude, course and speed at once.
std::vector<std::string> simulationLines(const Track& track);

// The lines of a track file. False when no point can be read from it.
bool simulationFromFile(const std::string& path, std::vector<std::string>& lines);

}  // namespace vgps
