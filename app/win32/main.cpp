#include <windows.h>

#include "app/win32/desktop.h"
#include "platform/console.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
  return vgps::runDesktop(instance, show, vgps::commandLineArguments(0, nullptr));
}
