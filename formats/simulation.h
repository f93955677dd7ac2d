#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vgps {

// The lines for the simulation of a file's first track or route: of a track file, GPX, KML, KMZ or
// any other format that is read here. Courses and speeds that the file does not have come from the
// way and the times between its points. False when there is no point.
bool simulationFromFile(const std::string& path, int32_t utcOffsetMinutes,
                        std::vector<std::string>& lines);

// What a receiver's log holds, line by line. False when no line is a sentence.
bool simulationFromLog(const std::string& path, std::vector<std::string>& lines);

// By its extension: .nmea, .log, .txt, .sirf.
bool isLogName(const std::string& path);

}  // namespace vgps
