#include "app/command_handlers.h"
#include "app/commands.h"
#include "app/timers.h"
#include "base/texts.h"
#include "display/screens.h"

// Screens, colours, projections.
namespace vgps {
namespace {

constexpr uint32_t kFirstView = 200;
constexpr uint32_t kDay = 321;
constexpr uint32_t kNotAvailable = 700;

void changeScreen(AppState& app, int32_t screen) {
  if (screen != app.currentScreen) app.previousScreen = app.currentScreen;
  app.currentScreen = screen;
  setFineStatistics(app, screen == kScreenStatistics);
  if (!isScreenDrawn(screen)) showNotice(app, textOf(kNotAvailable));
  repaintNow(app);
}

}  // namespace

void showScreen(AppState& app, uint32_t number) {
  changeScreen(app, static_cast<int32_t>(number - kFirstView));
}

// Numbers among the views that no screen has.
void ignoreView(AppState&, uint32_t) {}

// The next view of the table that is drawn.
void showNextScreen(AppState& app, uint32_t) {
  const auto rows = commandRows();
  const auto current = static_cast<uint32_t>(app.currentScreen) + kFirstView;
  const CommandRow* next = nullptr;
  for (const CommandRow& row : rows) {
    const bool canShow =
        row.handler == showScreen && isScreenDrawn(static_cast<int32_t>(row.number - kFirstView));
    if (canShow && (next == nullptr || (next->number <= current && row.number > current))) {
      next = &row;
    }
  }
  if (next != nullptr) showScreen(app, next->number);
}

void show3dMap(AppState& app, uint32_t) {
  app.projection = Projection::cartesian3d;
  changeScreen(app, kScreen3dMap);
}

void chooseProjection(AppState& app, uint32_t number) {
  app.projection = static_cast<Projection>(number);
  repaintNow(app);
}

void chooseColours(AppState& app, uint32_t number) {
  app.scheme = static_cast<ColourScheme>(number - kDay);
  repaintNow(app);
}

void switchDayAndNight(AppState& app, uint32_t) {
  app.scheme = app.scheme == ColourScheme::night ? ColourScheme::day : ColourScheme::night;
  repaintNow(app);
}

bool isScreen(const AppState& app, uint32_t number) {
  return app.currentScreen == static_cast<int32_t>(number - kFirstView);
}
bool isProjection(const AppState& app, uint32_t number) {
  return app.projection == static_cast<Projection>(number);
}
bool isColourScheme(const AppState& app, uint32_t number) {
  return app.scheme == static_cast<ColourScheme>(number - kDay);
}

void goBack(AppState& app, uint32_t) { changeScreen(app, app.previousScreen); }

}  // namespace vgps
