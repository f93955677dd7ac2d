#include <windows.h>

#include <cwchar>

// Wine's server ends with its last program and takes a second to start again. One instance of this
// program keeps it alive, for an hour at most; "keepalive wait" returns 0 as soon as one does.
namespace {

constexpr DWORD kLongestWaitMs = 30 * 1000;
constexpr DWORD kLifeMs = 3600 * 1000;

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const HANDLE isUp = CreateEventW(nullptr, TRUE, FALSE, L"VexaKeepAliveIsUp");
  if (isUp == nullptr) return 1;
  if (argc > 1 && std::wcscmp(argv[1], L"wait") == 0) {
    return WaitForSingleObject(isUp, kLongestWaitMs) == WAIT_OBJECT_0 ? 0 : 1;
  }
  SetEvent(isUp);
  Sleep(kLifeMs);
  return 0;
}
