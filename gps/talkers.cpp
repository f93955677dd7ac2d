#include "gps/talkers.h"

#include <algorithm>

#include "gps/satellite_sentences.h"

namespace vgps {
namespace {

// In order of preference among equally complete talkers.
constexpr std::array<uint64_t, 6> kTalkerKeys = {lettersKey("GN"), lettersKey("GL"),
                                                 lettersKey("GA"), lettersKey("GB"),
                                                 lettersKey("BD"), lettersKey("GQ")};
enum : int { kRmcKind = 0, kGgaKind = 1, kGsaKind = 2 };

// How long after GP's last position sentence another talker takes its place, and how long a kind of
// sentence counts as sent by a talker.
constexpr uint32_t kSilenceMs = 3000;

int talkerIndex(uint64_t key) {
  const auto* const found = std::find(kTalkerKeys.begin(), kTalkerKeys.end(), key);
  return found == kTalkerKeys.end() ? -1 : static_cast<int>(found - kTalkerKeys.begin());
}

int kindOf(SentenceType type) {
  switch (type) {
    case SentenceType::rmc: return kRmcKind;
    case SentenceType::gga: return kGgaKind;
    case SentenceType::gsa: return kGsaKind;
    default: return -1;
  }
}

// Whether a GSA is about GPS satellites; since NMEA 4.10 it names the system. Galileo satellites
// are numbered 1 to 36 too and would mark GPS satellites with the same numbers as used.
bool isGsaOfGps(const Sentence& sentence) {
  const std::string_view field = sentence.fields.orEmpty(GsaReport::kSystemField);
  const std::string_view number = field.substr(0, field.find_first_of("*\r\n"));
  return number.empty() || number == "1";
}

}  // namespace

bool TalkerTranslation::standsInForGps(const Sentence& sentence, uint32_t tick,
                                       TalkerSetting setting) {
  if (!started_) gpsTick_ = tick;
  started_ = true;
  const int kind = kindOf(sentence.name.type);
  if (kind < 0 || setting == TalkerSetting::never) return false;
  if (sentence.name.talker == SentenceName::kGps) {
    if (kind != kGsaKind) gpsTick_ = tick;
    return false;
  }
  const int talker = talkerIndex(sentence.name.talker);
  if (talker < 0 || (kind == kGsaKind && !isGsaOfGps(sentence))) return false;
  return setting == TalkerSetting::always || standsInNow(talker, kind, tick);
}

bool TalkerTranslation::standsInNow(int talker, int kind, uint32_t tick) {
  talkers_[static_cast<size_t>(talker)].kinds[static_cast<size_t>(kind)] = {true, tick};
  return tick - gpsTick_ >= kSilenceMs && mostCompleteTalker(tick) == talker;
}

// The talker that sends the most kinds of sentences, preferring position sentences; -1 if none has
// sent a position recently.
int TalkerTranslation::mostCompleteTalker(uint32_t tick) const {
  int best = -1;
  int bestScore = 0;
  for (size_t i = 0; i < talkers_.size(); ++i) {
    const auto sends = [&](int kind) {
      const Heard& heard = talkers_[i].kinds[static_cast<size_t>(kind)];
      return heard.ever && tick - heard.tick <= kSilenceMs ? 1 : 0;
    };
    const int positions = sends(kRmcKind) + sends(kGgaKind);
    const int score = positions == 0 ? 0 : 2 * positions + sends(kGsaKind);
    if (score <= bestScore) continue;
    bestScore = score;
    best = static_cast<int>(i);
  }
  return best;
}

}  // namespace vgps
