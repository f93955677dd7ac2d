#include "app/win32/main_window.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "app/desktop/commands.h"
#include "app/desktop/menus.h"
#include "app/desktop/raw_log_keys.h"
#include "app/desktop/scene_of.h"
#include "app/desktop/startup.h"
#include "app/desktop/taps.h"
#include "app/session/on_line.h"
#include "app/session/timers.h"
#include "app/win32/dpi.h"
#include "app/win32/main_menu.h"
#include "app/win32/message_parameter.h"
#include "app/win32/night_look.h"
#include "app/win32/night_menu.h"
#include "app/win32/out_of_memory.h"
#include "app/win32/single_instance.h"
#include "app/win32/window_messages.h"
#include "app/win32/window_ui_thread.h"
#include "base/texts.h"
#include "display/raw_log.h"
#include "display/readout_layout.h"
#include "display/screens.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

// Outside the range of the program's own timers.
constexpr UINT_PTR kDrawTimer = 1001;
constexpr UINT_PTR kStatusTimer = 1002;
constexpr UINT kDrawDelayMs = 30;       // long enough for the lines of one burst
constexpr UINT kStatusPeriodMs = 1000;  // ages are shown in seconds

// Client sizes at 96 dpi.
constexpr SIZE kFirstSize = {800, 480};
constexpr SIZE kSmallestSize = {240, 180};

// Indexed by the state of the track: idle, recording, paused, playing.
constexpr std::array<const wchar_t*, 4> kStateIcons = {L"ICON_1", L"ICON_RECORD", L"ICON_PAUSE",
                                                       L"ICON_PLAY"};

constexpr uint32_t kOpenFromTray = 1;  // not a command of the program

RECT pixelsOf(const Rect& rect) {
  return {static_cast<LONG>(rect.x), static_cast<LONG>(rect.y),
          static_cast<LONG>(rect.x + rect.width), static_cast<LONG>(rect.y + rect.height)};
}

bool contains(const RECT& outer, const RECT& inner) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
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

std::vector<WindowPlace> allScreens() {
  std::vector<WindowPlace> screens;
  EnumDisplayMonitors(
      nullptr, nullptr,
      [](HMONITOR monitor, HDC, LPRECT, LPARAM found) -> BOOL {
        MONITORINFO info{};
        info.cbSize = sizeof info;
        if (GetMonitorInfoW(monitor, &info) == FALSE) return TRUE;
        const RECT& area = info.rcWork;
        const WindowPlace screen = {area.left, area.top, area.right - area.left,
                                    area.bottom - area.top};
        auto& known = *addressIn<std::vector<WindowPlace>>(found);
        const bool primary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
        known.insert(primary ? known.begin() : known.end(), screen);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&screens));
  return screens;
}

// At the position of the last run; otherwise the system chooses.
WindowPlace firstPlace(const Desktop& app) {
  const WindowPlace stored = storedPlace(app);
  if (stored.width > 0) return reachablePlace(stored, allScreens());
  const SIZE size = windowSizeFor(kFirstSize, WS_OVERLAPPEDWINDOW, true, dpiOf(nullptr));
  return {CW_USEDEFAULT, CW_USEDEFAULT, size.cx, size.cy};
}

// Before a source was chosen, the readout has nothing to show.
bool isFirstStart(const AppState& app) {
  const Settings& settings = app.settings;
  return app.currentScreen == Screen::gps && !app.fix.running && settings.port.empty() &&
         !settings.simulate && !settings.useGpsApi && settings.useSensorApi == 0;
}

// Whether the display changes as time passes.
bool timePasses(const AppState& app) {
  return app.fix.running || app.shown.fixSeen || !currentNotice(app).empty();
}

}  // namespace

std::wstring programTitle() { return wideFromUtf8(textOf(Text::programName)); }

MainWindow::~MainWindow() {
  if (accelerators_ != nullptr) DestroyAcceleratorTable(accelerators_);
  forgetIcons();
}

