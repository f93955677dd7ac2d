#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/exclusive_file.h"

namespace vgps {

// Keeps the new text of a file that is overwritten in place in "NAME.redo" next to it until the
// file is written. Whoever opens the file next completes a save that a crash or power failure
// interrupted. Use this only while holding the file's lock.
class RedoJournal {
 public:
  explicit RedoJournal(const std::string& file, const ExclusiveOpener& open = openExclusive);

  enum class SaveResult {
    kept,        // on the disk itself
    impossible,  // the folder takes no new files
    failed,      // the disk is full or faulty; nothing was kept
  };
  SaveResult keep(std::string_view text);

  // Returns the text of an interrupted save. A truncated journal is deleted: the file itself had
  // not been touched yet.
  std::optional<std::string> interrupted();

  // Call this when the file is complete, with its new or old text.
  void remove();

 private:
  std::string path_;
  ExclusiveOpener open_;
};

}  // namespace vgps
