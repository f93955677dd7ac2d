#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/exclusive_file.h"

namespace vgps {

// The new text of a file that is overwritten in place, kept in "NAME.redo" beside it until the
// writing is done. Whoever opens the file next finishes what a crash or a power cut interrupted.
// Only for the holder of the file's lock.
class RedoJournal {
 public:
  explicit RedoJournal(const std::string& file, const ExclusiveOpener& open = openExclusive);

  enum class SaveResult {
    kept,        // on the disk itself
    impossible,  // the folder takes no new files
    failed,      // the disk is full or faulty; nothing was kept
  };
  SaveResult keep(std::string_view text);

  // The text of an interrupted save. A journal that is cut short says nothing about the file, which
  // was not touched yet: it is removed.
  std::optional<std::string> interrupted();

  // The file is whole, with its new text or its old one.
  void remove();

 private:
  std::string path_;
  ExclusiveOpener open_;
};

}  // namespace vgps
