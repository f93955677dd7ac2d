#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/exclusive_file.h"
#include "platform/files.h"

// Files that are written anew as a whole.
namespace vgps {

// Writes a file beside its place, under a name that nothing else has, and gives it its own name in
// the end: at no moment is there a half-written file of that name, and until then nothing has
// changed. Behind a link it is the file it leads to that becomes another one. What is no regular
// file (a device, a pipe, a folder) is never replaced.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path, const ExclusiveOpener& open = openExclusive);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  bool write(std::string_view bytes);
  uint64_t written() const { return written_; }

  // Everything is on the disk, though not yet in its place.
  bool flush();
  // Puts the file into its place, over what is there. False when nothing has changed.
  bool finish();
  // Gives it another name of the same folder, unless that is taken: then it may be tried again.
  RenameResult finishAs(const std::string& freePath);

 private:
  bool send(std::string_view bytes);

  std::string path_;    // behind all links
  std::string beside_;  // while it has no better name
  std::unique_ptr<ExclusiveFile> file_;
  std::string buffer_;
  uint64_t sent_ = 0;     // bytes
  uint64_t written_ = 0;  // with the buffer
  bool good_ = false;
};

// False when the disk did not take it; then nothing has changed.
bool writeWholeFile(const std::string& path, std::string_view text,
                    const ExclusiveOpener& open = openExclusive);

// Writes a file under a name that was free: `taken` when something has it. Nothing is ever
// replaced.
RenameResult writeFreeFile(const std::string& path, std::string_view text,
                           const ExclusiveOpener& open = openExclusive);

// The path without the last point of its name and what follows.
std::string withoutExtension(const std::string& path);

}  // namespace vgps
