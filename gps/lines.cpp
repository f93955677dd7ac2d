#include "gps/lines.h"

#include "gps/epoch.h"
#include "gps/gps_fix.h"
#include "gps/nmea.h"
#include "gps/sirf.h"
#include "gps/stream_log.h"

namespace vgps {

void Lines::process(std::string_view bytes) {
  GpsState& state = fix_.state;
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

void Lines::processLine(std::string_view line) {
  GpsState& state = fix_.state;
  fix_.receiveTick = state.clock.tick();
  DecodedSentence decoded(line);
  Sentence& sentence = decoded.sentence;
  const auto talkers = static_cast<TalkerSetting>(state.options.talkers.load());
  const TalkerVerdict verdict = state.talkers.judge(sentence, fix_.receiveTick, talkers);
  sentence.forGps = verdict.forGps;
  const uint32_t said = parseRecord(decoded, state, sentence_);
  applyRecord(decoded, sentence_, said, fix_);
  if ((said & kSaidPosition) != 0) {
    const bool doubtful = sentence.checksum() == Checksum::wrong;
    fix_.unknown =
        (fix_.unknown & ~kDoubtfulPosition) | (doubtful ? uint32_t{kDoubtfulPosition} : 0);
  }
  followBurst(state, sentence_.kind, fix_.receiveTick - fix_.previousReceiveTick);
  fix_.lastSentenceKind = sentence_.kind;
  fix_.previousReceiveTick = fix_.receiveTick;
  fix_.ticksWithoutData = 0;
  const bool leftOut = verdict.reason != LeftOutReason::none && !sentence.name.isProprietary();
  if (leftOut) state.stats.countLeftOut(sentence.name, verdict);
  if (sentence.name.dollar) {
    state.stats.countLine(sentence, fix_.receiveTick);
  } else {
    ++state.stats.rejected;
  }
  state.view.take(decoded, fix_.receiveTick);
  state.lineSaid = said;
  state.hooks.lineReceived({line, nullptr, said});
}

void Lines::processMessage(std::string_view bytes) {
  GpsState& state = fix_.state;
  const SirfMessage message = sirfMessageIn(bytes);
  ++state.stats.binary;
  state.lineSaid = 0;
  state.hooks.lineReceived({bytes, &message, 0});
}

}  // namespace vgps
