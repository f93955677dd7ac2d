#include "gps/talkers.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "gps/satellite_sentences.h"

namespace vgps {
namespace {

constexpr size_t kGpsTalker = 0;
// In the order of preference between equally complete ones, behind GP.
constexpr std::array<uint64_t, kTalkers> kTalkerKeys = {
    lettersKey("GP"), lettersKey("GN"), lettersKey("GL"), lettersKey("GA"),
    lettersKey("GB"), lettersKey("BD"), lettersKey("GQ")};
constexpr uint32_t kCombined = static_cast<uint32_t>(lettersKey("GN"));
enum : size_t { kRmcKind = 0, kGgaKind = 1, kGsaKind = 2, kOtherKind = 3 };

size_t talkerIndex(uint64_t key) {
  if (key == kTalkerKeys[kGpsTalker]) return kGpsTalker;
  return static_cast<size_t>(std::find(kTalkerKeys.begin(), kTalkerKeys.end(), key) -
                             kTalkerKeys.begin());
}

size_t kindOf(SentenceType type) {
  switch (type) {
    case SentenceType::rmc: return kRmcKind;
    case SentenceType::gga: return kGgaKind;
    case SentenceType::gsa: return kGsaKind;
    default: return kOtherKind;
  }
}

// Whether a GSA is about GPS satellites. Galileo satellites are numbered 1 to 36 too and would mark
// GPS satellites with the same numbers as used.
bool isGsaOfGps(const Sentence& sentence) {
  const int system = systemIdOf(sentence);
  return system == 0 || system == 1;
}

bool tellsFix(const Sentence& sentence, size_t kind) {
  switch (kind) {
    case kRmcKind: return sentence.fields.orEmpty(2) == "A";
    case kGgaKind: return sentence.fields.has(6) && sentence.fields.wholeNumber(6) != 0;
    default: return sentence.fields.orEmpty(2) != "1";
  }
}

}  // namespace

void TalkerTimeline::extend(Stretches& stretches, uint32_t tick) {
  if (stretches.empty() || tick - stretches.back().end >= kTalkerSilenceMs) {
    stretches.push_back({tick, tick});
  }
  stretches.back().end = tick;
}

void TalkerTimeline::listen(const Sentence& sentence, uint32_t tick) {
  const size_t kind = kindOf(sentence.name.type);
  const size_t talker = talkerIndex(sentence.name.talker);
  if (kind == kOtherKind || talker == kTalkers) return;
  if (talker != kGpsTalker && kind == kGsaKind && !isGsaOfGps(sentence)) return;
  Heard& heard = heard_[talker][kind];
  extend(heard.any, tick);
  if (tellsFix(sentence, kind)) extend(heard.withFix, tick);
}

bool TalkerTimeline::sends(size_t talker, size_t kind, bool withFix, uint32_t tick) const {
  const Heard& heard = heard_[talker][kind];
  const Stretches& stretches = withFix ? heard.withFix : heard.any;
  const auto after = std::upper_bound(stretches.begin(), stretches.end(), tick,
                                      [](uint32_t at, const Stretch& s) { return at < s.begin; });
  return after != stretches.begin() && tick <= std::prev(after)->end;
}

// Live, GP counts as heard at the beginning, so that it is waited for.
void TalkerTranslation::begin(uint32_t tick) {
  started_ = true;
  talkers_[kGpsTalker].fill({.ever = true, .everWithFix = true, .tick = tick, .fixTick = tick});
}

void TalkerTranslation::note(size_t talker, size_t kind, bool hasFix, uint32_t tick) {
  Heard& heard = talkers_[talker][kind];
  heard.ever = true;
  heard.tick = tick;
  if (hasFix) heard.everWithFix = true, heard.fixTick = tick;
  if (talker == kGpsTalker) gpsSpoke_[kind] = true;
}

TalkerVerdict TalkerTranslation::judge(const Sentence& sentence, uint32_t tick,
                                       TalkerSetting setting) {
  if (!started_) begin(tick);
  const size_t kind = kindOf(sentence.name.type);
  if (kind == kOtherKind) return {.forGps = sentence.forGps};
  const size_t talker = talkerIndex(sentence.name.talker);
  if (talker == kTalkers) return {.reason = LeftOutReason::unknownTalker};
  const bool ofGps = talker == kGpsTalker;
  if (!ofGps && kind == kGsaKind && !isGsaOfGps(sentence)) return {};
  const bool hasFix = tellsFix(sentence, kind);
  note(talker, kind, hasFix, tick);
  if (setting == TalkerSetting::always || (ofGps && hasFix)) return {.forGps = true};
  if (setting == TalkerSetting::never) {
    return ofGps ? TalkerVerdict{.forGps = true}
                 : TalkerVerdict{.reason = LeftOutReason::turnedOff};
  }
  const size_t speaker = speakerOf(kind, tick);
  if (speaker == talker) return {.forGps = true};
  // A GSA that is left out next to one of another system is not lost: the satellite view reads it.
  if (speaker == kTalkers || (kind == kGsaKind && !ofGps && sentence.name.talker != kCombined)) {
    return {};
  }
  if (speaker == kGpsTalker && !gpsSpoke_[kind]) return {.reason = LeftOutReason::waiting};
  return {.reason = LeftOutReason::another, .instead = static_cast<uint32_t>(kTalkerKeys[speaker])};
}

// Whether the talker has sent the kind lately. In a known log it is known when it stops, too.
bool TalkerTranslation::sends(size_t talker, size_t kind, bool withFix, uint32_t tick) const {
  if (known_) return known_->sends(talker, kind, withFix, tick);
  const Heard& heard = talkers_[talker][kind];
  // The sentence at hand is heard; 3 s after the one before the next talker takes its turn.
  return withFix ? heard.everWithFix && tick - heard.fixTick < kTalkerSilenceMs
                 : heard.ever && tick - heard.tick < kTalkerSilenceMs;
}

// How complete a talker is: position sentences before all. GP goes before everyone.
int TalkerTranslation::scoreOf(size_t talker, uint32_t tick) const {
  if (talker == kGpsTalker) return std::numeric_limits<int>::max();
  const auto points = [&](size_t kind) { return sends(talker, kind, false, tick) ? 1 : 0; };
  const int positions = points(kRmcKind) + points(kGgaKind);
  // Satellites of one other system, beside the positions of a receiver that sends them as another
  // talker, are not those that the fix numbers.
  if (positions == 0 && kTalkerKeys[talker] != kCombined) return 0;
  return 2 * positions + points(kGsaKind);
}

// The best talker that has sent the kind recently, preferably with a fix. kTalkers: none.
size_t TalkerTranslation::speakerOf(size_t kind, uint32_t tick) const {
  for (const bool withFix : {true, false}) {
    size_t best = kTalkers;
    int bestScore = 0;
    for (size_t i = 0; i < kTalkers; ++i) {
      if (!sends(i, kind, withFix, tick)) continue;
      const int score = scoreOf(i, tick);
      if (score <= bestScore) continue;
      best = i;
      bestScore = score;
    }
    if (best != kTalkers) return best;
  }
  return kTalkers;
}

}  // namespace vgps
