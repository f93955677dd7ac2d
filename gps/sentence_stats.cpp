#include "gps/sentence_stats.h"

#include "gps/nmea.h"
#include "gps/sentence_name.h"

namespace vgps {
namespace {

size_t index(CountedKind kind) { return static_cast<size_t>(kind); }

}  // namespace

void RateMeter::count(uint32_t tick) {
  if (inWindow_ == 0 && lastWindowRate_ < 0) windowStart_ = tick;
  const uint32_t elapsed = tick - windowStart_;
  if (elapsed >= kWindowMs) {
    lastWindowRate_ = inWindow_ * 1000.0 / elapsed;
    windowStart_ = tick;
    inWindow_ = 0;
  }
  ++inWindow_;
  lastTick_ = tick;
}

double RateMeter::perSecond() const {
  if (lastWindowRate_ >= 0) return lastWindowRate_;
  const uint32_t elapsed = lastTick_ - windowStart_;
  return elapsed == 0 ? 0 : (inWindow_ - 1) * 1000.0 / elapsed;
}

uint64_t SentenceStats::total() const {
  uint64_t sum = binary;
  for (const uint64_t count : counts) sum += count;
  return sum;
}

CountedKind countedKind(std::string_view sentence) {
  if (sentence.size() < 6) return CountedKind::other;
  switch (lettersKey(sentence.substr(0, 6))) {
    case lettersKey("$GPRMC"): return CountedKind::rmc;
    case lettersKey("$GPGGA"): return CountedKind::gga;
    case lettersKey("$GPGSA"): return CountedKind::gsa;
    case lettersKey("$GPGSV"): return CountedKind::gsv;
    default: return CountedKind::other;
  }
}

void SentenceStats::countLine(std::string_view raw, std::string_view parsed, uint32_t tick) {
  const size_t kind = index(countedKind(parsed));
  ++counts[kind];
  rates[kind].count(tick);
  switch (checkNmeaChecksum(raw)) {
    case Checksum::right: ++checksumRight; break;
    case Checksum::wrong: ++checksumWrong; break;
    case Checksum::absent: ++checksumAbsent; break;
  }
}

}  // namespace vgps
