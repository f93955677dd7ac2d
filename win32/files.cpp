#include "platform/files.h"

#include <windows.h>

#include "win32/wide.h"

namespace vgps {

std::FILE* openFile(const std::string& path, const char* mode) {
  return _wfopen(wideFromUtf8(path).c_str(), wideFromUtf8(mode).c_str());
}

std::string programFolder() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) return ".";
    if (length < path.size()) {
      path.resize(length);
      break;
    }
    path.resize(path.size() * 2);  // it was cut
  }
  const size_t separator = path.find_last_of(L"\\/");
  return utf8FromWide(std::wstring_view(path).substr(0, separator));
}

}  // namespace vgps
