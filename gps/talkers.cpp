#include "gps/talkers.h"

#include <algorithm>

#include "gps/sentence_name.h"

namespace vgps {
namespace {

// In the order of preference between equally complete ones.
constexpr std::array<uint64_t, 6> kTalkerKeys = {lettersKey("GN"), lettersKey("GL"),
                                                 lettersKey("GA"), lettersKey("GB"),
                                                 lettersKey("BD"), lettersKey("GQ")};
constexpr std::array<uint64_t, 3> kKindKeys = {lettersKey("RMC"), lettersKey("GGA"),
                                               lettersKey("GSA")};
constexpr uint64_t kGps = lettersKey("GP");
enum : int { kRmcKind = 0, kGgaKind = 1, kGsaKind = 2 };

// So long after the last position sentence of GP another talker takes its place; and so long a
// sentence kind counts as something that a talker sends.
constexpr uint32_t kSilenceMs = 3000;

template <size_t N>
int positionIn(const std::array<uint64_t, N>& keys, uint64_t key) {
  const auto found = std::find(keys.begin(), keys.end(), key);
  return found == keys.end() ? -1 : static_cast<int>(found - keys.begin());
}

// NMEA 4.10 adds the number of the satellite system behind the three DOP values.
// $GNGSA,mode,fix,id x 12,pdop,hdop,vdop,system*hh
constexpr int kSystemField = 18;

// Whether a GSA speaks of GPS satellites. Those of Galileo are numbered 1 to 36 as well and would
// mark the GPS satellites of the same numbers as used.
bool isGsaOfGps(std::string_view line) {
  for (int field = 0; field < kSystemField; ++field) {
    const size_t comma = line.find(',');
    if (comma == std::string_view::npos) return true;
    line.remove_prefix(comma + 1);
  }
  const std::string_view number = line.substr(0, line.find_first_of(",*\r\n"));
  return number.empty() || number == "1";
}

}  // namespace

std::string_view TalkerTranslation::translate(std::string_view line, uint32_t tick,
                                              TalkerSetting setting) {
  if (!started_) gpsTick_ = tick;
  started_ = true;
  if (line.size() < 6 || line[0] != '$' || setting == TalkerSetting::never) return line;
  const int kind = positionIn(kKindKeys, lettersKey(line.substr(3, 3)));
  if (kind < 0) return line;
  if (talkerOf(line) == kGps) {
    if (kind != kGsaKind) gpsTick_ = tick;
    return line;
  }
  const int talker = positionIn(kTalkerKeys, talkerOf(line));
  if (talker < 0 || (kind == kGsaKind && !isGsaOfGps(line))) return line;
  const bool wanted =
      setting == TalkerSetting::always || translateAutomatically(talker, kind, tick);
  return wanted ? asGps(line) : line;
}

bool TalkerTranslation::translateAutomatically(int talker, int kind, uint32_t tick) {
  talkers_[static_cast<size_t>(talker)].kinds[static_cast<size_t>(kind)] = {true, tick};
  return tick - gpsTick_ >= kSilenceMs && mostCompleteTalker(tick) == talker;
}

// The talker with the most kinds of sentences, position sentences before all; -1 when none has
// sent a position lately.
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

std::string_view TalkerTranslation::asGps(std::string_view line) {
  text_.assign(line);
  text_[1] = 'G';
  text_[2] = 'P';
  return text_;
}

}  // namespace vgps
