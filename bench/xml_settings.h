#pragma once

#include <optional>
#include <string>

namespace vgps {

// A vgps.xml in which every key stands, none with its default.
bool writeAllSettings(const std::string& file);

// Milliseconds from its name to the value of every key; nothing when that failed or when there is
// no such library.
std::optional<double> timeSettings(const std::string& library, const std::string& file);

}  // namespace vgps
