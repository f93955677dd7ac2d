#pragma once

#include <string>
#include <vector>

#include "display/scene.h"
#include "platform/canvas.h"

namespace vgps {

struct StatisticsRow {
  std::string name;
  std::string value;
};

// Times as hours, minutes, and seconds; everything else in the chosen units.
std::vector<StatisticsRow> statisticsRows(const Scene& scene);

void drawStatistics(Canvas& canvas, const Scene& scene);

}  // namespace vgps
