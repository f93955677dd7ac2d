#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/date_time.h"
#include "library/track_store.h"

// Recordings that were not wanted when they ended. Their journals stay for a while, because a No is
// quickly pressed: "discarded-20100705-070304.journal" beside the settings, named by the UTC of the
// computer. Everything that opens an unfinished recording opens these.
namespace vgps {

struct DiscardedRecording {
  std::string path;
  int64_t utc = 0;  // when it was discarded, milliseconds since 1970
  uint64_t bytes = 0;
};

// Those in the folder, the newest first.
std::vector<DiscardedRecording> discardedRecordings(const std::string& folder);

// Its points; none when nothing in it can be read.
TrackSummary summaryOfDiscarded(const DiscardedRecording& recording);

// A free name for one more; empty if all that may be tried are taken.
std::string freeDiscardedPath(const std::string& folder, const DateTime& utc);

// Deletes what is older than 30 days, more than the newest 20, or beyond 200 MB; never the newest.
void pruneDiscarded(const std::string& folder, const DateTime& utc);

}  // namespace vgps
