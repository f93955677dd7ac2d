#include "platform/exclusive_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace vgps {
namespace {

class LockedFile : public ExclusiveFile {
 public:
  LockedFile(int fd, std::string path) : fd_(fd), path_(std::move(path)) {}
  ~LockedFile() override { ::close(fd_); }

  uint64_t size() override {
    struct stat status {};
    return ::fstat(fd_, &status) == 0 ? static_cast<uint64_t>(status.st_size) : 0;
  }

  size_t readAt(uint64_t offset, std::span<uint8_t> into) override {
    size_t done = 0;
    while (done < into.size()) {
      const ssize_t got =
          ::pread(fd_, into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) break;
      done += static_cast<size_t>(got);
    }
    return done;
  }

  bool writeAt(uint64_t offset, std::span<const uint8_t> bytes) override {
    size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t put = ::pwrite(fd_, bytes.data() + done, bytes.size() - done,
                                   static_cast<off_t>(offset + done));
      if (put < 0 && errno == EINTR) continue;
      if (put <= 0) return false;
      done += static_cast<size_t>(put);
    }
    return true;
  }

  bool cutAt(uint64_t size) override { return ::ftruncate(fd_, static_cast<off_t>(size)) == 0; }
  bool flush() override { return ::fsync(fd_) == 0; }
  bool remove() override { return ::unlink(path_.c_str()) == 0; }

 private:
  int fd_;
  std::string path_;
};

FileOpening openingOf(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR: return FileOpening::missing;
    case EEXIST:
    case EWOULDBLOCK: return FileOpening::inUse;
    default: return FileOpening::refused;
  }
}

// The previous owner may have deleted the file after we opened it and before we locked it. Returns
// false then: our descriptor refers to a file without a name.
bool isStillNamed(int fd, const std::string& path) {
  struct stat held {};
  struct stat named {};
  return ::fstat(fd, &held) == 0 && ::stat(path.c_str(), &named) == 0 &&
         held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

// Opening a pipe or device may wait for its other end or start something there.
bool isSpecial(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

int flagsOf(OpenMode mode) {
  switch (mode) {
    case OpenMode::existing: break;
    case OpenMode::orCreate: return O_CREAT;
    case OpenMode::createNew: return O_CREAT | O_EXCL;
  }
  return 0;
}

}  // namespace

std::unique_ptr<ExclusiveFile> openExclusive(const std::string& path, OpenMode mode,
                                             FileOpening& opening) {
  for (;;) {
    if (mode != OpenMode::createNew && isSpecial(path)) {
      opening = FileOpening::notAFile;
      return nullptr;
    }
    const int fd = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK | flagsOf(mode), 0666);
    if (fd < 0) {
      opening = openingOf(errno);
      return nullptr;
    }
    auto file = std::make_unique<LockedFile>(fd, path);
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
      opening = openingOf(errno);
      return nullptr;
    }
    if (isStillNamed(fd, path)) {
      opening = FileOpening::opened;
      return file;
    }
  }
}

}  // namespace vgps
