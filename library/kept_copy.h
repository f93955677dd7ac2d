#pragma once

#include <string>
#include <string_view>

// What becomes of a damaged file before anything is written in its place: its bytes stay beside it
// as "NAME.bad", or as "NAME-2.bad" to "NAME-99.bad" where earlier ones lie.
namespace vgps {

// Keeps a copy. One with these bytes that is there already is the copy: who looks at a damaged file
// at every start does not fill the disk. Its path; empty when that failed.
std::string keepCopyOnce(const std::string& path, std::string_view bytes);

// Gives the file itself such a name. Its new path; empty when it still has the old one.
std::string renameToBad(const std::string& path);

}  // namespace vgps
