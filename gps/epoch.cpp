#include "gps/epoch.h"

#include "gps/gps_fix.h"

namespace vgps {
namespace {

constexpr uint32_t kBurstGapMs = 100;

}  // namespace

void followBurst(GpsState& state, int32_t kind, uint32_t sinceLastLine) {
  const int32_t setting = state.options.epochSentenceSetting;
  state.epochSentenceKind = setting;
  if (setting != 0 || (kind != kRmc && kind != kGga)) return;
  if (sinceLastLine > kBurstGapMs) {
    state.leadingSentenceKind = kind;
  } else if (state.leadingSentenceKind != kNoSentence) {
    state.epochSentenceKind = state.leadingSentenceKind == kGga ? kGga : kRmc;
  }
}

bool closesEpoch(int32_t kind, int32_t epochSentenceKind) {
  if (kind != kRmc && kind != kGga) return false;
  return epochSentenceKind == 0 || (kind & epochSentenceKind) != 0;
}

}  // namespace vgps
