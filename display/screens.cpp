#include "display/screens.h"

#include <algorithm>
#include <iterator>

#include "display/raw_log.h"
#include "display/readout.h"
#include "display/statistics_list.h"

namespace vgps {
namespace {

struct Screen {
  int32_t number;
  void (*draw)(Canvas& canvas, const Scene& scene);
};

constexpr Screen kScreens[] = {
    {kReadoutScreen, drawReadout},
    {kStatisticsScreen, drawStatistics},
    {kRawLogScreen, drawRawLog},
};

const Screen* findScreen(int32_t number) {
  const auto* const found =
      std::find_if(std::begin(kScreens), std::end(kScreens),
                   [number](const Screen& screen) { return screen.number == number; });
  return found == std::end(kScreens) ? nullptr : found;
}

}  // namespace

bool isScreenDrawn(int32_t screen) { return findScreen(screen) != nullptr; }

void drawScreen(Canvas& canvas, const Scene& scene) {
  const Screen* const screen = findScreen(scene.screen);
  (screen == nullptr ? drawReadout : screen->draw)(canvas, scene);
}

}  // namespace vgps