HWND MainWindow::create(const WindowSetting& setting, Desktop& app) {
  if (!registerClass(setting.instance, procedure)) return nullptr;
  setting_ = setting;
  app_ = &app;
  const WindowPlace place = firstPlace(app);
  CreateWindowExW(0, kMainWindowClass, programTitle().c_str(),
                  WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, place.left, place.top, place.width,
                  place.height, nullptr, createMainMenu(), setting.instance, this);
  if (window_ == nullptr) return nullptr;
  accelerators_ = createAccelerators();
  registerHotKeys(window_);
  DragAcceptFiles(window_, TRUE);
  followState();
  if (!messages_.empty()) PostMessageW(window_, kMessagesWaiting, 0, 0);
  return window_;
}

void MainWindow::addTrayIcon() {
  tray_.add(window_, icons_[static_cast<size_t>(std::max(shownTrackState_, 0))].small,
            programTitle().c_str());
}

int MainWindow::runMessageLoop() {
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (window_ != nullptr && TranslateAcceleratorW(window_, accelerators_, &message)) continue;
    if (startButtons_.areShown() && IsDialogMessageW(window_, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}

// Handles the query from another copy first, even while the window is being created or destroyed.
LRESULT CALLBACK MainWindow::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == instanceQueryMessage() && message != 0) return kInstanceAnswer;
  if (message == WM_NCCREATE) {
    const auto* const creation = addressIn<const CREATESTRUCTW>(second);
    auto* const created = static_cast<MainWindow*>(creation->lpCreateParams);
    created->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
  }
  auto* const self = addressIn<MainWindow>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return DefWindowProcW(window, message, first, second);
  try {
    return self->handle(message, first, second);
  } catch (const std::bad_alloc&) {  // of the whole operation; the program goes on
    tellOutOfMemory(window);
    return 0;
  }
}

// Handles input, timers, and messages from the reader.
LRESULT MainWindow::handle(UINT message, WPARAM first, LPARAM second) {
  if (handleUiMessage(message, first, second)) return WindowUiThread::kHandled;
  switch (message) {
    case WM_COMMAND:
      runCommand(*app_, static_cast<Command>(LOWORD(first)));
      followState();
      return 0;
    case WM_HOTKEY:
      // A question or file dialog, which disables this window, must not be affected by commands
      // meanwhile.
      if (!dialogOpen_ && IsWindowEnabled(window_)) runHotKey(*app_, static_cast<Command>(first));
      followState();
      return 0;
    case WM_INITMENUPOPUP: updateMenu(addressIn<HMENU__>(first), *app_); return 0;
    case WM_TIMER: onTimer(first); return 0;
    case WM_KEYDOWN:
      if (onKey(first)) return 0;
      break;
    case WM_CHAR:
      if (onTyped(first)) return 0;
      break;
    case WM_MOUSEWHEEL:
      if (onWheel(first)) return 0;
      break;
    case TrayIcon::kTrayMessage: onTrayPress(second); return 0;
    case kTitleChanged: showTitle(); return 0;
    case kMessagesWaiting: showMessages(); return 0;
    case kFilesDropped: importDropped(); return 0;
    case WM_DROPFILES: takeDroppedFiles(reinterpret_cast<HDROP>(first)); return 0;
    case WM_CLOSE: onClose(); return 0;
    case WM_QUERYENDSESSION: return TRUE;  // no data is lost
    case WM_ENDSESSION:
      if (first != FALSE) onEndOfSession();
      return 0;
    default: break;
  }
  return handleFrame(message, first, second);
}

