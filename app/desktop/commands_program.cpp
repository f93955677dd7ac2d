#include "app/desktop/command_handlers.h"
#include "app/desktop/commands.h"
#include "app/desktop/dialogs.h"
#include "base/texts.h"
#include "base/version.h"

// Commands for the program, its window, and its dialogs.
namespace vgps {
namespace {

struct Size {
  int32_t width, height;
};
// For commands 801 to 806; pixels at 96 dpi.
constexpr Size kSizes[] = {{240, 320}, {320, 240}, {240, 240}, {320, 320}, {640, 480}, {320, 480}};

}  // namespace

void showAbout(Desktop& app, Command) { app.window.tell(textWith(Text::aboutProgram, kVersion)); }

void closeProgram(Desktop& app, Command) { app.window.close(); }

void resizeScreen(Desktop& app, Command command) {
  const Size& size = kSizes[command - Command::size240x320];
  app.window.resizeClient(size.width, size.height);
}

// "OK" in a pop-up menu closes it, which the system has already done.
void confirmPopup(Desktop&, Command) {}

void openOptionDialog(Desktop& app, Command command) {
  if (!app.window.openDialog(command)) notImplemented(app, command);
}

// The receiver search and the hidden option edit no fixed settings.
bool hasDialogInUse(Command command) {
  const Dialog* const dialog = findDialog(command);
  return dialog == nullptr || editsSettingsInUse(*dialog);
}

void tellAboutUpdates(Desktop& app, Command) {
  const std::string& source = app.settings.updateSource;
  app.window.tell(source.empty() ? textWith(Text::updatesWithoutSource, kVersion)
                                 : textWith(Text::updatesFrom, kVersion, source));
}

}  // namespace vgps
