#pragma once

#include "track/options.h"
#include "track/track.h"

namespace vgps {

// Thins a track in two passes. The first removes every point so close to its neighbors that the
// three distances between them add up to at most `normalizeMeters`. The second removes every point
// where the course changes by at most the angle threshold (the track's own or, if that is 0, the
// option's), except points with a mark, a status, or an attachment. The first and the last point
// always stay. Attachments of a removed point move to the point before it.
void normalize(Track& track, const RecordingOptions& options);

}  // namespace vgps
