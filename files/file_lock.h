#pragma once

#include <memory>
#include <string>

#include "platform/exclusive_file.h"

namespace vgps {

// The lock of a document: beside the file itself, so that it is one under every link to it.
std::string lockPathOf(const std::string& document);

// A file that is held while others are changed, so that two programs do not write over each other's
// change. The system releases it when its program ends.
class FileLock {
 public:
  // Waits so long for a program that holds it.
  FileLock(const std::string& path, const ExclusiveOpener& open, int waitMs);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();
  // `opened` when it is held.
  FileOpening state() const { return state_; }

 private:
  std::unique_ptr<ExclusiveFile> file_;
  FileOpening state_ = FileOpening::refused;
};

}  // namespace vgps
