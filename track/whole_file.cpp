#include "track/whole_file.h"

#include <span>

#include "platform/files.h"

namespace vgps {

bool writeWholeFile(const std::string& path, std::string_view text, const ExclusiveOpener& open) {
  const std::string beside = path + ".new";
  FileOpening opening{};
  auto file = open(beside, true, opening);
  if (file == nullptr) return false;
  const std::span bytes(reinterpret_cast<const uint8_t*>(text.data()), text.size());
  if (!file->cutAt(0) || !file->writeAt(0, bytes) || !file->flush()) {
    file->remove();
    return false;
  }
  file.reset();
  if (replaceFile(beside, path)) return true;
  removeFile(beside);
  return false;
}

std::string withoutExtension(const std::string& path) {
  const size_t point = path.find_last_of("./\\");
  return point == std::string::npos || path[point] != '.' ? path : path.substr(0, point);
}

std::string badPathOf(const std::string& path) { return withoutExtension(path) + ".bad"; }

std::string keepAsBad(const std::string& path, std::string_view bytes) {
  const std::string badPath = badPathOf(path);
  return writeWholeFile(badPath, bytes) ? badPath : std::string();
}

}  // namespace vgps
