#pragma once

#include <string>
#include <string_view>

#include "base/date_time.h"

// Names of track files in a folder.
namespace vgps {

// "Track05_07_2010_09_03": day, month, year, hour, minute.
std::string trackNameFromTime(const DateTime& local);

// `name` with what no system takes in the name of a file replaced by "_"; the name of a device has
// one in front.
std::string fileNameFrom(std::string_view name);

// A free name for a track of its own: "X.XML", "X - 1.XML" .. "X - 9.XML"; empty when all are
// taken, even by an unreadable file.
std::string freeTrackPath(std::string_view folder, std::string_view name);

// A free name for an imported one: "X-1.XML" .. "X-99.XML".
std::string freeImportPath(std::string_view folder, std::string_view name);

}  // namespace vgps
