#include "gps/gps_fix.h"

namespace vgps {
namespace {

// In step mode a held Shift key walks on through the places where the simulation stands still.
void stepWhileShiftHeld(GpsFix& fix) {
  if (!fix.simulate || fix.state.simulation.mode() != SimMode::tapping) return;
  if (fix.speedKmh == 0 && fix.state.hooks.shiftHeld()) fix.state.hooks.pressSpace();
}

}  // namespace

bool GpsFix::parseSentence(std::string_view text, NmeaSentence& out, bool apply) {
  const DecodedSentence decoded(text);
  const uint32_t said = parseRecord(decoded, state, out);
  if (apply) applyRecord(decoded, out, said, *this);
  return decoded.sentence.name.dollar;
}

void GpsFix::onReceive(std::string_view bytes) {
  if (framing.receive(bytes)) stepWhileShiftHeld(*this);
}

}  // namespace vgps
