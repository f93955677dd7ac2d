#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/exclusive_file.h"
#include "platform/files.h"

// Writing whole files.
namespace vgps {

// Writes a temporary file next to the target and renames it at the end, so that a half-written file
// never appears under the target's name. Follows links and replaces the file they refer to. Never
// replaces anything but a regular file (no device, pipe, or folder). Temporary files that killed
// programs left in the folder more than a day ago are removed.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path, const ExclusiveOpener& open = openExclusive);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  bool write(std::string_view bytes);
  // Over bytes that were written, all of them; archives complete their headers so.
  bool writeOver(uint64_t offset, std::string_view bytes);
  uint64_t written() const { return written_; }

  // Flushes everything to disk, still under the temporary name.
  bool flush();
  // Renames the file to its target and replaces what is there. Returns false if nothing was
  // changed.
  bool finish();
  // Why something failed: ": permission denied" behind "cannot write NAME"; may be empty.
  std::string reason() const;
  // Renames it to another name in the same folder unless that is taken; then it may be tried again.
  RenameResult finishAs(const std::string& freePath);

 private:
  bool send(std::string_view bytes);

  std::string path_;           // after following links
  std::string temporaryPath_;  // the temporary file
  std::unique_ptr<ExclusiveFile> file_;
  std::string buffer_;
  uint64_t sent_ = 0;     // bytes
  uint64_t written_ = 0;  // including the buffer
  bool good_ = false;
  FileFault fault_ = FileFault::unknown;
};

// Returns false, with nothing changed, if the file could not be written.
bool writeWholeFile(const std::string& path, std::string_view text,
                    const ExclusiveOpener& open = openExclusive);

// Writes a file only if its name is unused; returns `taken` otherwise. Never replaces anything.
RenameResult writeFreeFile(const std::string& path, std::string_view text,
                           const ExclusiveOpener& open = openExclusive);

// The path without its extension.
std::string withoutExtension(const std::string& path);

}  // namespace vgps
