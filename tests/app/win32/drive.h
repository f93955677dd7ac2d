#pragma once

#include <windows.h>

// Behind <windows.h>, on which it builds.
#include <psapi.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "app/desktop/command.h"
#include "platform/canvas.h"
#include "platform/win32/handle.h"
#include "tests/fakes/test_folder.h"

// Driving windows and serial lines from a test. Windows live on a desktop of the test's own.
namespace vgps {

// Asks every 10 ms; false when `ok` has not become true in time.
bool waitFor(const std::function<bool()>& ok, DWORD limitMs = 10000);

std::wstring windowText(HWND window);

// Whether the thread of the window answers.
bool isResponsive(HWND window);

// Open kernel objects of a process; 0 when the system does not tell.
DWORD openHandles(DWORD process);

// Pens, bitmaps, fonts and the like of a process; 0 when the system does not tell.
DWORD drawingObjects(HANDLE process);

// The visible top-level window of a process with that class; null when there is none.
HWND findWindow(DWORD process, const wchar_t* className);

// The dialog or message box of a process that is open, by default of this one; null without any.
HWND openDialog(DWORD process = GetCurrentProcessId());

inline constexpr UINT kSettingsCommand = 101;

// The dialog that opens by a command of the window; null after ten seconds.
HWND openByCommand(HWND window, Command command);

// As a menu item or another program does: waiting until it is done, or not.
void sendCommand(HWND window, Command command);
void postCommand(HWND window, Command command);

// The control that does what a command does.
HWND buttonOf(HWND window, Command command);

// The calling thread's windows go to the test's desktop from now on.
void enterTestDesktop();

// Settings of a program that was started before, and asks nothing when it starts.
inline constexpr const char* kUsedBefore =
    R"(<root><cfg><vgps upd="20"/><track asked="1"/></cfg></root>)";

// A folder for one run of the program, which is in it with its settings.
class RunFolder : public TestFolder {
 public:
  explicit RunFolder(const std::string& settings = kUsedBefore);
  // Also of a file that nobody else may open; 0 when there is none.
  uintmax_t size(const std::string& name) const;
};

// The started program. It ends with this object, or with the test if that is killed.
class Program {
 public:
  // In the folder of the caller, or in one of its own.
  explicit Program(const std::wstring& arguments, const RunFolder* folder = nullptr);
  ~Program();

  // The main window, or null after ten seconds.
  HWND window();
  bool hasWindow() const;
  HWND dialog() const { return openDialog(process_.dwProcessId); }
  // A message box or dialog whose text of that control is `text`; null after ten seconds.
  HWND dialogWith(int control, std::wstring_view text) const;
  HWND messageBox(std::wstring_view text) const { return dialogWith(0xFFFF, text); }
  bool isRunning() const { return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT; }
  // After the window was asked to close; -1 when the program goes on running.
  int exitCode(DWORD limitMs = 20000) const;
  // Asks the window to close; the exit code.
  int close();
  PROCESS_MEMORY_COUNTERS memory() const;
  DWORD handles() const;
  DWORD threads() const;
  // Pens, bitmaps, fonts and the like.
  DWORD drawingObjects() const { return vgps::drawingObjects(process_.hProcess); }

 private:
  std::unique_ptr<RunFolder> ownFolder_;
  std::string path_;
  Handle job_;
  PROCESS_INFORMATION process_{};
};

// Presses a button of a dialog and waits until that is closed.
bool press(HWND dialog, int button);

// The state of a menu item of this process, as if the person had opened its menu.
UINT menuState(HWND window, Command command);

// The text of a combo box, chosen from its list; false when the list does not have it.
bool choose(HWND dialog, int box, const wchar_t* text);

// The same program as a thread of this process, whose window may be looked into.
class ProgramInProcess {
 public:
  // Its settings stand beside the test's program, where they are replaced.
  explicit ProgramInProcess(std::vector<std::string> arguments,
                            std::string_view settings = kUsedBefore);
  ~ProgramInProcess() { close(); }

  HWND window() const { return window_; }
  // Its settings as they are on the disk now.
  std::string settings() const;
  // Asks the window to close and waits for the end; the exit code.
  int close();

 private:
  std::thread thread_;
  HWND window_ = nullptr;
  int result_ = -1;
};

// Colors of a rectangle of a window or of a device context, row by row.
class Picture {
 public:
  Picture(HDC source, const RECT& area);
  static Picture ofWindow(HWND window);

  int width() const { return width_; }
  int height() const { return height_; }
  Color at(int x, int y) const {
    return pixels_[static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)];
  }
  // Pixels in the rectangle that differ from `ground`.
  int ink(const Rect& area, Color ground) const;
  // Whether anything in the rectangle is not as in the other, of the same size.
  bool differs(const Rect& area, const Picture& other) const;
  bool operator==(const Picture&) const = default;

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<Color> pixels_;
};

}  // namespace vgps
