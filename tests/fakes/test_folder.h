#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace vgps {

inline std::string fileBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void putFile(const std::string& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// A folder of the running test, gone with it.
class TestFolder {
 public:
  TestFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("vgps-test-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(path_);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  ~TestFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }

  std::string path() const { return path_.string(); }
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }
  std::vector<std::string> names() const {
    std::vector<std::string> names = filesIn(path());
    std::sort(names.begin(), names.end());
    return names;
  }
  bool has(const std::string& name) const { return std::filesystem::exists(path_ / name); }
  void write(const std::string& name, std::string_view text) const { putFile(*this / name, text); }
  std::string read(const std::string& name) const { return fileBytes(*this / name); }

 private:
  std::filesystem::path path_;
};

}  // namespace vgps
