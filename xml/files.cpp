#include "xml/files.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <type_traits>

#include "base/text.h"

namespace vgps {
namespace {

// A path of the system from UTF-8. Where the system takes bytes they stay what they are; where it
// takes UTF-16 what is no UTF-8 becomes U+FFFD, because the standard library would throw.
std::filesystem::path systemPath(const std::string& path) {
  if constexpr (std::is_same_v<std::filesystem::path::value_type, char>) {
    return path;
  } else {
    return utf16FromUtf8(path);
  }
}

// Files are read and written in large pieces: the stream's own buffer would only copy once more.
void* openFile(const std::string& path, XmlFiles::Access access) {
  auto file = std::make_unique<std::fstream>();
  file->rdbuf()->pubsetbuf(nullptr, 0);
  const std::ios::openmode mode =
      access == XmlFiles::Access::read ? std::ios::in : std::ios::out | std::ios::trunc;
  file->open(systemPath(path), mode | std::ios::binary);
  return file->is_open() ? file.release() : nullptr;
}

size_t readFile(void* file, char* to, size_t size) {
  auto& stream = *static_cast<std::fstream*>(file);
  stream.read(to, static_cast<std::streamsize>(size));
  return static_cast<size_t>(stream.gcount());
}

size_t writeFile(void* file, const char* from, size_t size) {
  auto& stream = *static_cast<std::fstream*>(file);
  return stream.write(from, static_cast<std::streamsize>(size)) ? size : 0;
}

bool closeFile(void* file) {
  const std::unique_ptr<std::fstream> stream(static_cast<std::fstream*>(file));
  const bool good = !stream->bad();
  stream->clear();
  stream->close();
  return good && stream->good();
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

// Some systems promise memory they do not have and end the program that uses it. They say here
// what is left; on the others the allocation itself fails.
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
