#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/date_time.h"
#include "library/track_store.h"

// Recordings that the user discarded when they ended. Their journals are kept for a while, because
// No is quickly pressed by mistake: "discarded-20100705-070304.journal" next to the settings, named
// after the computer's UTC time. Anything that opens an unfinished recording can open them.
namespace vgps {

struct DiscardedRecording {
  std::string path;
  int64_t utc = 0;  // when it was discarded, milliseconds since 1970
  uint64_t bytes = 0;
};

// The recordings in the folder, newest first.
std::vector<DiscardedRecording> discardedRecordings(const std::string& folder);

// Loads the points; none if nothing is readable.
TrackSummary summaryOfDiscarded(const DiscardedRecording& recording);

// An unused name for another one; empty if all names to try are taken.
std::string freeDiscardedPath(const std::string& folder, const DateTime& utc);

// Deletes recordings older than 30 days, beyond the newest 20, or beyond 200 MB; never the newest
// one.
void pruneDiscarded(const std::string& folder, const DateTime& utc);

}  // namespace vgps
