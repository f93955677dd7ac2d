#include "base/texts.h"
#include "library/track_library.h"
#include "library/unfinished_recording.h"
#include "platform/files.h"

namespace vgps {
namespace {

// Numbers of texts.

Text textFor(LibraryResult result) {
  switch (result) {
    case LibraryResult::done: break;
    case LibraryResult::notFound: return Text::noSuchEntry;
    case LibraryResult::noName: return Text::nameNeeded;
    case LibraryResult::changed: return Text::changedElsewhere;
    case LibraryResult::inUse: return Text::inUse;
    case LibraryResult::notALibrary: return Text::anotherKindKept;
    case LibraryResult::unreadable: return Text::unreadable;
    case LibraryResult::backupFailed: return Text::noCopyKept;
    case LibraryResult::noFreeName: return Text::noFreeName;
    case LibraryResult::notWritten: return Text::notWritten;
  }
  return Text{};
}

Text textFor(LibraryState state) {
  switch (state) {
    case LibraryState::whole:
    case LibraryState::missing: break;
    case LibraryState::damaged: return Text::damaged;
    case LibraryState::notALibrary: return Text::anotherKindLeftAlone;
    case LibraryState::unreadable: return Text::unreadable;
  }
  return Text{};
}

}  // namespace

std::string libraryMessage(LibraryResult result, const std::string& path) {
  if (result == LibraryResult::unreadable && isNotAFile(path)) {
    return textWith(Text::notAFile, path);
  }
  return textWith(textFor(result), path);
}

std::string libraryMessage(LibraryState state, const std::string& path) {
  if (state == LibraryState::unreadable && isNotAFile(path)) {
    return textWith(Text::notAFile, path);
  }
  return textWith(textFor(state), path);
}

std::string journalMessage(JournalResult result, const std::string& path,
                           const std::string& backupPath) {
  switch (result) {
    case JournalResult::open:
    case JournalResult::missing: break;
    case JournalResult::left: return textWith(Text::recordingFound, path);
    case JournalResult::inUse: return textWith(Text::inUse, path);
    case JournalResult::notAFile: return textWith(Text::notAFile, path);
    case JournalResult::refused: return textWith(Text::unreadable, path);
    case JournalResult::notAJournal:
      return backupPath.empty() ? textWith(Text::journalUnreadable, path)
                                : textWith(Text::journalUnreadableKept, path, backupPath);
  }
  return {};
}

}  // namespace vgps
