#include "display/scene.h"

namespace vgps {

ReceiverState receiverState(bool connected, bool dataSeen, uint32_t dataAgeMs, int32_t fixStatus) {
  if (!connected) return ReceiverState::notConnected;
  if (!dataSeen || dataAgeMs > kSilentAfterMs) return ReceiverState::noData;
  return fixStatus == 0 ? ReceiverState::noFix : ReceiverState::fix;
}

}  // namespace vgps
