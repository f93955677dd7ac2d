#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

// Files that one program holds alone and that must survive a power cut. A test puts a disk that is
// full in their place.
namespace vgps {

enum class FileOpening {
  opened,
  missing,  // there is no such file, or no such folder
  inUse,    // another program, or another part of this one, holds it
  refused,  // no permission, no room, or a folder of that name
};

enum class OpenMode {
  existing,   // a missing file stays missing
  orCreate,   // a missing file is made; one that is there keeps its bytes
  createNew,  // a file that was not there, under no link: `inUse` when the name is taken
};

// Closing gives the file free again. Calls may come from any thread, one at a time.
class ExclusiveFile {
 public:
  virtual ~ExclusiveFile() = default;
  virtual uint64_t size() = 0;  // bytes
  // The number of bytes read; fewer than asked for at the end of the file or after a fault.
  virtual size_t readAt(uint64_t offset, std::span<uint8_t> into) = 0;
  // False when not everything was taken; then some of it may have been.
  virtual bool writeAt(uint64_t offset, std::span<const uint8_t> bytes) = 0;
  virtual bool cutAt(uint64_t size) = 0;
  // Returns when the disk itself has everything that was written.
  virtual bool flush() = 0;
  // Deletes the file before anybody else can take it.
  virtual bool remove() = 0;
};

// Null when not opened. Chosen at link time.
std::unique_ptr<ExclusiveFile> openExclusive(const std::string& path, OpenMode mode,
                                             FileOpening& opening);

using ExclusiveOpener =
    std::function<std::unique_ptr<ExclusiveFile>(const std::string&, OpenMode, FileOpening&)>;

}  // namespace vgps
