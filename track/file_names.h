#pragma once

#include <string>
#include <string_view>

#include "base/date_time.h"

// Names of track files in a folder.
namespace vgps {

// "Track05_07_2010_09_03": day, month, year, hour, minute.
std::string trackNameFromTime(const DateTime& local);

// `name` as a valid file name: characters that some system does not allow become "_", and a device
// name gets a leading "_". What is longer than 200 bytes is cut off.
std::string fileNameFrom(std::string_view name);

// An unused path for a saved track: "X.XML", "X - 1.XML" .. "X - 9.XML"; empty if all are taken,
// even by unreadable files.
std::string freeTrackPath(std::string_view folder, std::string_view name);

// For a folder library, when those are taken: "X - 10.XML" to "X - 999.XML".
std::string laterTrackPath(std::string_view folder, std::string_view name);

// An unused path for an imported track: "X-1.XML" .. "X-99.XML".
std::string freeImportPath(std::string_view folder, std::string_view name);

}  // namespace vgps
