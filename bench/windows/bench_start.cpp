#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "platform/files.h"
#include "win32/handle.h"
#include "win32/message_parameter.h"
#include "win32/wide.h"

// From the start of the program to its painted window, its memory and its use of the processor
// while idle, each beside a program that does nothing but show a window. The two take turns.
namespace vgps {
namespace {

constexpr int kRounds = 30;
constexpr DWORD kLimitMs = 20000;
constexpr DWORD kIdleMs = 10000;
constexpr DWORD kSettleMs = 100;

struct Measured {
  double startMs = 0;
  double workingSetMb = 0;
};

double milliseconds() {
  LARGE_INTEGER count;
  LARGE_INTEGER perSecond;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&perSecond);
  return static_cast<double>(count.QuadPart) * 1e3 / static_cast<double>(perSecond.QuadPart);
}

class Child {
 public:
  explicit Child(const std::string& program) : began_(milliseconds()) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    std::wstring command = L"\"" + wideFromUtf8(program) + L"\"";
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &started)) {
      return;
    }
    process_ = Handle(started.hProcess);
    thread_ = started.dwThreadId;
    CloseHandle(started.hThread);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    PostThreadMessageW(thread_, WM_QUIT, 0, 0);
    if (WaitForSingleObject(process_.get(), kLimitMs) != WAIT_OBJECT_0) {
      TerminateProcess(process_.get(), 1);
    }
  }

  // Shown, and nothing of it is left to be drawn.
  bool waitUntilPainted() {
    while (milliseconds() - began_ < kLimitMs) {
      const HWND window = shownWindow();
      if (window != nullptr && !GetUpdateRect(window, nullptr, FALSE)) return true;
      Sleep(1);
    }
    return false;
  }
  void waitUntilIdle() { WaitForInputIdle(process_.get(), kLimitMs); }

  double sinceStart() const { return milliseconds() - began_; }

  double workingSetMb() const {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(process_.get(), &memory, sizeof memory);
    return static_cast<double>(memory.WorkingSetSize) / (1 << 20);
  }

  double processorMs() const {
    FILETIME created, ended, kernel, user;
    GetProcessTimes(process_.get(), &created, &ended, &kernel, &user);
    return static_cast<double>(kernel.dwLowDateTime + user.dwLowDateTime) / 1e4;
  }

 private:
  HWND shownWindow() const {
    HWND found = nullptr;
    EnumThreadWindows(
        thread_,
        [](HWND window, LPARAM result) -> BOOL {
          if (!IsWindowVisible(window)) return TRUE;
          *addressIn<HWND>(result) = window;
          return FALSE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
  }

  double began_;
  Handle process_;
  DWORD thread_ = 0;
};

// False when the program did not come up.
bool startOnce(const std::string& program, std::vector<Measured>& results) {
  Child child(program);
  if (!child.waitUntilPainted()) return false;
  const double painted = child.sinceStart();
  child.waitUntilIdle();
  Sleep(kSettleMs);
  results.push_back({.startMs = painted, .workingSetMb = child.workingSetMb()});
  return true;
}

// The value that stands at that hundredth when all are in order: 50 is the median; the tenth is
// what a machine takes that has nothing else to do.
double percentile(const std::vector<Measured>& results, double Measured::*value, size_t hundredth) {
  std::vector<double> values;
  for (const Measured& result : results) values.push_back(result.*value);
  std::sort(values.begin(), values.end());
  return values[values.size() * hundredth / 100];
}

double idleMs(const std::string& program) {
  Child child(program);
  child.waitUntilIdle();
  Sleep(1000);  // the start is over
  const double before = child.processorMs();
  Sleep(kIdleMs);
  return child.processorMs() - before;
}

int run() {
  const std::string bare = pathIn(programFolder(), "bare_window.exe");
  const std::string ours = pathIn(programFolder(), "VexaGPS.exe");
  // Settings of a program that was started before, and asks nothing.
  std::ofstream(pathIn(programFolder(), "vgps.xml"))
      << R"(<root><cfg><vgps upd="1000"/><gps port="COM3"/></cfg></root>)";
  std::vector<Measured> bareResults;
  std::vector<Measured> ourResults;
  for (int round = 0; round < kRounds; ++round) {
    if (startOnce(bare, bareResults) && startOnce(ours, ourResults)) continue;
    std::printf("a program did not start\n");
    return 1;
  }
  const auto print = [&](const char* what, double Measured::*value, size_t hundredth,
                         const char* unit) {
    const double reference = percentile(bareResults, value, hundredth);
    const double mine = percentile(ourResults, value, hundredth);
    std::printf("%-39s %7.1f %s  bare window %7.1f %s  %+7.1f %s  x %.2f\n", what, mine, unit,
                reference, unit, mine - reference, unit, mine / reference);
  };
  print("start to a painted window, median", &Measured::startMs, 50, "ms");
  print("start to a painted window, undisturbed", &Measured::startMs, 10, "ms");
  print("working set", &Measured::workingSetMb, 50, "MB");
  std::printf("idle for %lu s, not connected: %.1f ms of a processor; bare window %.1f ms\n",
              kIdleMs / 1000, idleMs(ours), idleMs(bare));
  return 0;
}

}  // namespace
}  // namespace vgps

int wmain() { return vgps::run(); }
