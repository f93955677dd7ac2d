#include <algorithm>
#include <cstring>
#include <memory>
#include <set>
#include <vector>

#include "fuzz/quiet_hooks.h"
#include "library/journal_format.h"

// Any bytes as a journal, and a good journal with these bytes as damage.
namespace {

using namespace vgps;

TrackPoint numberedPoint(uint32_t number) {
  TrackPoint point;
  point.longitude = 11.5 + number * 1e-4;
  point.latitude = 48.1;
  point.m = number;
  return point;
}

// Going on where the good part ends must lose none of it.
void continueJournal(std::vector<uint8_t> bytes, const JournalContents& contents) {
  bytes.resize(contents.goodEnd);
  if (contents.goodEnd == 0) writeJournalHeader(bytes);
  writeJournalPoint(numberedPoint(4711), bytes);
  const JournalContents longer = readJournal(bytes);
  require(longer.points.size() == contents.points.size() + 1);
  require(longer.points.back().m == 4711);
  require(longer.goodEnd == bytes.size());
}

void checkAnything(std::span<const uint8_t> bytes) {
  const JournalContents contents = readJournal(bytes);
  require(contents.goodEnd <= bytes.size());
  require(contents.points.size() * kJournalPoint <= contents.goodEnd);
  continueJournal({bytes.begin(), bytes.end()}, contents);
}

// Three bytes are one wound: where, and what to flip there.
void checkDamage(std::span<const uint8_t> wounds) {
  constexpr uint32_t kPoints = 6;
  std::vector<uint8_t> journal;
  writeJournalHeader(journal);
  for (uint32_t i = 0; i < kPoints; ++i) writeJournalPoint(numberedPoint(i), journal);
  const std::vector<uint8_t> whole = journal;
  for (; wounds.size() >= 3; wounds = wounds.subspan(3)) {
    journal[(wounds[0] * 256U + wounds[1]) % journal.size()] ^= wounds[2];
  }
  std::set<uint32_t> unharmed;
  for (uint32_t i = 0; i < kPoints; ++i) {
    const size_t at = kJournalHeader + i * kJournalPoint;
    if (std::memcmp(&whole[at], &journal[at], kJournalPoint) == 0) unharmed.insert(i);
  }
  const JournalContents contents = readJournal(journal);
  for (const TrackPoint& point : contents.points) unharmed.erase(point.m);
  require(unharmed.empty());
  require(contents.damaged == (whole != journal));
  continueJournal(journal, contents);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // A block of its own: one byte too far is outside of it.
  const auto block = std::make_unique<uint8_t[]>(size);
  std::copy_n(data, size, block.get());
  checkAnything({block.get(), size});
  checkDamage({data, size});
  return 0;
}
