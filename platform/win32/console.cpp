#include "platform/console.h"

#include <windows.h>

#include <shellapi.h>

#include <atomic>
#include <thread>
#include <utility>

#include "platform/win32/wide.h"

namespace vgps {
namespace {

// When a terminal is closed, the program ends as soon as the system's handler returns.
constexpr DWORD kGraceMs = 5000;

// Global because the system passes its handler only the kind of event.
HANDLE stopRequested = nullptr;

std::atomic<bool> requestCame{false};
std::atomic<bool> holdsNext{false};

BOOL WINAPI onConsoleEvent(DWORD kind) {
  static std::atomic<bool> asked{false};
  requestCame = true;
  const bool again = asked.exchange(true);
  if (again && !holdsNext.exchange(false)) return FALSE;  // the system ends the program
  SetEvent(stopRequested);
  if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT) Sleep(kGraceMs);
  return TRUE;
}

}  // namespace

// The C library converts the arguments to the regional code page, which cannot represent all file
// names.
std::vector<std::string> commandLineArguments(int argc, char** argv) {
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) return {argv + (argc > 0 ? 1 : 0), argv + argc};
  for (int i = 1; i < count; ++i) arguments.push_back(utf8FromWide(wide[i]));
  LocalFree(wide);
  return arguments;
}

bool outputIsTerminal() {
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  if (!GetConsoleMode(output, &mode)) return false;
  SetConsoleOutputCP(CP_UTF8);
  return SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}

TerminalSize terminalSize() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info)) return {};
  return {info.srWindow.Right - info.srWindow.Left + 1,
          info.srWindow.Bottom - info.srWindow.Top + 1};
}

void onStopRequest(std::function<void()> handler) {
  stopRequested = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (stopRequested == nullptr) return;
  std::thread([handler = std::move(handler)] {
    WaitForSingleObject(stopRequested, INFINITE);
    handler();
  }).detach();
  SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

void deferNextStopRequest() {
  requestCame = false;
  holdsNext = true;
}

bool stopRequestWasDeferred() { return requestCame; }

}  // namespace vgps
