#include "base/texts.h"
#include "library/left_recording.h"
#include "library/track_library.h"

namespace vgps {
namespace {

// Numbers of texts.
constexpr uint32_t kNotThere = 950;
constexpr uint32_t kNoName = 951;
constexpr uint32_t kChanged = 952;
constexpr uint32_t kInUse = 953;
constexpr uint32_t kNotOverwritten = 954;
constexpr uint32_t kUnreadable = 955;
constexpr uint32_t kNotKept = 956;
constexpr uint32_t kNoFreeName = 957;
constexpr uint32_t kNotWritten = 958;
constexpr uint32_t kDamaged = 959;
constexpr uint32_t kLeftAlone = 960;
constexpr uint32_t kRecordingLeft = 964;
constexpr uint32_t kNoJournalKept = 965;
constexpr uint32_t kNoJournal = 966;

uint32_t numberOf(LibraryResult result) {
  switch (result) {
    case LibraryResult::done: break;
    case LibraryResult::notThere: return kNotThere;
    case LibraryResult::noName: return kNoName;
    case LibraryResult::changed: return kChanged;
    case LibraryResult::inUse: return kInUse;
    case LibraryResult::notALibrary: return kNotOverwritten;
    case LibraryResult::unreadable: return kUnreadable;
    case LibraryResult::notKept: return kNotKept;
    case LibraryResult::noFreeName: return kNoFreeName;
    case LibraryResult::notWritten: return kNotWritten;
  }
  return 0;
}

uint32_t numberOf(LibraryState state) {
  switch (state) {
    case LibraryState::whole:
    case LibraryState::missing: break;
    case LibraryState::damaged: return kDamaged;
    case LibraryState::notALibrary: return kLeftAlone;
    case LibraryState::unreadable: return kUnreadable;
  }
  return 0;
}

}  // namespace

std::string libraryMessage(LibraryResult result, const std::string& path) {
  return textWith(numberOf(result), path);
}

std::string libraryMessage(LibraryState state, const std::string& path) {
  return textWith(numberOf(state), path);
}

std::string journalMessage(JournalResult result, const std::string& path,
                           const std::string& keptAs) {
  switch (result) {
    case JournalResult::open:
    case JournalResult::missing: break;
    case JournalResult::left: return textWith(kRecordingLeft, path);
    case JournalResult::inUse: return textWith(kInUse, path);
    case JournalResult::refused: return textWith(kUnreadable, path);
    case JournalResult::notAJournal:
      return keptAs.empty() ? textWith(kNoJournal, path) : textWith(kNoJournalKept, path, keptAs);
  }
  return {};
}

}  // namespace vgps