// Handles the window itself: drawing, size, creation, and destruction.
LRESULT MainWindow::handleFrame(UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_PAINT: paint(); return 0;
    case WM_ERASEBKGND: return 1;  // everything is redrawn anyway, and erasing would flicker
    case WM_PRINTCLIENT: {
      RECT client{};
      GetClientRect(window_, &client);
      drawInto(addressIn<HDC__>(first), client.right, client.bottom);
      return 0;
    }
    case WM_MEASUREITEM:
      return measureNightMenuItem(window_, *addressIn<MEASUREITEMSTRUCT>(second)) ? TRUE : FALSE;
    case WM_MENUCHAR:
      if (!isNight_ || HIWORD(first) == MF_SYSMENU) break;
      return itemOfMenuCharacter(addressIn<HMENU__>(second), static_cast<wchar_t>(LOWORD(first)));
    case WM_DRAWITEM:
      if (drawNightMenuItem(window_, *addressIn<const DRAWITEMSTRUCT>(second))) return TRUE;
      startButtons_.drawButton(*addressIn<const DRAWITEMSTRUCT>(second), makeScene(*app_).palette);
      return TRUE;
    case WM_SIZE: startButtons_.place(); return 0;
    case WM_SETFOCUS: startButtons_.focus(); return 0;
    case DM_GETDEFID:  // Enter presses the focused button
      if (!startButtons_.areShown()) return 0;
      return MAKELRESULT(GetDlgCtrlID(startButtons_.focused()), DC_HASDEFID);
    case WM_DPICHANGED: onDpiChanged(*addressIn<const RECT>(second)); return 0;
    case WM_GETMINMAXINFO: keepReadable(*addressIn<MINMAXINFO>(second)); return 0;
    case WM_DESTROY: onDestroy(); return 0;
    case WM_NCDESTROY: {
      const HWND window = std::exchange(window_, nullptr);
      SetWindowLongPtrW(window, GWLP_USERDATA, 0);
      return DefWindowProcW(window, message, first, second);
    }
    default:
      if (message == TrayIcon::areaCreatedMessage() && message != 0) tray_.restore();
      break;
  }
  return DefWindowProcW(window_, message, first, second);
}

bool MainWindow::handleUiMessage(UINT message, WPARAM first, LPARAM second) {
  std::string text;
  UiMessage event;
  if (!readUiMessage(message, first, second, app_->fix, text, event)) return false;
  onUiMessage(*app_, event);
  followState();
  return true;
}

void MainWindow::onTimer(WPARAM timer) {
  if (timer == kDrawTimer) {
    KillTimer(window_, kDrawTimer);
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
  } else if (timer == kStatusTimer) {
    watchStatus();
  } else if (timer == kTapTimer) {
    onTapTimer(*app_);
  } else {
    vgps::onTimer(*app_, static_cast<uint32_t>(timer));
  }
  followState();
}

bool MainWindow::onKey(WPARAM key) {
  if (key == VK_SPACE) app_->gps.simulation.step();
  return key == VK_SPACE || onRawLogKey(*app_, static_cast<uint16_t>(key));
}

bool MainWindow::onTyped(WPARAM unit) { return onRawLogTyped(*app_, static_cast<char32_t>(unit)); }

// High-resolution wheels report fractions of a notch.
bool MainWindow::onWheel(WPARAM turned) {
  wheel_ += GET_WHEEL_DELTA_WPARAM(turned);
  const int notches = wheel_ / WHEEL_DELTA;
  wheel_ -= notches * WHEEL_DELTA;
  return notches == 0 || onRawLogWheel(*app_, notches);
}

// Another close request may arrive while the question is shown.
void MainWindow::onClose() {
  if (closing_) return;
  closing_ = true;
  closeRequested(*app_);
  closing_ = false;
  followState();
}

// The user logs off or the computer shuts down, and a question would not be answered: the journal
// of the recording is kept for the next start. No point may be recorded after the journal is
// closed, because it would start another journal.
void MainWindow::onEndOfSession() {
  app_->fix.stopReaders(0);
  rememberView(*app_);
  endProgram(*app_);
}

void MainWindow::onDestroy() {
  tray_.remove();
  unregisterHotKeys(window_);
  PostQuitMessage(0);
}

