#include "win32/main_window.h"

// Behind <windows.h>, on which they build.
#include <commdlg.h>
#include <shellapi.h>

#include <algorithm>
#include <utility>

#include "app/app_state.h"
#include "app/commands.h"
#include "app/on_line.h"
#include "app/scene_of.h"
#include "app/startup.h"
#include "app/timers.h"
#include "display/screens.h"
#include "display/status_line.h"
#include "win32/message_parameter.h"
#include "win32/wide.h"
#include "win32/window_door.h"

namespace vgps {
namespace {

constexpr UINT kTitleChanged = WM_APP + 1;
constexpr UINT kErrorsWaiting = WM_APP + 2;

// Far from the numbers of the program's own timers.
constexpr UINT_PTR kDrawTimer = 1001;
constexpr UINT_PTR kStatusTimer = 1002;
constexpr UINT kDrawDelayMs = 30;       // the lines of one burst arrive within it
constexpr UINT kStatusPeriodMs = 1000;  // ages are shown in seconds

// The size at 96 dots per inch.
constexpr int kClientWidth = 800;
constexpr int kClientHeight = 480;
constexpr int kSmallestWidth = 240;
constexpr int kSmallestHeight = 180;

int systemDpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = screen == nullptr ? 0 : GetDeviceCaps(screen, LOGPIXELSX);
  if (screen != nullptr) ReleaseDC(nullptr, screen);
  return dpi > 0 ? dpi : USER_DEFAULT_SCREEN_DPI;
}

SIZE windowSizeFor(int clientWidth, int clientHeight) {
  const int dpi = systemDpi();
  RECT frame{0, 0, MulDiv(clientWidth, dpi, USER_DEFAULT_SCREEN_DPI),
             MulDiv(clientHeight, dpi, USER_DEFAULT_SCREEN_DPI)};
  AdjustWindowRectEx(&frame, WS_OVERLAPPEDWINDOW, FALSE, 0);
  return {frame.right - frame.left, frame.bottom - frame.top};
}

bool registerClass(HINSTANCE instance, WNDPROC procedure) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.style = CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = procedure;
  description.hInstance = instance;
  description.hIcon = LoadIconW(instance, L"ICON_1");
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.lpszClassName = kMainWindowClass;
  return RegisterClassExW(&description) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

}  // namespace

HWND MainWindow::create(HINSTANCE instance, AppState& app) {
  if (!registerClass(instance, procedure)) return nullptr;
  app_ = &app;
  const SIZE size = windowSizeFor(kClientWidth, kClientHeight);
  CreateWindowExW(0, kMainWindowClass, kProgramTitle, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                  CW_USEDEFAULT, size.cx, size.cy, nullptr, nullptr, instance, this);
  if (window_ == nullptr) return nullptr;
  SetTimer(window_, kStatusTimer, kStatusPeriodMs, nullptr);
  if (!errors_.empty()) PostMessageW(window_, kErrorsWaiting, 0, 0);
  return window_;
}

LRESULT CALLBACK MainWindow::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_NCCREATE) {
    const auto* const creation = addressIn<const CREATESTRUCTW>(second);
    auto* const created = static_cast<MainWindow*>(creation->lpCreateParams);
    created->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
  }
  auto* const self = addressIn<MainWindow>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return DefWindowProcW(window, message, first, second);
  return self->handle(message, first, second);
}

LRESULT MainWindow::handle(UINT message, WPARAM first, LPARAM second) {
  if (handleUiMessage(message, first, second)) return WindowDoor::kHandled;
  switch (message) {
    case WM_PAINT: paint(); return 0;
    case WM_ERASEBKGND: return 1;  // everything is drawn anyhow, and erasing would flicker
    case WM_PRINTCLIENT: {
      RECT client{};
      GetClientRect(window_, &client);
      drawInto(addressIn<HDC__>(first), client.right, client.bottom);
      return 0;
    }
    case WM_TIMER: onTimer(first); return 0;
    case WM_KEYDOWN: onKey(first); return 0;
    case WM_DPICHANGED: onDpiChanged(*addressIn<const RECT>(second)); return 0;
    case WM_GETMINMAXINFO: keepReadable(*addressIn<MINMAXINFO>(second)); return 0;
    case kTitleChanged: showTitle(); return 0;
    case kErrorsWaiting: showErrors(); return 0;
    case WM_CLOSE: closeRequested(*app_); return 0;
    case WM_COMMAND: runCommand(*app_, LOWORD(first)); return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    case WM_NCDESTROY: {
      const HWND window = std::exchange(window_, nullptr);
      SetWindowLongPtrW(window, GWLP_USERDATA, 0);
      return DefWindowProcW(window, message, first, second);
    }
    default: return DefWindowProcW(window_, message, first, second);
  }
}

bool MainWindow::handleUiMessage(UINT message, WPARAM first, LPARAM second) {
  std::string text;
  UiMessage event;
  if (!readUiMessage(message, first, second, app_->fix, text, event)) return false;
  onUiMessage(*app_, event);
  return true;
}

void MainWindow::onTimer(WPARAM timer) {
  if (timer == kStatusTimer) watchStatus();
  if (timer != kDrawTimer) return vgps::onTimer(*app_, static_cast<uint32_t>(timer));
  KillTimer(window_, kDrawTimer);
  InvalidateRect(window_, nullptr, FALSE);
}

void MainWindow::onKey(WPARAM key) {
  if (key == VK_SPACE) app_->gps.simulation.step();
}

