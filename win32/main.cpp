#include <windows.h>

#include "platform/console.h"
#include "win32/desktop.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
  return vgps::runDesktop(instance, show, vgps::commandLineArguments(0, nullptr));
}