void MainWindow::onTrayPress(LPARAM mouse) {
  if (LOWORD(mouse) == WM_LBUTTONDOWN) bringForward();
  if (LOWORD(mouse) == WM_RBUTTONUP) showTrayMenu();
}

void MainWindow::bringForward() {
  ShowWindow(window_, IsIconic(window_) ? SW_RESTORE : SW_SHOW);
  SetForegroundWindow(GetLastActivePopup(window_));
}

// While a question is shown, the window and therefore the menu are disabled.
void MainWindow::showTrayMenu() {
  const Command link = app_->fix.running ? Command::disconnect : Command::connect;
  const bool free = !dialogOpen_ && IsWindowEnabled(window_);
  const TrayMenuRow rows[] = {
      {kOpenFromTray, wideFromUtf8(textOf(Text::trayOpen))},
      {0, {}},
      {static_cast<uint32_t>(link), wideFromUtf8(textOf(itemText(link))), free},
      {0, {}},
      {static_cast<uint32_t>(Command::shutdown), wideFromUtf8(textOf(Text::trayExit)), free}};
  const uint32_t chosen = TrayIcon::choose(window_, rows);
  if (window_ == nullptr || chosen == 0) return;
  if (chosen == kOpenFromTray) {
    bringForward();
  } else if (!dialogOpen_ && IsWindowEnabled(window_)) {
    runCommand(*app_, static_cast<Command>(chosen));
    followState();
  }
}

// The window was moved to a screen of another resolution; the system suggests the size to use.
void MainWindow::onDpiChanged(const RECT& suggested) {
  SetWindowPos(window_, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
               suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
  forgetIcons();
  followState();
}

void MainWindow::keepReadable(MINMAXINFO& limits) const {
  const SIZE smallest = windowSizeFor(kSmallestSize, WS_OVERLAPPEDWINDOW, true, dpiOf(window_));
  limits.ptMinTrackSize = {smallest.cx, smallest.cy};
}

// Loads the icons when first needed: most runs show only the first.
void MainWindow::showIcons(size_t state) {
  const int dpi = dpiOf(window_);
  Icons& icons = icons_[state];
  if (icons.small == nullptr) {
    icons = {loadIcon(setting_.instance, kStateIcons[state], true, dpi),
             loadIcon(setting_.instance, kStateIcons[state], false, dpi)};
  }
  SendMessageW(window_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icons.small));
  SendMessageW(window_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icons.large));
  tray_.setIcon(icons.small);
}

void MainWindow::forgetIcons() {
  for (Icons& icons : icons_) {
    if (icons.small != nullptr) DestroyIcon(icons.small);
    if (icons.large != nullptr) DestroyIcon(icons.large);
    icons = {};
  }
  shownTrackState_ = -1;
}

void MainWindow::followState() {
  if (window_ == nullptr) return;
  if (shownTrackState_ != app_->recorder.track.state) {
    shownTrackState_ = app_->recorder.track.state;
    showIcons(static_cast<size_t>(std::clamp(shownTrackState_, 0, 3)));
  }
  if (isFirstStart(*app_) != startButtons_.areShown()) {
    startButtons_.show(window_, !startButtons_.areShown(), app_->settings.fontFactor);
    InvalidateRect(window_, nullptr, FALSE);
  }
  followScheme();
  const bool simulating = app_->fix.running && app_->fix.simulate;
  if (simulating != titled_) showTitle();
  watchWhileTimePasses();
}

void MainWindow::followScheme() {
  const bool night = app_->scheme == ColorScheme::night;
  if (night == isNight_) return;
  isNight_ = night;
  darkenFrame(window_, night);
  darkenMenu(GetMenu(window_), night);
  DrawMenuBar(window_);
}

