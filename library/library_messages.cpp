#include "library/left_recording.h"
#include "library/track_library.h"
#include "track/whole_file.h"

namespace vgps {

std::string libraryMessage(LibraryResult result, const std::string& path) {
  switch (result) {
    case LibraryResult::done: return {};
    case LibraryResult::notThere: return "There is no such entry in " + path + ".";
    case LibraryResult::noName: return "A name is needed.";
    case LibraryResult::changed:
      return path + " was changed by another program. Look at it again and repeat the change.";
    case LibraryResult::inUse: return path + " is in use by a running program.";
    case LibraryResult::notALibrary:
      return path + " is another kind of file. Nothing was written over it.";
    case LibraryResult::unreadable: return "Cannot read " + path + ".";
    case LibraryResult::notKept:
      return path + " is damaged, and no copy of it could be kept. Nothing was written over it.";
    case LibraryResult::noFreeName:
      return "All names that could be tried are taken in " + path + ".";
    case LibraryResult::notWritten:
      return "Cannot write " + path +
             ". The disk may be full or write-protected; nothing was lost.";
  }
  return {};
}

std::string libraryMessage(LibraryState state, const std::string& path) {
  switch (state) {
    case LibraryState::whole:
    case LibraryState::missing: return {};
    case LibraryState::damaged:
      return path +
             " is damaged. What can be read of it is shown; before anything is written it is "
             "kept as " +
             badPathOf(path) + ".";
    case LibraryState::notALibrary: return path + " is another kind of file. It is left alone.";
    case LibraryState::unreadable: return "Cannot read " + path + ".";
  }
  return {};
}

std::string journalMessage(JournalResult result, const std::string& path) {
  switch (result) {
    case JournalResult::open:
    case JournalResult::missing: return {};
    case JournalResult::left: return "A recording was left in " + path + ".";
    case JournalResult::inUse: return path + " is in use by a running program.";
    case JournalResult::refused: return "Cannot read " + path + ".";
    case JournalResult::notAJournal:
      return "Nothing in " + path + " is readable. It is kept as " + badPathOf(path) + ".";
  }
  return {};
}

}  // namespace vgps
