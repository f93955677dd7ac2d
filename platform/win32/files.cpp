#include "platform/files.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "platform/win32/handle.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

// Opened only to query what it refers to, so it never conflicts with other programs.
Handle lookAt(const std::string& path) {
  return Handle(CreateFileW(wideFromUtf8(path).c_str(), 0,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

std::wstring fullPath(const std::string& path) {
  const std::wstring wide = wideFromUtf8(path);
  std::wstring full(MAX_PATH, L'\0');
  for (;;) {
    const auto room = static_cast<DWORD>(full.size());
    const DWORD length = GetFullPathNameW(wide.c_str(), room, full.data(), nullptr);
    if (length == 0) return wide;
    full.resize(length);
    if (length < room) return full;
  }
}

}  // namespace

std::FILE* standardInput() {
  _setmode(_fileno(stdin), _O_BINARY);
  return stdin;
}

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
    path.resize(path.size() * 2);  // the path was truncated
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

bool makeFolder(const std::string& path) {
  return CreateDirectoryW(wideFromUtf8(path).c_str(), nullptr) != 0 || isFolder(path);
}

bool fileExists(const std::string& path) {
  return GetFileAttributesW(wideFromUtf8(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool flushFile(const std::string& path) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const Handle handle(CreateFileW(wideFromUtf8(path).c_str(), GENERIC_WRITE, kShared, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  return handle.isValid() && FlushFileBuffers(handle.get());
}

// The file system's own journal protects the names.
void flushFolderOf(const std::string&) {}

bool replaceFile(const std::string& from, const std::string& to) {
  return MoveFileExW(wideFromUtf8(from).c_str(), wideFromUtf8(to).c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

RenameResult renameUnlessTaken(const std::string& from, const std::string& to) {
  if (MoveFileExW(wideFromUtf8(from).c_str(), wideFromUtf8(to).c_str(), MOVEFILE_WRITE_THROUGH)) {
    return RenameResult::renamed;
  }
  const DWORD error = GetLastError();
  const bool taken = error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS;
  return taken ? RenameResult::taken : RenameResult::refused;
}

FileKind fileKind(const std::string& path) {
  const Handle file = lookAt(path);
  if (file.isValid()) {
    FILE_BASIC_INFO info{};
    const bool known = GetFileInformationByHandleEx(file.get(), FileBasicInfo, &info, sizeof info);
    const bool folder = (info.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const bool disk = GetFileType(file.get()) == FILE_TYPE_DISK;
    return known && !folder && disk ? FileKind::regular : FileKind::other;
  }
  const DWORD error = GetLastError();
  const bool missing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
  return missing ? FileKind::none : FileKind::other;
}

bool isNotAFile(const std::string& path) {
  const Handle file = lookAt(path);
  return isFolder(path) || (file.isValid() && GetFileType(file.get()) != FILE_TYPE_DISK);
}

std::string resolveLinks(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(wideFromUtf8(path).c_str());
  const bool link =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (!link) return path;
  const Handle file = lookAt(path);
  if (!file.isValid()) return {};
  std::wstring target(MAX_PATH, L'\0');
  for (;;) {
    const auto room = static_cast<DWORD>(target.size());
    const DWORD length = GetFinalPathNameByHandleW(file.get(), target.data(), room, 0);
    if (length == 0) return {};
    target.resize(length);
    if (length < room) return utf8FromWide(target);
  }
}

bool isSameFile(const std::string& a, const std::string& b) {
  const Handle first = lookAt(a);
  const Handle second = lookAt(b);
  if (first.isValid() && second.isValid()) {
    BY_HANDLE_FILE_INFORMATION one{};
    BY_HANDLE_FILE_INFORMATION other{};
    return GetFileInformationByHandle(first.get(), &one) &&
           GetFileInformationByHandle(second.get(), &other) &&
           one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
  }
  if (first.isValid() || second.isValid()) return false;
  return CompareStringOrdinal(fullPath(a).c_str(), -1, fullPath(b).c_str(), -1, TRUE) == CSTR_EQUAL;
}

// A new file inherits the rights of its folder, as the old one did.
void copyPermissions(const std::string&, const std::string&) {}

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

double fileAge(const std::string& path) {
  FileStamp stamp;
  if (!fileStamp(path, stamp)) return 0;
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  const auto ticks =
      static_cast<int64_t>((uint64_t{now.dwHighDateTime} << 32) | uint64_t{now.dwLowDateTime});
  constexpr double kTicksPerSecond = 1e7;
  return static_cast<double>(ticks - stamp.time) / kTicksPerSecond;
}

FileFault lastFileFault() {
  switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE: return FileFault::noFolder;
    case ERROR_DIRECTORY: return FileFault::notAFolder;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT: return FileFault::noPermission;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return FileFault::noSpace;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION: return FileFault::inUse;
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_BUFFER_OVERFLOW: return FileFault::badName;
    default: return FileFault::unknown;
  }
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
