#include "app/win32/desktop.h"

#include <commctrl.h>
#include <ole2.h>

#include <memory>

#include "app/desktop/save_messages.h"
#include "app/desktop/startup.h"
#include "app/session/connection.h"
#include "app/win32/device_installer.h"
#include "app/win32/file_chooser.h"
#include "app/win32/language_library.h"
#include "app/win32/main_window.h"
#include "app/win32/out_of_memory.h"
#include "app/win32/program_font.h"
#include "app/win32/program_sounds.h"
#include "app/win32/single_instance.h"
#include "app/win32/window_ui_thread.h"
#include "base/allocation.h"
#include "formats/simulation.h"
#include "platform/files.h"

namespace vgps {
namespace {

constexpr int kUiThreadCloseMs = 500;

// The thread that draws and shows dialogs needs a single-threaded apartment.
class OleSession {
 public:
  OleSession() : entered_(SUCCEEDED(OleInitialize(nullptr))) {}
  OleSession(const OleSession&) = delete;
  OleSession& operator=(const OleSession&) = delete;
  ~OleSession() {
    if (entered_) OleUninitialize();
  }

 private:
  const bool entered_;
};

}  // namespace

int runDesktop(HINSTANCE instance, int show, std::span<const std::string> arguments) {
  endWithoutMemory([] { tellOutOfMemory(nullptr); });
  const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
  InitCommonControlsEx(&controls);
  StartupLock startup;
  if (activateRunningCopy()) return 0;
  const ProgramFont font(instance);
  const OleSession ole;
  const GdiplusSession gdiplus;

  const Clock& clock = systemClock();
  ProgramSounds sounds;
  WindowUiThread uiThread;
  MainWindow window;
  Desktop app(Platform{clock, sounds, uiThread, window, makeSerialPort, locationSensorManager(),
                       listSerialPorts, setSystemUtc, runDeviceInstaller},
              window);
  app.paths = pathsOf(programFolder());
  app.platform.documentsFolder = documentsFolder;
  app.extensions.simulationFrom = [&app](const std::string& path, std::vector<std::string>& lines) {
    return path.empty() ? simulationFromLibrary(app, lines)
                        : simulationFromFile(path, utcOffsetMinutes(app.platform.clock), lines);
  };
  startClocks(app);
  startSettings(app);
  restoreView(app);
  const LanguageLibrary language(app.settings.languageFile);
  sounds.useFilesOf(app.settings);

  const HWND handle = window.create({instance, &language, &sounds}, app);
  if (handle == nullptr) return 1;
  startup.end();
  uiThread.open(handle, app.fix);
  const bool usual = show == SW_SHOWNORMAL || show == SW_SHOWDEFAULT;
  ShowWindow(handle, usual && app.settings.windowMaximized ? SW_SHOWMAXIMIZED : show);
  UpdateWindow(handle);
  const auto isOpen = [&] { return IsWindow(handle) != FALSE; };
  if (startWork(app, parseStartOptions(arguments), isOpen)) {
    if (app.settings.trayIcon) window.addTrayIcon();
    window.followState();
  }
  const int result = window.runMessageLoop();

  if (IsWindow(handle)) DestroyWindow(handle);  // the message loop was ended from outside
  uiThread.close(kUiThreadCloseMs);
  endProgram(app);
  window.showLastMessages();
  // If a reader hangs in a driver, nothing that it uses may be destroyed, so the system ends it.
  if (!stopReceiver(app)) ExitProcess(static_cast<UINT>(result));
  return result;
}

}  // namespace vgps
