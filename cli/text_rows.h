#pragma once

#include <string>
#include <vector>

namespace vgps {

struct TextRow {
  std::string label;
  std::string value;
};

// One line each, labels padded to one width.
std::string alignedText(const std::vector<TextRow>& rows);

}  // namespace vgps