// While neither maximized nor minimized.
WindowPlace MainWindow::place() const {
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  if (window_ == nullptr || GetWindowPlacement(window_, &placement) == FALSE) return {};
  const RECT& area = placement.rcNormalPosition;
  const bool maximized = IsZoomed(window_) != FALSE || (placement.flags & WPF_RESTORETOMAXIMIZED);
  return {area.left, area.top, area.right - area.left, area.bottom - area.top, maximized};
}

void MainWindow::watchWhileTimePasses() {
  if (timePasses(*app_) == watching_) return;
  watching_ = !watching_;
  if (watching_) {
    SetTimer(window_, kStatusTimer, kStatusPeriodMs, nullptr);
  } else {
    KillTimer(window_, kStatusTimer);
    repaint();  // show the final state
  }
}

Rect MainWindow::statusBar() const {
  RECT client{};
  GetClientRect(window_, &client);
  return layoutReadout({0, 0, static_cast<float>(client.right), static_cast<float>(client.bottom)},
                       {densityOf(window_), app_->settings.fontFactor})
      .status;
}

// Without data there are no repaints, but ages grow, and a silent receiver must be shown as silent.
// Nothing is drawn while the texts stay the same. If only the status line has changed, only that is
// drawn, which is little work and does not delay a repaint for new data.
void MainWindow::watchStatus() {
  if (refreshDisplays(*app_)) return;
  const TimeDependentTexts now = timeDependentTexts(makeScene(*app_));
  if (now == paintedTexts_) return;
  if (now.values == paintedTexts_.values) {
    const RECT bar = pixelsOf(statusBar());
    statusOnly_ = true;
    InvalidateRect(window_, &bar, FALSE);
  } else if (app_->repaints.due(app_->platform.clock.tick())) {
    repaint();
  }
}

void MainWindow::repaint() { SetTimer(window_, kDrawTimer, kDrawDelayMs, nullptr); }

void MainWindow::paint() {
  PAINTSTRUCT paint;
  const HDC screen = BeginPaint(window_, &paint);
  if (screen == nullptr) return;
  RECT client{};
  GetClientRect(window_, &client);
  const int width = std::max<int>(client.right, 1);
  const int height = std::max<int>(client.bottom, 1);
  const bool statusOnly = std::exchange(statusOnly_, false) && backBuffer_.holds(width, height) &&
                          contains(pixelsOf(statusBar()), paint.rcPaint);
  const HDC buffer = backBuffer_.prepare(screen, width, height);
  if (buffer != nullptr) {
    if (statusOnly) {
      drawStatusInto(buffer, client.right, client.bottom);
    } else {
      drawInto(buffer, client.right, client.bottom);
    }
    BitBlt(screen, 0, 0, client.right, client.bottom, buffer, 0, 0, SRCCOPY);
  }
  EndPaint(window_, &paint);
}

Scene MainWindow::scene() const {
  Scene scene = makeScene(*app_);
  scene.density = densityOf(window_);
  return scene;
}

void MainWindow::drawInto(HDC target, int width, int height) {
  GdiplusCanvas canvas(target, width, height, fonts_);
  app_->rawLog.setRoom(rawLogRoom(canvas.bounds(), densityOf(window_), app_->settings.fontFactor));
  const Scene drawn = scene();
  drawScreen(canvas, drawn);
  if (startButtons_.areShown()) startButtons_.drawWords(canvas, drawn.palette);
  paintedTexts_ = timeDependentTexts(drawn);
  noteDrawn(*app_);
  if (canvas.status() != Gdiplus::Ok) OutputDebugStringW(L"the screen could not be drawn\n");
}

// Draws over the picture that is still in the buffer.
void MainWindow::drawStatusInto(HDC target, int width, int height) {
  const Scene drawn = scene();
  GdiplusCanvas canvas(target, width, height, fonts_);
  const ReadoutLayout layout = layoutReadout(canvas.bounds(), {drawn.density, drawn.fontFactor});
  drawStatusLine(canvas, {layout.status, layout.smallText}, drawn);
  paintedTexts_.status = timeDependentTexts(drawn).status;
}

}  // namespace vgps
