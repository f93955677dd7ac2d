#include "platform/files.h"

#include <filesystem>

namespace vgps {

std::FILE* openFile(const std::string& path, const char* mode) {
  return std::fopen(path.c_str(), mode);
}

std::string programFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? "." : program.parent_path().string();
}

}  // namespace vgps
