#pragma once

#include <string>
#include <string_view>

#include "platform/exclusive_file.h"

// Files that are written anew as a whole, and what happens to damaged ones.
namespace vgps {

// Writes the file beside its place, flushes it and gives it its name: at no moment is there a
// half-written file of that name. False when the disk did not take it; then nothing has changed.
bool writeWholeFile(const std::string& path, std::string_view text,
                    const ExclusiveOpener& open = openExclusive);

// `path` with ".bad" in place of its extension.
std::string badPathOf(const std::string& path);

// Keeps the bytes of a damaged file beside it. The copy's path; empty when the disk did not take
// it.
std::string keepAsBad(const std::string& path, std::string_view bytes);

std::string withoutExtension(const std::string& path);

}  // namespace vgps
