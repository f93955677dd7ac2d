#include "app/command_handlers.h"
#include "app/commands.h"
#include "base/texts.h"

// The program and its window, dialogs.
namespace vgps {
namespace {

constexpr uint32_t kFirstSize = 801;
constexpr uint32_t kAboutText = 721;

struct Size {
  int32_t width, height;
};
// Of the commands 801 to 806, pixels at 96 dots per inch.
constexpr Size kSizes[] = {{240, 320}, {320, 240}, {240, 240}, {320, 320}, {640, 480}, {320, 480}};

}  // namespace

void showAbout(AppState& app, uint32_t) { app.platform.window.tell(textOf(kAboutText)); }

void closeProgram(AppState& app, uint32_t) { app.platform.window.close(); }

void resizeScreen(AppState& app, uint32_t number) {
  const Size& size = kSizes[number - kFirstSize];
  app.platform.window.resizeClient(size.width, size.height);
}

// "OK" of a pop-up menu closes it, which the system has done already.
void confirmPopup(AppState&, uint32_t) {}

void openOptionDialog(AppState& app, uint32_t number) {
  if (!app.platform.window.openDialog(number)) notBuilt(app, number);
}

}  // namespace vgps
