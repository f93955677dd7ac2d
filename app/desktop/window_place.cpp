#include "app/desktop/window_place.h"

#include <algorithm>

#include "app/desktop/desktop.h"
#include "app/settings/settings_table.h"
#include "display/screens.h"

namespace vgps {
namespace {

// Of the caption, what must be on a screen to be grasped.
constexpr int32_t kGraspWidth = 100;
constexpr int32_t kGraspHeight = 20;

int32_t sharedLength(int32_t start, int32_t length, int32_t otherStart, int32_t otherLength) {
  const int64_t end = std::min(int64_t{start} + length, int64_t{otherStart} + otherLength);
  return static_cast<int32_t>(std::max<int64_t>(end - std::max(start, otherStart), 0));
}

bool canGrasp(const WindowPlace& place, const WindowPlace& screen) {
  return sharedLength(place.left, place.width, screen.left, screen.width) >=
             std::min(kGraspWidth, place.width) &&
         sharedLength(place.top, kGraspHeight, screen.top, screen.height) == kGraspHeight;
}

// Large enough to be no accident of a damaged document.
bool isSensible(const WindowPlace& place) {
  constexpr int32_t kFar = 100000;
  const auto near = [](int32_t value) { return value > -kFar && value < kFar; };
  return place.width > 0 && place.height > 0 && near(place.left) && near(place.top) &&
         near(place.width) && near(place.height);
}

bool isColorScheme(int32_t number) {
  return number >= 0 && number <= static_cast<int32_t>(ColorScheme::custom);
}

}  // namespace

WindowPlace reachablePlace(const WindowPlace& place, std::span<const WindowPlace> screens) {
  if (screens.empty()) return place;
  const auto grasped = std::find_if(screens.begin(), screens.end(), [&](const WindowPlace& screen) {
    return canGrasp(place, screen);
  });
  const WindowPlace& screen = grasped == screens.end() ? screens.front() : *grasped;
  WindowPlace found = place;
  found.width = std::min(place.width, screen.width);
  found.height = std::min(place.height, screen.height);
  if (grasped != screens.end() && canGrasp(found, screen)) return found;
  found.left = screen.left + (screen.width - found.width) / 2;
  found.top = screen.top + (screen.height - found.height) / 2;
  return found;
}

WindowPlace storedPlace(const Desktop& app) {
  const Settings& settings = app.settings;
  const WindowPlace place = {settings.windowLeft, settings.windowTop, settings.windowWidth,
                             settings.windowHeight, settings.windowMaximized};
  return isSensible(place) ? place : WindowPlace{};
}

void restoreView(Desktop& app) {
  const auto screen = static_cast<Screen>(app.settings.windowScreen);
  if (isScreenDrawn(screen)) app.currentScreen = screen;
  app.statistics.fine = app.currentScreen == Screen::statistics;
  if (app.scheme == ColorScheme::day && isColorScheme(app.settings.windowScheme)) {
    app.scheme = static_cast<ColorScheme>(app.settings.windowScheme);
  }
  app.startScheme = app.scheme;
}

void rememberView(Desktop& app) {
  if (!app.config.isFullyLoaded()) return;
  const WindowPlace place = app.window.place();
  Settings& settings = app.settings;
  if (place.width > 0) {
    settings.windowLeft = place.left;
    settings.windowTop = place.top;
    settings.windowWidth = place.width;
    settings.windowHeight = place.height;
    settings.windowMaximized = place.maximized;
  }
  settings.windowScreen = static_cast<int32_t>(app.currentScreen);
  // Night colors that only the hour has brought are no choice of the user's.
  if (app.scheme != app.startScheme) settings.windowScheme = static_cast<int32_t>(app.scheme);
  for (const SettingRow& row : settingRows()) {
    const bool differs = numberOf(settings, row) != app.config.number(row);
    if (row.group == SettingGroup::window && differs) app.config.put(row, settings);
  }
}

}  // namespace vgps
