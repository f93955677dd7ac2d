#include "platform/console.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <atomic>
#include <utility>

#include "base/text.h"

namespace vgps {
namespace {

// The system calls a plain function, so what it shall do stands beside it.
struct StopRequest {
  std::function<void()> handler;
  std::atomic<bool> asked{false};
};
StopRequest& stopRequest() {
  static StopRequest request;
  return request;
}

// Runs on a thread that the system starts for it. TRUE: the program goes on and ends itself.
BOOL WINAPI onConsoleEvent(DWORD) {
  if (stopRequest().asked.exchange(true)) return FALSE;
  stopRequest().handler();
  return TRUE;
}

}  // namespace

std::vector<std::string> commandLineArguments(int, char**) {
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i < count; ++i) {
    arguments.push_back(utf8FromUtf16(reinterpret_cast<const char16_t*>(words[i])));
  }
  LocalFree(words);
  return arguments;
}

bool outputIsTerminal() {
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  if (!GetConsoleMode(output, &mode)) return false;
  SetConsoleOutputCP(CP_UTF8);
  return SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

int terminalColumns() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info)) return 80;
  return info.srWindow.Right - info.srWindow.Left + 1;
}

void onStopRequest(std::function<void()> handler) {
  stopRequest().handler = std::move(handler);
  SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

}  // namespace vgps
