#include "win32/desktop.h"

#include <commctrl.h>
#include <ole2.h>

#include <memory>

#include "app/app_state.h"
#include "app/connection.h"
#include "app/startup.h"
#include "app/timers.h"
#include "platform/files.h"
#include "win32/main_window.h"
#include "win32/resource_sounds.h"
#include "win32/window_door.h"

namespace vgps {
namespace {

constexpr int kDoorShutMs = 500;

// The thread that draws and shows dialogs is an apartment of its own.
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

int runMessageLoop() {
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}

}  // namespace

int runDesktop(HINSTANCE instance, int show, std::span<const std::string> arguments) {
  const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
  InitCommonControlsEx(&controls);
  const OleSession ole;
  const GdiplusSession gdiplus;

  const Clock& clock = systemClock();
  ResourceSounds sounds;
  WindowDoor door;
  MainWindow window;
  AppState app(Platform{clock, sounds, door, window, makeSerialPort, locationSensorManager(),
                        listSerialPorts, setSystemUtc});
  app.paths = pathsOf(programFolder());
  startClocks(app);
  startSettings(app);

  const HWND handle = window.create(instance, app);
  if (handle == nullptr) return 1;
  door.open(handle, app.fix);
  ShowWindow(handle, show);
  armStartTimers(app);
  applyStartOptions(app, parseStartOptions(arguments));
  const int result = runMessageLoop();
  endProgram(app);

  if (IsWindow(handle)) DestroyWindow(handle);  // the loop was ended from outside
  door.shut(kDoorShutMs);
  // A reader that hangs in a driver must find nothing destroyed: the system ends it.
  if (!stopReceiver(app)) ExitProcess(static_cast<UINT>(result));
  return result;
}

}  // namespace vgps
