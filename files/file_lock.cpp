#include "files/file_lock.h"

#include <chrono>

#include "files/retry.h"
#include "platform/files.h"

namespace vgps {

std::string lockPathOf(const std::string& document) { return resolveLinks(document) + ".lock"; }

FileLock::FileLock(const std::string& path, const ExclusiveOpener& open, int waitMs) {
  constexpr int kPauseMs = 20;
  retry(waitMs / kPauseMs + 1, std::chrono::milliseconds(kPauseMs), [&] {
    file_ = open(path, OpenMode::orCreate, state_);
    return file_ != nullptr || state_ != FileOpening::inUse;
  });
}

FileLock::~FileLock() {
  // A file with contents is not a lock file of ours.
  if (file_ != nullptr && file_->size() == 0) file_->remove();
}

}  // namespace vgps
