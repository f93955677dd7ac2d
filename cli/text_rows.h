#pragma once

#include <string>
#include <vector>

namespace vgps {

struct TextRow {
  std::string label;
  std::string value;
};

// One line per row, with the labels padded to the same width.
std::string alignedText(const std::vector<TextRow>& rows);

}  // namespace vgps
