#include "app/desktop/command_handlers.h"
#include "app/desktop/commands.h"
#include "app/session/timers.h"
#include "base/texts.h"
#include "display/screens.h"

// Commands for screens, colors, and projections.
namespace vgps {
namespace {

// A command that shows a screen is 200 plus the screen's number.
constexpr uint32_t kViews = 200;

Screen screenOf(Command view) { return static_cast<Screen>(static_cast<uint32_t>(view) - kViews); }

void changeScreen(Desktop& app, Screen screen) {
  if (screen != app.currentScreen) app.previousScreen = app.currentScreen;
  app.currentScreen = screen;
  setFineStatistics(app, screen == Screen::statistics);
  if (!isScreenDrawn(screen)) showNotice(app, textOf(Text::notAvailable));
  repaintNow(app);
}

}  // namespace

void showScreen(Desktop& app, Command command) { changeScreen(app, screenOf(command)); }

// Numbers among the views that do not belong to a screen.
void ignoreView(Desktop&, Command) {}

// Shows the next implemented screen of the table.
void showNextScreen(Desktop& app, Command) {
  const auto rows = commandRows();
  const Screen current = app.currentScreen;
  const CommandRow* next = nullptr;
  for (const CommandRow& row : rows) {
    const bool canShow = row.handler == showScreen && isViewDrawn(row.command);
    if (!canShow) continue;
    const bool isFirst = next == nullptr;
    if (isFirst || (screenOf(next->command) <= current && screenOf(row.command) > current)) {
      next = &row;
    }
  }
  if (next != nullptr) showScreen(app, next->command);
}

void show3dMap(Desktop& app, Command) {
  app.projection = Projection::cartesian3d;
  changeScreen(app, Screen::map3d);
}

void chooseProjection(Desktop& app, Command command) {
  app.projection = static_cast<Projection>(command);
  repaintNow(app);
}

void chooseColors(Desktop& app, Command command) {
  app.scheme = static_cast<ColorScheme>(command - Command::dayColors);
  repaintNow(app);
}

void switchDayAndNight(Desktop& app, Command) {
  app.scheme = app.scheme == ColorScheme::night ? ColorScheme::day : ColorScheme::night;
  repaintNow(app);
}

bool isScreen(const AppState& app, Command command) {
  return app.currentScreen == screenOf(command);
}
bool isProjection(const AppState& app, Command command) {
  return app.projection == static_cast<Projection>(command);
}
bool isColorScheme(const AppState& app, Command command) {
  return app.scheme == static_cast<ColorScheme>(command - Command::dayColors);
}
bool isViewDrawn(Command command) { return isScreenDrawn(screenOf(command)); }
bool isMapDrawn(Command) { return isScreenDrawn(Screen::map); }

void goBack(Desktop& app, Command) { changeScreen(app, app.previousScreen); }

}  // namespace vgps
