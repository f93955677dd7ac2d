#include "gps/epoch.h"
#include "gps/gps_fix.h"
#include "gps/stream_log.h"

// Whole lines, one after the other: logged, parsed, counted and handed to the user interface.
namespace vgps {

void GpsFix::processLines(std::string_view bytes) {
  writeStreamLog(state, bytes);
  if (state.inputProtocol == kSirfBinary) {
    processMessage(bytes);
  } else {
    // Cut at carriage returns; the character behind each, the line feed, is skipped whatever it
    // is, and an empty piece ends the chunk.
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
  const auto talkers = static_cast<TalkerSetting>(state.options.talkers.load());
  const std::string_view text = state.talkers.translate(line, receiveTick, talkers);
  const bool accepted = parseSentence(text, sentence_, true);
  followBurst(state, sentence_.kind, receiveTick - previousReceiveTick);
  lastSentenceKind = sentence_.kind;
  previousReceiveTick = receiveTick;
  ticksWithoutData = 0;
  if (accepted) {
    state.stats.countLine(line, text, receiveTick);
  } else {
    ++state.stats.rejected;
  }
  state.view.take(line, receiveTick);
  state.hooks.lineReceived({line, nullptr});
}

void GpsFix::processMessage(std::string_view bytes) {
  const auto* raw = reinterpret_cast<const uint8_t*>(bytes.data());
  const auto word = [raw](size_t at) { return static_cast<uint16_t>(raw[at] << 8 | raw[at + 1]); };
  SirfMessage message;
  message.start = word(0);
  message.length = word(2);
  message.payload = {raw + 4, message.length};
  message.checksum = word(4 + size_t{message.length});
  message.end = word(6 + size_t{message.length});
  ++state.stats.binary;
  state.hooks.lineReceived({bytes, &message});
}

}  // namespace vgps
