#pragma once

#include <windows.h>

#include <deque>
#include <mutex>
#include <string>

#include "platform/window.h"
#include "win32/back_buffer.h"
#include "win32/gdiplus_canvas.h"

namespace vgps {

struct AppState;

inline constexpr const wchar_t* kMainWindowClass = L"VGPS CLASS";
inline constexpr const wchar_t* kProgramTitle = L"Vexa GPS";

// The one top-level window. It draws what `AppState` holds and passes on what happens to it.
class MainWindow : public Window {
 public:
  MainWindow() = default;
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  // Null when the system refuses. The window lives until it is closed; `app` must outlive it.
  HWND create(HINSTANCE instance, AppState& app);

  void repaint() override;
  void setTitle(std::string_view title) override;
  void tellError(std::string_view text) override;
  bool shiftHeld() override;
  void pressSpace() override;
  void tell(std::string_view text) override;
  bool ask(std::string_view question) override;
  void setTimer(uint32_t number, uint32_t ms) override;
  void killTimer(uint32_t number) override;
  void postTap(uint32_t point) override;
  void resizeClient(int32_t width, int32_t height) override;
  bool openDialog(uint32_t command) override;
  bool openUrl(std::string_view url) override;
  std::string chooseFile(const FileChoice& choice) override;
  void close() override;
  void closeBrowser() override {}  // no page has been shown yet
  void destroy() override;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
  LRESULT handle(UINT message, WPARAM first, LPARAM second);
  bool handleUiMessage(UINT message, WPARAM first, LPARAM second);
  void onTimer(WPARAM timer);
  void onKey(WPARAM key);
  void onDpiChanged(const RECT& suggested);
  void keepReadable(MINMAXINFO& limits) const;
  void watchStatus();
  void paint();
  void drawInto(HDC target, int width, int height);
  void showTitle();
  void showErrors();

  HWND window_ = nullptr;
  AppState* app_ = nullptr;
  BackBuffer backBuffer_;
  GdiplusFonts fonts_;
  std::string paintedStatus_;

  std::mutex titleMutex_;
  std::wstring title_;

  struct Message {
    std::wstring text;
    UINT icon;
  };
  void queueMessage(std::string_view text, UINT icon);

  std::deque<Message> errors_;
  bool showingErrors_ = false;
};

}  // namespace vgps
