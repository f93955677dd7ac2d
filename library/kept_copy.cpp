#include "library/kept_copy.h"

#include "library/library_files.h"
#include "platform/files.h"
#include "track/whole_file.h"

namespace vgps {
namespace {

constexpr int kMost = 99;

std::string badPath(const std::string& path, int number) {
  if (number == 1) return badPathOf(path);
  return withoutExtension(path) + "-" + std::to_string(number) + ".bad";
}

bool holds(const std::string& path, std::string_view bytes) {
  FileStamp stamp;
  std::string there;
  return fileStamp(path, stamp) && stamp.size == bytes.size() && readWholeFile(path, there) &&
         there == bytes;
}

}  // namespace

std::string keepCopyOnce(const std::string& path, std::string_view bytes) {
  for (int number = 1; number <= kMost; ++number) {
    const std::string bad = badPath(path, number);
    if (bad == path) continue;
    if (!fileExists(bad)) return writeWholeFile(bad, bytes) ? bad : std::string();
    if (holds(bad, bytes)) return bad;
  }
  return {};
}

std::string renameToBad(const std::string& path) {
  for (int number = 1; number <= kMost; ++number) {
    const std::string bad = badPath(path, number);
    if (!fileExists(bad)) return replaceFile(path, bad) ? bad : std::string();
  }
  return {};
}

}  // namespace vgps
