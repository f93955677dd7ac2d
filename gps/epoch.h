#pragma once

#include <cstdint>

namespace vgps {

struct GpsState;

// A receiver sends the sentences of one epoch in a burst. With the automatic setting, the first RMC
// or GGA of a burst leads it. Sets `epochSentenceKind` to the leader's kind on a following RMC or
// GGA, and to 0 on the leader and on any other line. `sinceLastLine` is in milliseconds.
void followBurst(GpsState& state, int32_t kind, uint32_t sinceLastLine);

// Whether a sentence of `kind` completes the fix of an epoch: RMC and GGA do, or only those
// selected by `epochSentenceKind` (bits 1 RMC, 2 GGA) if that is not 0. This way each burst is
// offered once.
bool closesEpoch(int32_t kind, int32_t epochSentenceKind);

}  // namespace vgps