// Moved to a screen of another density: the system has worked out the size to keep.
void MainWindow::onDpiChanged(const RECT& suggested) {
  SetWindowPos(window_, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
               suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void MainWindow::keepReadable(MINMAXINFO& limits) const {
  const SIZE smallest = windowSizeFor(kSmallestWidth, kSmallestHeight);
  limits.ptMinTrackSize = {smallest.cx, smallest.cy};
}

// Without data nobody asks for a repaint, yet ages grow and a silent receiver has to be shown as
// silent. Nothing is drawn while the text stays the same.
void MainWindow::watchStatus() {
  if (passingText(sceneOf(*app_)) == paintedStatus_) return;
  if (app_->repaints.due(app_->platform.clock.tick())) repaint();
}

void MainWindow::repaint() { SetTimer(window_, kDrawTimer, kDrawDelayMs, nullptr); }

void MainWindow::paint() {
  PAINTSTRUCT paint;
  const HDC screen = BeginPaint(window_, &paint);
  if (screen == nullptr) return;
  RECT client{};
  GetClientRect(window_, &client);
  const HDC buffer =
      backBuffer_.prepare(screen, std::max<int>(client.right, 1), std::max<int>(client.bottom, 1));
  if (buffer != nullptr) {
    drawInto(buffer, client.right, client.bottom);
    BitBlt(screen, 0, 0, client.right, client.bottom, buffer, 0, 0, SRCCOPY);
  }
  EndPaint(window_, &paint);
}

void MainWindow::drawInto(HDC target, int width, int height) {
  const Scene scene = sceneOf(*app_);
  GdiplusCanvas canvas(target, width, height, fonts_);
  drawScreen(canvas, scene);
  paintedStatus_ = passingText(scene);
  noteDrawn(*app_);
  if (canvas.status() != Gdiplus::Ok) OutputDebugStringW(L"the screen could not be drawn\n");
}

// The reader must not wait for the window here, so the text is left for it to fetch.
void MainWindow::setTitle(std::string_view title) {
  {
    const std::lock_guard lock(titleMutex_);
    title_ = wideFromUtf8(title);
  }
  PostMessageW(window_, kTitleChanged, 0, 0);
}

void MainWindow::showTitle() {
  std::wstring title;
  {
    const std::lock_guard lock(titleMutex_);
    title = title_;
  }
  SetWindowTextW(window_, title.c_str());
}

// A message box runs until the person answers, and the caller may be a reader that waits.
void MainWindow::tellError(std::string_view text) { queueMessage(text, MB_ICONERROR); }

void MainWindow::tell(std::string_view text) { queueMessage(text, MB_ICONINFORMATION); }

// What is said before there is a window waits for it.
void MainWindow::queueMessage(std::string_view text, UINT icon) {
  errors_.push_back({wideFromUtf8(text), icon});
  if (window_ != nullptr) PostMessageW(window_, kErrorsWaiting, 0, 0);
}

void MainWindow::showErrors() {
  if (showingErrors_) return;
  showingErrors_ = true;
  while (!errors_.empty() && window_ != nullptr) {
    const Message message = errors_.front();
    errors_.pop_front();
    MessageBoxW(window_, message.text.c_str(), kProgramTitle, MB_OK | message.icon);
  }
  showingErrors_ = false;
}

bool MainWindow::shiftHeld() { return GetAsyncKeyState(VK_SHIFT) < 0; }

bool MainWindow::ask(std::string_view question) {
  return MessageBoxW(window_, wideFromUtf8(question).c_str(), kProgramTitle,
                     MB_YESNO | MB_DEFBUTTON2 | MB_ICONQUESTION) == IDYES;
}

void MainWindow::setTimer(uint32_t number, uint32_t ms) { SetTimer(window_, number, ms, nullptr); }

void MainWindow::killTimer(uint32_t number) { KillTimer(window_, number); }

void MainWindow::postTap(uint32_t point) {
  PostMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, static_cast<LPARAM>(point));
}

void MainWindow::resizeClient(int32_t width, int32_t height) {
  const SIZE size = windowSizeFor(width, height);
  SetWindowPos(window_, nullptr, 0, 0, size.cx, size.cy,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool MainWindow::openDialog(uint32_t) { return false; }

bool MainWindow::openUrl(std::string_view url) {
  const auto result = reinterpret_cast<INT_PTR>(
      ShellExecuteW(window_, L"open", wideFromUtf8(url).c_str(), nullptr, nullptr, SW_SHOWNORMAL));
  return result > 32;  // smaller numbers are errors
}

std::string MainWindow::chooseFile(const FileChoice& choice) {
  std::wstring filter = wideFromUtf8(choice.kind) + L'\0' + wideFromUtf8(choice.pattern);
  filter.append(2, L'\0');
  std::wstring path = wideFromUtf8(choice.suggestedName);
  path.resize(32768);
  const std::wstring title = wideFromUtf8(choice.title);
  OPENFILENAMEW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = window_;
  dialog.lpstrFilter = filter.c_str();
  dialog.lpstrFile = path.data();
  dialog.nMaxFile = static_cast<DWORD>(path.size());
  dialog.lpstrTitle = title.c_str();
  dialog.Flags = OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_EXPLORER |
                 (choice.save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
  const BOOL chosen = choice.save ? GetSaveFileNameW(&dialog) : GetOpenFileNameW(&dialog);
  return chosen ? utf8FromWide(path.c_str()) : std::string();
}

void MainWindow::close() { PostMessageW(window_, WM_CLOSE, 0, 0); }

void MainWindow::destroy() { DestroyWindow(window_); }

void MainWindow::pressSpace() { PostMessageW(window_, WM_KEYDOWN, VK_SPACE, 0); }

}  // namespace vgps
