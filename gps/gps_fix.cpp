#include "gps/gps_fix.h"

#include "gps/stray_start.h"

namespace vgps {
namespace {

// In step mode, holding Shift steps on through the positions at which the simulation stands still.
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

void GpsFix::receiveLine(std::string_view bytes) {
  if (framing.carried() == 1 && framing.carriedStart() == '$' && bytes.starts_with('$')) {
    framing.dropCarried();  // the blocks were split inside "$$"
    ++state.stats.strayStarts;
  }
  if (framing.carried() == 0) {
    const std::string_view line = withoutStrayStart(bytes);
    if (line.size() != bytes.size()) ++state.stats.strayStarts;
    bytes = line;
  }
  onReceive(bytes);
}

void GpsFix::onReceive(std::string_view bytes) {
  if (framing.receive(bytes)) stepWhileShiftHeld(*this);
}

}  // namespace vgps
