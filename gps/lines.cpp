#include "gps/epoch.h"
#include "gps/gps_fix.h"
#include "gps/nmea.h"
#include "gps/stream_log.h"

// Handles complete lines one by one: logs, parses, and counts them and sends them to the user
// interface.
namespace vgps {

void GpsFix::processLines(std::string_view bytes) {
  writeStreamLog(state, bytes);
  if (state.inputProtocol == kSirfBinary) {
    processMessage(bytes);
  } else {
    // Splits at carriage returns. The character after each, normally a line feed, is skipped
    // whatever it is; an empty piece ends the chunk.
    while (!bytes.empty()) {
      const size_t end = bytes.find('\r');
      const std::string_view line = bytes.substr(0, end);
      if (line.empty()) break;
      processLine(line);
      if (end == std::string_view::npos || end + 2 >= bytes.size()) break;
      bytes.remove_prefix(end + 2);
    }
  }
  state.hooks.refreshDisplay();
}

void GpsFix::processLine(std::string_view line) {
  receiveTick = state.clock.tick();
  DecodedSentence decoded(line);
  Sentence& sentence = decoded.sentence;
  const auto talkers = static_cast<TalkerSetting>(state.options.talkers.load());
  if (state.talkers.standsInForGps(sentence, receiveTick, talkers)) sentence.forGps = true;
  const uint32_t said = parseRecord(decoded, state, sentence_);
  applyRecord(decoded, sentence_, said, *this);
  followBurst(state, sentence_.kind, receiveTick - previousReceiveTick);
  lastSentenceKind = sentence_.kind;
  previousReceiveTick = receiveTick;
  ticksWithoutData = 0;
  if (sentence.name.dollar) {
    state.stats.countLine(sentence, receiveTick);
  } else {
    ++state.stats.rejected;
  }
  state.view.take(decoded, receiveTick);
  state.lineSaid = said;
  state.hooks.lineReceived({line, nullptr, said});
}

void GpsFix::processMessage(std::string_view bytes) {
  const SirfMessage message = sirfMessageIn(bytes);
  ++state.stats.binary;
  state.lineSaid = 0;
  state.hooks.lineReceived({bytes, &message, 0});
}

}  // namespace vgps
