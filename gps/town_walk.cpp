#include "gps/town_walk.h"

namespace vgps {

const std::vector<std::string>& townWalkLines() {
  static const std::vector<std::string> kLines = {
#include "gps/town_walk_lines.inc"
  };
  return kLines;
}

}  // namespace vgps
