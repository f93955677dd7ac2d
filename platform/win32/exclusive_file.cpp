#include "platform/exclusive_file.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "platform/files.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

// The most bytes for a single system call.
constexpr size_t kMostAtOnce = size_t{1} << 30;

OVERLAPPED placeOf(uint64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

class UnsharedFile : public ExclusiveFile {
 public:
  explicit UnsharedFile(Handle handle) : handle_(std::move(handle)) {}

  uint64_t size() override {
    LARGE_INTEGER size{};
    return GetFileSizeEx(handle_.get(), &size) ? static_cast<uint64_t>(size.QuadPart) : 0;
  }

  size_t readAt(uint64_t offset, std::span<uint8_t> into) override {
    size_t done = 0;
    while (done < into.size()) {
      OVERLAPPED place = placeOf(offset + done);
      const auto wanted = static_cast<DWORD>(std::min(into.size() - done, kMostAtOnce));
      DWORD got = 0;
      if (!ReadFile(handle_.get(), into.data() + done, wanted, &got, &place) || got == 0) break;
      done += got;
    }
    return done;
  }

  bool writeAt(uint64_t offset, std::span<const uint8_t> bytes) override {
    size_t done = 0;
    while (done < bytes.size()) {
      OVERLAPPED place = placeOf(offset + done);
      const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kMostAtOnce));
      DWORD put = 0;
      if (!WriteFile(handle_.get(), bytes.data() + done, wanted, &put, &place) || put == 0) {
        return false;
      }
      done += put;
    }
    return true;
  }

  bool cutAt(uint64_t size) override {
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(size);
    return SetFilePointerEx(handle_.get(), end, nullptr, FILE_BEGIN) && SetEndOfFile(handle_.get());
  }

  bool flush() override { return FlushFileBuffers(handle_.get()) != 0; }

  bool remove() override {
    FILE_DISPOSITION_INFO gone{};
    gone.DeleteFile = TRUE;
    if (!SetFileInformationByHandle(handle_.get(), FileDispositionInfo, &gone, sizeof gone)) {
      return false;
    }
    handle_ = Handle();  // the file is deleted with its last handle
    return true;
  }

 private:
  Handle handle_;
};

FileOpening openingOf(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND: return FileOpening::missing;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION: return FileOpening::inUse;
    default: return FileOpening::refused;
  }
}

DWORD dispositionOf(OpenMode mode) {
  switch (mode) {
    case OpenMode::existing: break;
    case OpenMode::orCreate: return OPEN_ALWAYS;
    case OpenMode::createNew: return CREATE_NEW;
  }
  return OPEN_EXISTING;
}

}  // namespace

std::unique_ptr<ExclusiveFile> openExclusive(const std::string& path, OpenMode mode,
                                             FileOpening& opening) {
  constexpr DWORD kNotShared = 0;
  Handle handle(CreateFileW(wideFromUtf8(path).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                            kNotShared, nullptr, dispositionOf(mode), FILE_ATTRIBUTE_NORMAL,
                            nullptr));
  if (!handle.isValid()) {
    const DWORD error = GetLastError();
    opening = isFolder(path) ? FileOpening::notAFile : openingOf(error);
    return nullptr;
  }
  if (GetFileType(handle.get()) != FILE_TYPE_DISK) {
    opening = FileOpening::notAFile;
    return nullptr;
  }
  opening = FileOpening::opened;
  return std::make_unique<UnsharedFile>(std::move(handle));
}

}  // namespace vgps
