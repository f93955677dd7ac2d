#pragma once

#include <windows.h>

#include <shellapi.h>

#include <array>
#include <deque>
#include <mutex>
#include <string>

#include "app/desktop/desktop.h"
#include "app/win32/back_buffer.h"
#include "app/win32/language_library.h"
#include "app/win32/program_sounds.h"
#include "app/win32/progress_box.h"
#include "app/win32/start_buttons.h"
#include "app/win32/tray_icon.h"
#include "display/status_line.h"
#include "platform/win32/gdiplus_canvas.h"

namespace vgps {

inline constexpr const wchar_t* kMainWindowClass = L"VGPS CLASS";
// The program's name, in the caption and on message boxes.
std::wstring programTitle();

// What the window needs from the program around it.
struct WindowSetting {
  HINSTANCE instance = nullptr;
  const LanguageLibrary* language = nullptr;  // null: everything in English
  ProgramSounds* sounds = nullptr;            // notified when the user has chosen other sounds
};

// The only top-level window. It draws the state in `Desktop` and forwards its events.
class MainWindow : public DesktopWindow {
 public:
  MainWindow() = default;
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;
  ~MainWindow() override;

  // Returns null if the system refuses. The window exists until it is closed; `app` must outlive
  // it.
  HWND create(const WindowSetting& setting, Desktop& app);
  // Shows the icon in the notification area until the window is destroyed.
  void addTrayIcon();
  // Dispatches messages until the program is to end. Returns its exit code.
  int runMessageLoop();
  // Updates icons, buttons, and timers to match the program's state.
  void followState();
  // Shows the messages that arrived after the window was destroyed.
  void showLastMessages();

  void repaint() override;
  void setTitle(std::string_view title) override;
  void tellError(std::string_view text) override;
  bool shiftHeld() override;
  void pressSpace() override;
  void offerSearch(std::string_view error) override;
  void tell(std::string_view text) override;
  bool ask(std::string_view question) override;
  size_t choose(std::string_view question, std::span<const std::string_view> answers,
                size_t standard) override;
  void setTimer(uint32_t number, uint32_t ms) override;
  void killTimer(uint32_t number) override;
  void postTap(uint32_t point) override;
  void resizeClient(int32_t width, int32_t height) override;
  WindowPlace place() const override;
  void copyText(std::string_view text) override;
  bool openDialog(Command command) override;
  std::string chooseFile(const FileChoice& choice) override;
  std::optional<size_t> chooseRow(std::string_view title,
                                  std::span<const std::string> rows) override;
  std::string chooseNewFile(const FileChoice& choice) override;
  std::vector<size_t> chooseRows(std::string_view caption, std::string_view column,
                                 std::span<const std::string> rows) override;
  size_t chooseWithBox(std::string_view question, std::span<const std::string_view> answers,
                       std::string_view box, bool& marked) override;
  void openDocument(const std::string& path) override;
  bool showProgress(uint64_t done, uint64_t total) override;
  void endProgress() override;
  std::optional<std::string> askText(std::string_view title, std::string_view text) override;
  void close() override;
  void destroy() override;

 private:
  size_t chooseAnswer(std::string_view question, std::span<const std::string_view> answers,
                      size_t standard, std::string_view box, bool& marked);
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
  LRESULT handle(UINT message, WPARAM first, LPARAM second);
  LRESULT handleFrame(UINT message, WPARAM first, LPARAM second);
  bool handleUiMessage(UINT message, WPARAM first, LPARAM second);
  void onTimer(WPARAM timer);
  bool onKey(WPARAM key);
  bool onTyped(WPARAM unit);
  bool onWheel(WPARAM turned);
  void onClose();
  void onDestroy();
  void onEndOfSession();
  void onTrayPress(LPARAM mouse);
  void onDpiChanged(const RECT& suggested);
  void keepReadable(MINMAXINFO& limits) const;
  void bringForward();
  void showTrayMenu();
  Scene scene() const;
  Rect statusBar() const;
  void watchStatus();
  void watchWhileTimePasses();
  void showIcons(size_t state);
  void forgetIcons();
  void paint();
  void drawInto(HDC target, int width, int height);
  void followScheme();
  bool openFinder();
  bool openSettings(Command command);
  HMODULE layouts() const;
  void drawStatusInto(HDC target, int width, int height);
  void showTitle();
  void takeDroppedFiles(HDROP drop);
  void importDropped();
  void showMessages();

  HWND window_ = nullptr;
  Desktop* app_ = nullptr;
  WindowSetting setting_;
  HACCEL accelerators_ = nullptr;
  BackBuffer backBuffer_;
  GdiplusFonts fonts_;
  StartButtons startButtons_;
  TrayIcon tray_;
  ProgressBox progress_;
  TimeDependentTexts paintedTexts_;
  int wheel_ = 0;            // rotation of less than a notch
  bool isNight_ = false;     // of the window frame
  bool statusOnly_ = false;  // only the status line needs to be redrawn
  bool closing_ = false;
  bool dialogOpen_ = false;
  bool watching_ = false;  // the status timer is running

  struct Icons {
    HICON small = nullptr;
    HICON large = nullptr;
  };
  std::array<Icons, 4> icons_{};  // indexed by the state of the track
  int32_t shownTrackState_ = -1;

  bool titled_ = false;  // the caption shows the simulation's title
  std::mutex titleMutex_;
  std::wstring title_;

  struct Message {
    std::wstring text;
    UINT style;  // icon and buttons; Yes opens the receiver search
  };
  void queueMessage(std::string_view text, UINT style);

  std::deque<Message> messages_;
  bool showingMessages_ = false;

  std::deque<std::string> dropped_;  // paths of files
  bool importing_ = false;
};

}  // namespace vgps
