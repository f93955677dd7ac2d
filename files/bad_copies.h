#pragma once

#include <string>
#include <string_view>

#include "platform/exclusive_file.h"

namespace vgps {

// Save a copy of a damaged file next to it, flushed to disk: as "NAME.bad" instead of its
// extension, or "NAME-2.bad" to "NAME-99.bad" if those names are taken. An identical copy that
// exists already is used. Return its path, empty on failure. The first two leave the damaged file
// in place; the third renames it.
std::string saveBadCopy(const std::string& path, std::string_view bytes,
                        const ExclusiveOpener& open = openExclusive);
std::string copyToBad(const std::string& path, const ExclusiveOpener& open = openExclusive);
std::string renameToBad(const std::string& path);

}  // namespace vgps
