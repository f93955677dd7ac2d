#include "bench/windows/processor_time.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace vgps {
namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Several Wines may run side by side, each with a program of that path.
fs::path hostFolderOf(const std::string& program) {
  const char* const wine = std::getenv("VGPS_TEST_WINE_DIR");
  if (wine == nullptr) return {};
  const std::string mark = std::string("VGPS_TEST_WINE_DIR=") + wine + '\0';
  std::error_code none;
  for (const auto& entry : fs::directory_iterator("Z:\\proc", none)) {
    if (contentOf(entry.path() / "cmdline").starts_with(program + '\0') &&
        contentOf(entry.path() / "environ").find(mark) != std::string::npos) {
      return entry.path();
    }
  }
  return {};
}

// "51895646 94121572 2393": nanoseconds on a processor, waiting for one, turns.
double hostSeconds(const fs::path& folder) {
  double nanoseconds = 0;
  std::error_code none;
  for (const auto& thread : fs::directory_iterator(folder / "task", none)) {
    nanoseconds += std::strtod(contentOf(thread.path() / "schedstat").c_str(), nullptr);
  }
  return nanoseconds / 1e9;
}

}  // namespace

ProcessorTime::ProcessorTime(HANDLE process, const std::string& path)
    : process_(process), host_(hostFolderOf(path)) {}

double ProcessorTime::seconds() const {
  if (!host_.empty()) return hostSeconds(host_);
  FILETIME created, ended, kernel, user;
  if (!GetProcessTimes(process_, &created, &ended, &kernel, &user)) return 0;
  const auto ticks = [](const FILETIME& time) {
    return static_cast<double>(static_cast<ULONGLONG>(time.dwHighDateTime) << 32 |
                               time.dwLowDateTime);
  };
  return (ticks(kernel) + ticks(user)) / 1e7;
}

}  // namespace vgps
