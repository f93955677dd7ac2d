#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <string>

#include "tests/fakes/test_folder.h"
#include "tests/places.h"
#include "tests/program/program.h"

namespace vgps {

// A test with a folder of its own.
class FileWorld : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return folder_ / name; }
  void write(const std::string& name, const std::string& text) const { folder_.write(name, text); }
  std::string read(const std::string& name) const { return folder_.read(name); }

  TestFolder folder_;
};

inline bool isOneLine(const std::string& text) {
  return text.starts_with("vgps: ") && text.find('\n') == text.size() - 1;
}

// While it lives, programs that are started find the disk full behind so many bytes of a file.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(size_t bytes) : handler_(::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limited = before_;
    limited.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    ::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  sighandler_t handler_;
};

// While it lives an administrator, who may write everything, is somebody else.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    constexpr uid_t kNobody = 65534;
    if (before_ == 0) changed_ = setresuid(kNobody, kNobody, before_) == 0;
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (changed_ && setresuid(before_, before_, before_) != 0) std::abort();
  }
  bool mayRunTheProgram() const {
    return geteuid() != 0 && faccessat(AT_FDCWD, vgpsProgram(), X_OK, AT_EACCESS) == 0;
  }

 private:
  uid_t before_ = geteuid();
  bool changed_ = false;
};

}  // namespace vgps
