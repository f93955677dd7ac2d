#include "gps/stray_start.h"

namespace vgps {

std::string_view withoutStrayStart(std::string_view line) {
  constexpr size_t kMost = 8;
  if (line.size() < 2 || (line[1] != '$' && line[1] != '#')) return line;
  const size_t found = line.find_first_not_of("$#");
  const size_t letter = found == std::string_view::npos ? line.size() : found;
  if (letter < 2 || letter > kMost || line[letter - 1] != '$') return line;
  const bool goesOn = letter == line.size() || (line[letter] >= 'A' && line[letter] <= 'Z');
  return goesOn ? line.substr(letter - 1) : line;
}

}  // namespace vgps
