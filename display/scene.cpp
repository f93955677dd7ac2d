#include "display/scene.h"

#include "base/texts.h"

namespace vgps {
namespace {

constexpr int32_t kQualities = 9;  // plus one text for all others

}  // namespace

ReceiverState receiverState(bool connected, bool dataSeen, uint32_t dataAgeMs, int32_t fixStatus) {
  if (!connected) return ReceiverState::notConnected;
  if (!dataSeen || dataAgeMs > kSilentAfterMs) return ReceiverState::noData;
  return fixStatus == 0 ? ReceiverState::noFix : ReceiverState::fix;
}

Freshness freshnessOf(uint32_t ageMs) {
  if (ageMs > kExpiredAfterMs) return Freshness::expired;
  return ageMs > kStaleAfterMs ? Freshness::stale : Freshness::current;
}

std::string_view fixQualityText(int32_t fixStatus) {
  const bool known = fixStatus >= 0 && fixStatus < kQualities;
  return textOf(Text::qualityNone + static_cast<uint32_t>(known ? fixStatus : kQualities));
}

int32_t usedSatellites(const Scene& scene) {
  return usedSatellites(scene.satellites, scene.stats, scene.satellitesInUseKnown);
}

}  // namespace vgps
