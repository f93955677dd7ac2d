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

std::string pathIn(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && !path.ends_with('\\') && !path.ends_with('/')) path += '\\';
  return path.append(name);
}

bool isFolder(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(wideFromUtf8(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool fileExists(const std::string& path) {
  return GetFileAttributesW(wideFromUtf8(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool replaceFile(const std::string& from, const std::string& to) {
  return MoveFileExW(wideFromUtf8(from).c_str(), wideFromUtf8(to).c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool removeFile(const std::string& path) { return DeleteFileW(wideFromUtf8(path).c_str()) != 0; }

bool fileStamp(const std::string& path, FileStamp& stamp) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (!GetFileAttributesExW(wideFromUtf8(path).c_str(), GetFileExInfoStandard, &data)) return false;
  if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  const FILETIME& time = data.ftLastWriteTime;
  stamp.size = (uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
  stamp.time =
      static_cast<int64_t>((uint64_t{time.dwHighDateTime} << 32) | uint64_t{time.dwLowDateTime});
  return true;
}

std::vector<std::string> filesIn(const std::string& folder) {
  std::vector<std::string> names;
  WIN32_FIND_DATAW found{};
  const std::wstring pattern = wideFromUtf8(pathIn(folder, "*"));
  const HANDLE search = FindFirstFileW(pattern.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) continue;
    names.push_back(utf8FromWide(found.cFileName));
  } while (FindNextFileW(search, &found) != 0);
  FindClose(search);
  return names;
}

}  // namespace vgps
