#include "cli/text_rows.h"

#include <algorithm>

namespace vgps {

std::string countText(uint64_t count, const std::string& noun) {
  const char* const plural = noun.ends_with('x') ? "es" : "s";
  return std::to_string(count) + " " + noun + (count == 1 ? "" : plural);
}

std::string alignedText(const std::vector<TextRow>& rows) {
  size_t width = 0;
  for (const TextRow& row : rows) width = std::max(width, row.label.size());
  std::string text;
  for (const TextRow& row : rows) {
    text += row.label + std::string(width + 2 - row.label.size(), ' ') + row.value + "\n";
  }
  return text;
}

}  // namespace vgps
