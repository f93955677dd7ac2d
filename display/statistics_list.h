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

// Times as hours, minutes and seconds, the rest in the units that were chosen.
std::vector<StatisticsRow> statisticsRows(const Scene& scene);

void drawStatistics(Canvas& canvas, const Scene& scene);

}  // namespace vgps
