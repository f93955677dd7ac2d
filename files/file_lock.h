#pragma once

#include <memory>
#include <string>

#include "platform/exclusive_file.h"

namespace vgps {

// The path of a document's lock: next to the real file, so that every link to the document shares
// it.
std::string lockPathOf(const std::string& document);

// A lock file, so that two programs do not overwrite each other's changes. The system releases it
// when the program ends.
class FileLock {
 public:
  // Waits up to `waitMs` for another program to release the lock.
  FileLock(const std::string& path, const ExclusiveOpener& open, int waitMs);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();
  // Returns `opened` if it is locked.
  FileOpening state() const { return state_; }

 private:
  std::unique_ptr<ExclusiveFile> file_;
  FileOpening state_ = FileOpening::refused;
};

}  // namespace vgps
