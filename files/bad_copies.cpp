#include "files/bad_copies.h"

#include "files/input_file.h"
#include "files/whole_file.h"

namespace vgps {
namespace {

bool hasBytes(const std::string& path, std::string_view bytes) {
  FileStamp stamp;
  InputFile file(path);
  if (!file || !fileStamp(path, stamp) || stamp.size != bytes.size()) return false;
  return file.copy(0, stamp.size, [&bytes](std::string_view block) {
    const bool equal = bytes.starts_with(block);
    bytes.remove_prefix(equal ? block.size() : 0);
    return equal;
  });
}

bool hasBytesOf(const std::string& path, const std::string& other) {
  FileStamp mine, theirs;
  InputFile file(path);
  InputFile otherFile(other);
  const bool both = file && otherFile && fileStamp(path, mine) && fileStamp(other, theirs);
  if (!both || mine.size != theirs.size) return false;
  const ByteSource source = otherFile.source();
  std::string block;
  return file.copy(0, mine.size, [&](std::string_view bytes) {
    block.resize(bytes.size());
    return source(block.data(), block.size()) == block.size() && block == bytes;
  });
}

// Tries the ".bad" names in order. `isCopy` tells whether an existing file is an identical copy;
// `place` stores the file under a free name.
template <class IsCopy, class Place>
std::string firstBadPath(const std::string& path, IsCopy isCopy, Place place) {
  constexpr int kMost = 99;
  for (int number = 1; number <= kMost; ++number) {
    const std::string suffix = number == 1 ? "" : "-" + std::to_string(number);
    const std::string bad = withoutExtension(path) + suffix + ".bad";
    if (fileExists(bad)) {
      const bool another = fileKind(bad) == FileKind::regular && !isSameFile(bad, path);
      if (another && isCopy(bad)) return bad;
      continue;
    }
    const RenameResult result = place(bad);
    if (result == RenameResult::renamed) return bad;
    if (result == RenameResult::refused) return {};
  }
  return {};
}

RenameResult copyTo(const std::string& bad, const std::string& path, const ExclusiveOpener& open) {
  FileStamp stamp;
  InputFile file(path);
  OutputFile copy(bad, open);
  const bool copied = file && fileStamp(path, stamp) &&
                      file.copy(0, stamp.size, [&](auto block) { return copy.write(block); });
  return copied ? copy.finishAs(bad) : RenameResult::refused;
}

}  // namespace

std::string saveBadCopy(const std::string& path, std::string_view bytes,
                        const ExclusiveOpener& open) {
  return firstBadPath(
      path, [&](const std::string& bad) { return hasBytes(bad, bytes); },
      [&](const std::string& bad) { return writeFreeFile(bad, bytes, open); });
}

std::string copyToBad(const std::string& path, const ExclusiveOpener& open) {
  return firstBadPath(
      path, [&](const std::string& bad) { return hasBytesOf(bad, path); },
      [&](const std::string& bad) { return copyTo(bad, path, open); });
}

std::string renameToBad(const std::string& path) {
  return firstBadPath(
      path, [](const std::string&) { return false; },
      [&](const std::string& bad) { return renameUnlessTaken(path, bad); });
}

}  // namespace vgps
