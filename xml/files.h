#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vgps {

// How documents access the disk, as function pointers so that a test can simulate disk errors.
// Paths are UTF-8. A file is the pointer that `open` returned, null if the system refused.
struct XmlFiles {
  enum class Access { read, overwrite };

  void* (*open)(const std::string& path, Access access) = nullptr;
  // Returns the number of bytes moved; fewer than requested at the end of the file or after an
  // error.
  size_t (*read)(void* file, char* to, size_t size) = nullptr;
  // Overwrites the file from its start. Writes the part that extends the file first, so that a full
  // disk leaves the old text intact.
  size_t (*write)(void* file, const char* from, size_t size) = nullptr;
  // Truncates an overwritten file after the written bytes. Returns false if any error occurred
  // since the file was opened; the file then has its old size. `file` is invalid in any case.
  bool (*close)(void* file) = nullptr;
  // The space available to overwrite a file: free space plus its current size. UINT64_MAX if
  // unknown.
  uint64_t (*roomOnDisk)(const std::string& path) = nullptr;
  uint64_t (*roomInMemory)() = nullptr;
};

// Access to the real file system.
const XmlFiles& systemFiles();

}  // namespace vgps
