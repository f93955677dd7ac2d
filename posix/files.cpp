#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

namespace vgps {
namespace {

// A new name is on the disk only when its folder is.
void flushFolderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;  // a folder that may be written but not read: the system flushes it in time
  ::fsync(fd);
  ::close(fd);
}

}  // namespace

std::FILE* openFile(const std::string& path, const char* mode) {
  return std::fopen(path.c_str(), mode);
}

std::string programFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? "." : program.parent_path().string();
}

std::string pathIn(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && !path.ends_with('/')) path += '/';
  return path.append(name);
}

bool isFolder(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool fileExists(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

bool replaceFile(const std::string& from, const std::string& to) {
  if (std::rename(from.c_str(), to.c_str()) != 0) return false;
  flushFolderOf(to);
  return true;
}

bool removeFile(const std::string& path) { return ::unlink(path.c_str()) == 0; }

}  // namespace vgps
