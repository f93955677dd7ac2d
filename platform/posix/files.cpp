#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>

namespace vgps {
namespace {

std::string folderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

}  // namespace

// A new name is only on the disk once its folder is flushed.
void flushFolderOf(const std::string& path) {
  const int fd = ::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;  // writable but not readable: the system flushes it eventually
  ::fsync(fd);
  ::close(fd);
}

bool flushFile(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool flushed = ::fsync(fd) == 0 || errno == EINVAL;  // a device has nothing to flush
  ::close(fd);
  return flushed;
}

std::FILE* standardInput() { return stdin; }

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

bool makeFolder(const std::string& path) {
  constexpr mode_t kAsTheUserSays = 0777;
  return ::mkdir(path.c_str(), kAsTheUserSays) == 0 || isFolder(path);
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

RenameResult renameUnlessTaken(const std::string& from, const std::string& to) {
  int error = 0;
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0) {
    error = errno;
  }
  if (error == EINVAL || error == ENOSYS) {  // the file system does not support this kind of rename
    error = ::link(from.c_str(), to.c_str()) == 0 ? 0 : errno;
    if (error == 0) ::unlink(from.c_str());
  }
  if (error == 0) flushFolderOf(to);
  if (error == 0) return RenameResult::renamed;
  return error == EEXIST ? RenameResult::taken : RenameResult::refused;
}

FileKind fileKind(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) {
    return S_ISREG(status.st_mode) ? FileKind::regular : FileKind::other;
  }
  return errno == ENOENT ? FileKind::none : FileKind::other;
}

bool isNotAFile(const std::string& path) {
  return fileKind(path) == FileKind::other && fileExists(path);
}

std::string resolveLinks(const std::string& path) {
  constexpr int kMostLinks = 40;  // the limit of the system itself
  std::string at = path;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code error;
    const std::filesystem::path to = std::filesystem::read_symlink(at, error);
    if (error) return at;
    at = (std::filesystem::path(at).parent_path() / to).string();
  }
  return {};
}

bool isSameFile(const std::string& a, const std::string& b) {
  struct stat first {};
  struct stat second {};
  const bool hasFirst = ::stat(a.c_str(), &first) == 0;
  const bool hasSecond = ::stat(b.c_str(), &second) == 0;
  const auto same = [&] { return first.st_dev == second.st_dev && first.st_ino == second.st_ino; };
  if (hasFirst || hasSecond) return hasFirst && hasSecond && same();
  const std::filesystem::path nameOfA(resolveLinks(a));
  const std::filesystem::path nameOfB(resolveLinks(b));
  const std::string folderOfA = folderOf(nameOfA.string());
  const std::string folderOfB = folderOf(nameOfB.string());
  return nameOfA.filename() == nameOfB.filename() && ::stat(folderOfA.c_str(), &first) == 0 &&
         ::stat(folderOfB.c_str(), &second) == 0 && same();
}

void copyPermissions(const std::string& from, const std::string& to) {
  constexpr mode_t kReadWriteRun = 0777;
  constexpr mode_t kWithoutGroup = 0707;
  struct stat old {};
  if (::stat(from.c_str(), &old) != 0) return;
  // First the owner, then the mode. If the old group cannot be kept, the new group gets no rights.
  const bool given = ::lchown(to.c_str(), old.st_uid, old.st_gid) == 0;
  const mode_t mode = old.st_mode & (given ? kReadWriteRun : kWithoutGroup);
  if (::chmod(to.c_str(), mode) != 0) return;  // a file system without modes
}

bool removeFile(const std::string& path) { return ::unlink(path.c_str()) == 0; }

bool fileStamp(const std::string& path, FileStamp& stamp) {
  constexpr int64_t kNanoseconds = 1000000000;
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  stamp.size = static_cast<uint64_t>(status.st_size);
  stamp.time = int64_t{status.st_mtim.tv_sec} * kNanoseconds + status.st_mtim.tv_nsec;
  return true;
}

double fileAge(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return 0;
  struct timespec now {};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<double>(now.tv_sec - status.st_mtim.tv_sec);
}

FileFault lastFileFault() {
  switch (errno) {
    case ENOENT: return FileFault::noFolder;
    case ENOTDIR: return FileFault::notAFolder;
    case EISDIR: return FileFault::isFolder;
    case EACCES:
    case EPERM:
    case EROFS: return FileFault::noPermission;
    case ENOSPC:
    case EDQUOT:
    case EFBIG: return FileFault::noSpace;
    case EBUSY:
    case ETXTBSY:
    case EWOULDBLOCK: return FileFault::inUse;
    case ENAMETOOLONG:
    case EINVAL: return FileFault::badName;
    default: return FileFault::unknown;
  }
}

std::vector<std::string> filesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator at(folder, error);
  for (; !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
    std::error_code noKind;  // set if the file has vanished meanwhile
    if (!at->is_directory(noKind)) names.push_back(at->path().filename().string());
  }
  return names;
}

}  // namespace vgps
