#pragma once

#include <cstdint>

namespace vgps {

struct GpsState;

// A receiver sends the sentences of one epoch in a burst. With the automatic setting the first RMC
// or GGA of a burst leads it; `epochSentenceKind` is 0 on that line and on every other kind of
// line, and on a following RMC or GGA it is the leader's kind. `sinceLastLine`: milliseconds.
void followBurst(GpsState& state, int32_t kind, uint32_t sinceLastLine);

// Whether a sentence of `kind` completes the fix of an epoch: RMC and GGA do, those only that
// `epochSentenceKind` (bits 1 RMC, 2 GGA) names when it is not 0. So a burst is offered once.
bool closesEpoch(int32_t kind, int32_t epochSentenceKind);

}  // namespace vgps
