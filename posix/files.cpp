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

bool fileStamp(const std::string& path, FileStamp& stamp) {
  constexpr int64_t kNanoseconds = 1000000000;
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) return false;
  stamp.size = static_cast<uint64_t>(status.st_size);
  stamp.time = int64_t{status.st_mtim.tv_sec} * kNanoseconds + status.st_mtim.tv_nsec;
  return true;
}

std::vector<std::string> filesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator at(folder, error);
  for (; !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
    std::error_code noKind;  // a file that vanished meanwhile
    if (!at->is_directory(noKind)) names.push_back(at->path().filename().string());
  }
  return names;
}

}  // namespace vgps
