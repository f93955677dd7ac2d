#pragma once

#include <string_view>

namespace vgps {

// A line without stray characters in front of its sentence: a real receiver sends "$$GPGGA", a
// network logger writes "#$GPGGA". All other lines stay as they are. The front of a line that is
// not whole yet will do.
std::string_view withoutStrayStart(std::string_view line);

}  // namespace vgps
