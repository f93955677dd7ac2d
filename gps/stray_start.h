#pragma once

#include <string_view>

namespace vgps {

// Removes stray characters before a sentence: some receivers send "$$GPGGA", network loggers write
// "#$GPGGA". All other lines are returned unchanged. The start of an incomplete line is enough.
std::string_view withoutStrayStart(std::string_view line);

}  // namespace vgps
