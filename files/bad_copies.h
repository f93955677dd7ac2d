#pragma once

#include <string>
#include <string_view>

#include "platform/exclusive_file.h"

namespace vgps {

// Keep a damaged file beside itself, flushed: as "NAME.bad" in place of its extension, or
// "NAME-2.bad" to "NAME-99.bad" where other files have the names before. A copy that is there
// already is enough. Its path; empty when that failed. The first two leave the damaged file where
// it is, the third takes its name away.
std::string keepAsBad(const std::string& path, std::string_view bytes,
                      const ExclusiveOpener& open = openExclusive);
std::string copyAsBad(const std::string& path, const ExclusiveOpener& open = openExclusive);
std::string moveAsBad(const std::string& path);

}  // namespace vgps
