#pragma once

#include "track/options.h"
#include "track/track.h"

namespace vgps {

// Thinning. First every point goes that lies so close to its neighbours that the three distances
// between them add up to no more than the options' metres; then every point that turns the course
// by no more than the angle threshold (the track's own, or the option's where that is 0), except
// points with a mark, a status or an attachment. The first and the last point stay. Attachments of
// a removed point move to the one before it.
void normalize(Track& track, const RecordingOptions& options);

}  // namespace vgps
