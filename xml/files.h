#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vgps {

// How documents reach the disk: functions to fill in, so that a test can let the disk fail. Paths
// are UTF-8. A file is what `open` gave, null when the system refused.
struct XmlFiles {
  enum class Access { read, overwrite };

  void* (*open)(const std::string& path, Access access) = nullptr;
  // The number of bytes moved; less than asked for at the end of the file or after a fault.
  size_t (*read)(void* file, char* to, size_t size) = nullptr;
  // Over what the file held, from its start. What the file must grow by is written first: a disk
  // that has no room for it then leaves the old text whole.
  size_t (*write)(void* file, const char* from, size_t size) = nullptr;
  // Cuts an overwritten file behind what was written. False when the system reported a fault since
  // the file was opened; it then has its old size. `file` is gone in any case.
  bool (*close)(void* file) = nullptr;
  // How much an overwritten file may take: what is free and what it takes now. UINT64_MAX when
  // unknown.
  uint64_t (*roomOnDisk)(const std::string& path) = nullptr;
  uint64_t (*roomInMemory)() = nullptr;
};

// The system's files.
const XmlFiles& systemFiles();

}  // namespace vgps
