#pragma once

#include <string>

#include "tests/fakes/test_folder.h"
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

}  // namespace vgps
