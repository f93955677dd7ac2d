#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vgps {

struct TextRow {
  std::string label;
  std::string value;
};

// "1 point", "2 points", "3 fixes"
std::string countText(uint64_t count, const std::string& noun);

// One line per row, with the labels padded to the same width.
std::string alignedText(const std::vector<TextRow>& rows);

}  // namespace vgps
