#include "app/win32/device_installer.h"

#include <windows.h>

#include <array>

#include "platform/win32/wide.h"

namespace vgps {
namespace {

constexpr const wchar_t* kInstallerKey =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\CEAppMgr.exe";

// Empty if it is not registered.
std::wstring installerPath() {
  std::array<wchar_t, 1024> path{};
  DWORD bytes = sizeof path - sizeof path[0];
  const LSTATUS read = RegGetValueW(HKEY_LOCAL_MACHINE, kInstallerKey, nullptr, RRF_RT_REG_SZ,
                                    nullptr, path.data(), &bytes);
  return read == ERROR_SUCCESS ? std::wstring(path.data()) : std::wstring();
}

}  // namespace

bool runDeviceInstaller(const std::string& argument) {
  const std::wstring path = installerPath();
  if (path.empty()) return false;
  std::wstring command = L'"' + path + L"\" " + wideFromUtf8(argument);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &startup, &process)) {
    return false;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

}  // namespace vgps
