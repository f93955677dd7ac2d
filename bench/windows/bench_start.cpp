#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "app/win32/message_parameter.h"
#include "bench/windows/processor_time.h"
#include "platform/files.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide.h"
#include "tests/app/win32/line.h"

// From the start of the program to its painted window, its memory, and its use of the processor
// while idle and with a receiver, each beside a program that does nothing but show a window. The
// two take turns. Behind each figure stands what it is to stay below.
namespace vgps {
namespace {

constexpr int kRounds = 30;
constexpr DWORD kLimitMs = 20000;
constexpr DWORD kWatchedMs = 10000;
constexpr DWORD kSettleMs = 100;

constexpr double kMostOfBareStart = 1.5;
constexpr double kMostMegabytesMore = 20;
constexpr double kMostIdleMs = 10;  // one tick of the system's accounting
constexpr double kMostPercentSlow = 0.5;
constexpr double kMostPercentFast = 3;

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
  explicit Child(const std::string& program, const wchar_t* arguments = L"")
      : program_(program), began_(milliseconds()) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    std::wstring command = L"\"" + wideFromUtf8(program) + L"\" " + arguments;
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

  double processorMs() const { return ProcessorTime(process_.get(), program_).seconds() * 1e3; }

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

  std::string program_;
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

const char* judged(double value, double most) { return value <= most ? "met" : "MISSED"; }

double usedMs(Child& child) {
  child.waitUntilIdle();
  Sleep(1000);  // the start is over
  const double before = child.processorMs();
  Sleep(kWatchedMs);
  return child.processorMs() - before;
}

double idleMs(const std::string& program) {
  Child child(program);
  return usedMs(child);
}

void printIdle(const std::string& ours, double bareMs) {
  const double mine = idleMs(ours);
  std::printf(
      "idle for %lu s, not connected: %.1f ms of a processor; bare window %.1f ms; "
      "at most %.0f ms: %s\n",
      kWatchedMs / 1000, mine, bareMs, kMostIdleMs, judged(mine, kMostIdleMs));
}

// A receiver that says its two position sentences so often; everything is drawn.
void printWithReceiver(const std::string& ours, int perSecond, double bareMs, double mostPercent) {
  SerialLine line;
  if (!line.isUp()) {
    std::printf("receiver at %d Hz: no line to speak on\n", perSecond);
    return;
  }
  Child child(ours, L"--port COM3 --speed 115200");
  child.waitUntilIdle();
  const Receiver receiver(line, 1000 / perSecond);
  const double mine = usedMs(child) * 100 / kWatchedMs;
  std::printf(
      "receiver at %d Hz for %lu s: %.2f %% of a core; bare window %.2f %%; "
      "at most %.1f %%: %s\n",
      perSecond, kWatchedMs / 1000, mine, bareMs * 100 / kWatchedMs, mostPercent,
      judged(mine, mostPercent));
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
    std::printf("%-39s %7.1f %s  bare window %7.1f %s  %+7.1f %s  x %.2f", what, mine, unit,
                reference, unit, mine - reference, unit, mine / reference);
    return std::pair(mine, reference);
  };
  const auto median = print("start to a painted window, median", &Measured::startMs, 50, "ms");
  std::printf("  at most x %.1f: %s\n", kMostOfBareStart,
              judged(median.first / median.second, kMostOfBareStart));
  print("start to a painted window, undisturbed", &Measured::startMs, 10, "ms");
  const auto memory = print("\nworking set", &Measured::workingSetMb, 50, "MB");
  std::printf("  at most %+.0f MB: %s\n", kMostMegabytesMore,
              judged(memory.first - memory.second, kMostMegabytesMore));
  const double bareMs = idleMs(bare);
  printIdle(ours, bareMs);
  printWithReceiver(ours, 1, bareMs, kMostPercentSlow);
  printWithReceiver(ours, 10, bareMs, kMostPercentFast);
  return 0;
}

}  // namespace
}  // namespace vgps

int wmain() { return vgps::run(); }
