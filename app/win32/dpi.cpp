#include "app/win32/dpi.h"

#include "platform/win32/system_function.h"

namespace vgps {
namespace {

int systemDpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = screen == nullptr ? 0 : GetDeviceCaps(screen, LOGPIXELSX);
  if (screen != nullptr) ReleaseDC(nullptr, screen);
  return dpi > 0 ? dpi : USER_DEFAULT_SCREEN_DPI;
}

// Sizes of borders, captions, and icons for a resolution; since Windows 10.
int metricAt(int metric, int dpi) {
  static const auto forDpi =
      systemFunction<int WINAPI(int, UINT)>(L"user32.dll", "GetSystemMetricsForDpi");
  return forDpi != nullptr ? forDpi(metric, static_cast<UINT>(dpi)) : GetSystemMetrics(metric);
}

}  // namespace

int dpiOf(HWND window) {
  static const auto ofWindow = systemFunction<UINT WINAPI(HWND)>(L"user32.dll", "GetDpiForWindow");
  if (window != nullptr && ofWindow != nullptr) {
    const UINT dpi = ofWindow(window);
    if (dpi != 0) return static_cast<int>(dpi);
  }
  return systemDpi();
}

float densityOf(HWND window) { return static_cast<float>(dpiOf(window)) / USER_DEFAULT_SCREEN_DPI; }

SIZE windowSizeFor(SIZE client, DWORD style, bool menu, int dpi) {
  static const auto adjust = systemFunction<BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT)>(
      L"user32.dll", "AdjustWindowRectExForDpi");
  RECT frame{0, 0, MulDiv(client.cx, dpi, USER_DEFAULT_SCREEN_DPI),
             MulDiv(client.cy, dpi, USER_DEFAULT_SCREEN_DPI)};
  const BOOL withMenu = menu ? TRUE : FALSE;
  if (adjust == nullptr || !adjust(&frame, style, withMenu, 0, static_cast<UINT>(dpi))) {
    AdjustWindowRectEx(&frame, style, withMenu, 0);
  }
  return {frame.right - frame.left, frame.bottom - frame.top};
}

HICON loadIcon(HINSTANCE instance, const wchar_t* name, bool small, int dpi) {
  const int width = metricAt(small ? SM_CXSMICON : SM_CXICON, dpi);
  const int height = metricAt(small ? SM_CYSMICON : SM_CYICON, dpi);
  return static_cast<HICON>(LoadImageW(instance, name, IMAGE_ICON, width, height, LR_DEFAULTCOLOR));
}

}  // namespace vgps
