#include <windows.h>

// The least that shows a window: what the start of the program is measured against.
namespace {

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(window, message, first, second);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
  WNDCLASSW description{};
  description.lpfnWndProc = procedure;
  description.hInstance = instance;
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
  description.lpszClassName = L"BARE WINDOW";
  RegisterClassW(&description);
  const HWND window =
      CreateWindowExW(0, description.lpszClassName, L"Bare window", WS_OVERLAPPEDWINDOW,
                      CW_USEDEFAULT, CW_USEDEFAULT, 800, 480, nullptr, nullptr, instance, nullptr);
  ShowWindow(window, show);
  UpdateWindow(window);
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}
