#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/canvas.h"
#include "win32/handle.h"

// Driving windows and serial lines from a test. Windows live on a desktop of the test's own.
namespace vgps {

// Asks every 10 ms; false when `ok` has not become true in time.
bool waitFor(const std::function<bool()>& ok, DWORD limitMs = 10000);

std::wstring windowText(HWND window);

// Whether the thread of the window answers.
bool isResponsive(HWND window);

// The visible top-level window of a process with that class; null when there is none.
HWND findWindow(DWORD process, const wchar_t* className);

// The calling thread's windows go to the test's desktop from now on.
void enterTestDesktop();

// The started program. It ends with this object, or with the test if that is killed.
class Program {
 public:
  explicit Program(const std::wstring& arguments);
  ~Program();

  // The main window, or null after ten seconds.
  HWND window();
  HWND dialog() const { return findWindow(process_.dwProcessId, L"#32770"); }
  bool isRunning() const { return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT; }
  // After the window was asked to close; -1 when the program goes on running.
  int exitCode(DWORD limitMs = 5000) const;
  double processorSeconds() const;
  size_t workingSet() const;
  // Open kernel objects, and threads; as the list of all processes has them.
  DWORD handles() const;
  DWORD threads() const;
  // Pens, bitmaps, windows and the like; 0 where the system does not count them.
  DWORD guiObjects() const;

 private:
  Handle job_;
  PROCESS_INFORMATION process_{};
};

// The same program as a thread of this process, whose window may be looked into.
class ProgramInProcess {
 public:
  explicit ProgramInProcess(std::vector<std::string> arguments);
  ~ProgramInProcess() { close(); }

  HWND window() const { return window_; }
  // Asks the window to close and waits for the end; the exit code.
  int close();

 private:
  std::thread thread_;
  HWND window_ = nullptr;
  int result_ = -1;
};

// Colours of a rectangle of a window or of a device context, row by row.
class Picture {
 public:
  Picture(HDC source, const RECT& area);
  static Picture ofWindow(HWND window);

  int width() const { return width_; }
  int height() const { return height_; }
  Colour at(int x, int y) const {
    return pixels_[static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)];
  }
  // Pixels in the rectangle that differ from `ground`.
  int ink(const Rect& area, Colour ground) const;
  bool operator==(const Picture&) const = default;

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<Colour> pixels_;
};

// The cable between COM3 and COM4. The program has one end, the test writes into the other.
class SerialLine {
 public:
  SerialLine();
  ~SerialLine();
  bool isUp() const { return up_; }
  void unplug();
  void plugIn();
  // Through COM4.
  void write(std::string_view bytes);
  std::string read(size_t length);

 private:
  bool command(const char* word);

  bool up_ = false;
  Handle end_;
};

}  // namespace vgps
