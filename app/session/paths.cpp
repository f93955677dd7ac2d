#include "app/session/paths.h"

#include "library/journal.h"
#include "platform/files.h"

namespace vgps {

AppPaths pathsOf(const std::string& programFolder) {
  return {.folder = programFolder,
          .settings = pathIn(programFolder, "vgps.xml"),
          .library = pathIn(programFolder, "tracks.xml"),
          .journal = pathIn(programFolder, kJournalName)};
}

}  // namespace vgps
