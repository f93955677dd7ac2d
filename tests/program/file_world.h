#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/places.h"
#include "tests/program/program.h"

namespace vgps {

// A folder of the running test's own.
class FileWorld : public testing::Test {
 protected:
  FileWorld() {
    const auto* const info = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() /
              (std::string("vgps_") + info->test_suite_name() + "_" + info->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  ~FileWorld() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }
  std::string read(const std::string& name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::filesystem::path folder_;
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
