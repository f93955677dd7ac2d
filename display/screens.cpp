#include "display/screens.h"

#include <algorithm>
#include <iterator>

#include "display/raw_log.h"
#include "display/readout.h"
#include "display/statistics_list.h"

namespace vgps {
namespace {

struct ScreenRow {
  Screen screen;
  void (*draw)(Canvas& canvas, const Scene& scene);
};

constexpr ScreenRow kScreens[] = {
    {Screen::gps, drawReadout},
    {Screen::statistics, drawStatistics},
    {Screen::rawLog, drawRawLog},
};

const ScreenRow* findScreen(Screen screen) {
  const auto* const found =
      std::find_if(std::begin(kScreens), std::end(kScreens),
                   [screen](const ScreenRow& row) { return row.screen == screen; });
  return found == std::end(kScreens) ? nullptr : found;
}

}  // namespace

bool isScreenDrawn(Screen screen) { return findScreen(screen) != nullptr; }

void drawScreen(Canvas& canvas, const Scene& scene) {
  const ScreenRow* const row = findScreen(scene.screen);
  (row == nullptr ? drawReadout : row->draw)(canvas, scene);
}

}  // namespace vgps
