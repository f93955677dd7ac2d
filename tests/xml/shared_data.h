#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/places.h"

namespace vgps {

// The files of other programs that tests read where they lie: VEXA_DATA, or beside the checkout.
inline std::filesystem::path sharedData() {
  const char* const given = std::getenv("VEXA_DATA");
  return given != nullptr ? std::filesystem::path(given)
                          : std::filesystem::path(sourceFolder()) / "../shared/data";
}

// In the order of their names; none when the folder is missing.
inline std::vector<std::filesystem::path> sharedFiles(const std::vector<std::string>& folders) {
  std::vector<std::filesystem::path> files;
  for (const std::string& folder : folders) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(sharedData() / folder, error)) {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace vgps
