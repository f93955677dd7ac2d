#include "xml/files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <type_traits>

#include "base/text.h"

namespace vgps {
namespace {

// Converts UTF-8 to a system path. Where paths are bytes, they stay unchanged. Where paths are
// UTF-16, invalid UTF-8 becomes U+FFFD, because the standard library would throw.
std::filesystem::path systemPath(const std::string& path) {
  if constexpr (std::is_same_v<std::filesystem::path::value_type, char>) {
    return path;
  } else {
    return utf16FromUtf8(path);
  }
}

struct SystemFile {
  std::fstream stream;
  std::filesystem::path path;
  bool inPlace = false;  // an existing file is being overwritten
  uint64_t oldSize = 0;
  uint64_t written = 0;
};

// Opens an existing file so that it keeps its contents and its disk space until it is overwritten.
// Returns false if it is not a regular file (such as a pipe) or cannot be opened this way.
bool openInPlace(SystemFile& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file.path, error)) return false;
  file.oldSize = std::filesystem::file_size(file.path, error);
  if (error) return false;
  file.stream.open(file.path, std::ios::in | std::ios::out | std::ios::binary);
  file.inPlace = file.stream.is_open();
  return file.inPlace;
}

// Unbuffered: files are accessed in large blocks, so a buffer would only add a copy.
void* openFile(const std::string& path, XmlFiles::Access access) {
  auto file = std::make_unique<SystemFile>();
  file->path = systemPath(path);
  file->stream.rdbuf()->pubsetbuf(nullptr, 0);
  if (access == XmlFiles::Access::read) {
    std::error_code error;
    // Reading a pipe would wait for its writer.
    if (!std::filesystem::is_regular_file(file->path, error)) return nullptr;
    file->stream.open(file->path, std::ios::in | std::ios::binary);
  } else if (!openInPlace(*file)) {
    file->stream.clear();
    file->stream.open(file->path, std::ios::out | std::ios::trunc | std::ios::binary);
  }
  return file->stream.is_open() ? file.release() : nullptr;
}

size_t readFile(void* file, char* to, size_t size) {
  auto& stream = static_cast<SystemFile*>(file)->stream;
  stream.read(to, static_cast<std::streamsize>(size));
  return static_cast<size_t>(stream.gcount());
}

bool writeAt(std::fstream& stream, uint64_t place, const char* from, size_t size) {
  return size == 0 || (stream.seekp(static_cast<std::streamoff>(place)) &&
                       stream.write(from, static_cast<std::streamsize>(size)));
}

size_t writeFile(void* handle, const char* from, size_t size) {
  auto& file = *static_cast<SystemFile*>(handle);
  size_t over = 0;  // how many of the bytes are within the old contents
  if (file.inPlace) {
    if (file.written < file.oldSize) {
      over = static_cast<size_t>(std::min<uint64_t>(size, file.oldSize - file.written));
    }
    if (!writeAt(file.stream, file.written + over, from + over, size - over)) return 0;
    if (!writeAt(file.stream, file.written, from, over)) return 0;
  } else if (!file.stream.write(from, static_cast<std::streamsize>(size))) {
    return 0;
  }
  file.written += size;
  return size;
}

bool closeFile(void* handle) {
  const std::unique_ptr<SystemFile> file(static_cast<SystemFile*>(handle));
  bool good = !file->stream.bad();
  file->stream.clear();
  file->stream.close();
  good = good && file->stream.good();
  const uint64_t size = good ? file->written : file->oldSize;
  if (!file->inPlace || (good && size >= file->oldSize)) return good;
  std::error_code error;
  std::filesystem::resize_file(file->path, size, error);
  return good && !error;
}

uint64_t roomOnDisk(const std::string& path) {
  const std::filesystem::path file = systemPath(path);
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(file, error);
  if (error) return UINT64_MAX;
  const auto space = std::filesystem::space(absolute.parent_path(), error);
  if (error) return UINT64_MAX;
  const uint64_t taken = std::filesystem::file_size(file, error);
  return space.available + (error ? 0 : taken);
}

// Some systems promise memory that they do not have and kill the program that uses it. Those report
// the available memory here; on other systems the allocation itself fails.
uint64_t roomInMemory() {
  std::ifstream info("/proc/meminfo");
  std::string word;
  uint64_t kilobytes = 0;
  while (info >> word) {
    if (word == "MemAvailable:" && info >> kilobytes) return kilobytes * 1024;
  }
  return UINT64_MAX;
}

}  // namespace

const XmlFiles& systemFiles() {
  static constexpr XmlFiles kFiles = {openFile,  readFile,   writeFile,
                                      closeFile, roomOnDisk, roomInMemory};
  return kFiles;
}

}  // namespace vgps
