#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

// Files that only one program may have open and that must survive a power failure. Tests replace
// them to simulate a full disk.
namespace vgps {

enum class FileOpening {
  opened,
  missing,   // no such file or folder
  inUse,     // open in another program, or elsewhere in this one
  refused,   // no permission, or no space
  notAFile,  // a folder, pipe, or device, which is not opened
};

enum class OpenMode {
  existing,   // a missing file is not created
  orCreate,   // a missing file is created; an existing one keeps its contents
  createNew,  // only creates: `inUse` if a file or link has that name
};

// Closing the file releases it. Calls may come from any thread, one at a time.
class ExclusiveFile {
 public:
  virtual ~ExclusiveFile() = default;
  virtual uint64_t size() = 0;  // bytes
  // Returns the number of bytes read; fewer than requested at the end of the file or after an
  // error.
  virtual size_t readAt(uint64_t offset, std::span<uint8_t> into) = 0;
  // Returns false if not all bytes were written; some of them may have been.
  virtual bool writeAt(uint64_t offset, std::span<const uint8_t> bytes) = 0;
  virtual bool cutAt(uint64_t size) = 0;
  // Returns when everything written is physically on the disk.
  virtual bool flush() = 0;
  // Deletes the file before another program can open it.
  virtual bool remove() = 0;
};

// Returns null if the file was not opened; `opening` tells why. Chosen at link time.
std::unique_ptr<ExclusiveFile> openExclusive(const std::string& path, OpenMode mode,
                                             FileOpening& opening);

using ExclusiveOpener =
    std::function<std::unique_ptr<ExclusiveFile>(const std::string&, OpenMode, FileOpening&)>;

}  // namespace vgps
