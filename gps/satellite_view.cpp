#include "gps/satellite_view.h"

#include <algorithm>

namespace vgps {
namespace {

// A talker that has been silent for this long is removed from the view.
constexpr uint32_t kForgetMs = 30000;
constexpr uint32_t kSweepMs = 1000;

struct Range {
  int32_t first;
  int32_t last;
  SatelliteSystem system;
};

// How receivers number the satellites of several systems in one list.
constexpr std::array<Range, 9> kNumberRanges = {{
    {1, 32, SatelliteSystem::gps},
    {33, 64, SatelliteSystem::sbas},
    {65, 99, SatelliteSystem::glonass},
    {120, 158, SatelliteSystem::sbas},
    {183, 202, SatelliteSystem::qzss},
    {201, 263, SatelliteSystem::beidou},
    {301, 336, SatelliteSystem::galileo},
    {401, 463, SatelliteSystem::beidou},
    {901, 918, SatelliteSystem::navic},
}};

SatelliteSystem systemOfNumber(int32_t id) {
  for (const Range& range : kNumberRanges) {
    if (id >= range.first && id <= range.last) return range.system;
  }
  return SatelliteSystem::unknown;
}

// The system that a talker belongs to; unknown for those that list several systems by number.
SatelliteSystem systemOfTalker(uint64_t talker) {
  switch (talker) {
    case lettersKey("GL"): return SatelliteSystem::glonass;
    case lettersKey("GA"): return SatelliteSystem::galileo;
    case lettersKey("GB"):
    case lettersKey("BD"):
    case lettersKey("PQ"): return SatelliteSystem::beidou;
    case lettersKey("GQ"):
    case lettersKey("QZ"): return SatelliteSystem::qzss;
    case lettersKey("GI"): return SatelliteSystem::navic;
    default: return SatelliteSystem::unknown;
  }
}

// The system numbers of GSA since NMEA 4.10, as the talker for the same satellites.
constexpr std::array<uint64_t, 7> kTalkerOfSystemNumber = {
    lettersKey("GN"), lettersKey("GP"), lettersKey("GL"), lettersKey("GA"),
    lettersKey("GB"), lettersKey("GQ"), lettersKey("GI")};

SatelliteSystem systemOf(uint64_t talker, int32_t id) {
  const SatelliteSystem system = systemOfTalker(talker);
  if (system == SatelliteSystem::unknown) return systemOfNumber(id);
  const bool augmentation = system == SatelliteSystem::glonass && id >= 33 && id <= 64;
  return augmentation ? SatelliteSystem::sbas : system;
}

// A satellite of one system as one number.
uint64_t satelliteKey(SatelliteSystem system, int32_t id) {
  return uint64_t{static_cast<uint8_t>(system)} << 32 | static_cast<uint32_t>(id);
}

uint64_t markOf(uint64_t key) { return uint64_t{1} << (key & 63); }

}  // namespace

const char* satelliteSystemName(SatelliteSystem system) {
  constexpr std::array<const char*, 8> kNames = {"unknown", "GPS",  "GLONASS", "Galileo",
                                                 "BeiDou",  "QZSS", "SBAS",    "NavIC"};
  return kNames[static_cast<size_t>(system)];
}

std::vector<ViewedSatellite> strongestSignals(std::span<const ViewedSatellite> view) {
  std::vector<ViewedSatellite> satellites;
  for (const ViewedSatellite& seen : view) {
    const auto known =
        std::find_if(satellites.begin(), satellites.end(), [&](const ViewedSatellite& other) {
          return other.system == seen.system && other.id == seen.id;
        });
    if (known == satellites.end()) {
      satellites.push_back(seen);
      continue;
    }
    known->snr = std::max(known->snr, seen.snr);
    known->used = known->used || seen.used;
  }
  return satellites;
}

void SatelliteView::take(const DecodedSentence& decoded, uint32_t tick) {
  if (tick - sweptTick_ >= kSweepMs) forgetSilentSources(tick);
  const SentenceName& name = decoded.sentence.name;
  const bool counts = name.whole && !name.isProprietary();
  const bool isGsa = counts && name.type == SentenceType::gsa;
  if (isGsa && !lastWasGsa_) ++gsaRun_;
  lastWasGsa_ = isGsa;
  if (isGsa) takeGsa(decoded, tick);
  if (counts && name.type == SentenceType::gsv) takeGsv(decoded, tick);
}

void SatelliteView::takeGsv(const DecodedSentence& decoded, uint32_t tick) {
  constexpr size_t kHead = GsvReport::kHead;
  const GsvReport& report = decoded.gsv;
  const uint32_t talker = decoded.sentence.name.talker;
  const Body body(decoded.sentence);
  const size_t left = body.count() > kHead ? body.count() - kHead : 0;
  const size_t groups = std::min((left + 1) / 4, GsvReport::kGroups);
  const size_t behind = kHead + 4 * groups;
  const bool hasSignal = left % 4 == 1 && !body.isEmpty(behind);
  const int signal = hasSignal ? std::max(hexDigit(decoded.sentence.fields[behind][0]), 0) : 0;
  const Source source = {static_cast<uint16_t>(talker), static_cast<uint8_t>(signal)};
  beginOrContinueCycle(source, report.message, tick);
  for (size_t i = 0; i < groups; ++i) {
    const size_t at = kHead + 4 * i;
    if (body.isEmpty(at)) continue;
    const GsvReport::Satellite& listed = report.satellites[i];
    ViewedSatellite satellite;
    satellite.system = systemOf(talker, listed.id);
    satellite.signal = source.number;
    satellite.id = listed.id;
    satellite.elevation = listed.elevation;
    satellite.azimuth = listed.azimuth;
    satellite.snr = body.isEmpty(at + 3) ? 0 : listed.snr;
    satellite.positionKnown = !body.isEmpty(at + 1) && !body.isEmpty(at + 2);
    satellite.used = isUsed(satellite);
    store(satellite, source);
  }
  if (report.message >= report.messages) endCycle(source);
  ++revision_;
}

// Some receivers number their messages across talkers (GP 1 and 2, GL 3, GA 4 of 4), so a cycle
// starts with message 1 or with a number that is not higher than the talker's last.
void SatelliteView::beginOrContinueCycle(Source source, int32_t message, uint32_t tick) {
  if (openCycle_ && !(openSource_ == source)) endCycle(openSource_);
  GsvCycle* cycle = cycleOf(source);
  if (cycle == nullptr) return;
  if (message <= 1 || message <= cycle->lastMessage) {
    for (size_t i = 0; i < count_; ++i) {
      if (books_[i].source == source) books_[i].stale = true;
    }
  }
  cycle->lastMessage = message;
  cycle->tick = tick;
  openCycle_ = true;
  openSource_ = source;
}

void SatelliteView::endCycle(Source source) {
  dropEntries([&](const Bookkeeping& book) { return book.source == source && book.stale; });
  openCycle_ = false;
}

SatelliteView::GsvCycle* SatelliteView::cycleOf(Source source) {
  for (size_t i = 0; i < cycleCount_; ++i) {
    if (cycles_[i].source == source) return &cycles_[i];
  }
  if (cycleCount_ == cycles_.size()) return nullptr;
  GsvCycle& cycle = cycles_[cycleCount_++];
  cycle = GsvCycle();
  cycle.source = source;
  return &cycle;
}

void SatelliteView::store(const ViewedSatellite& satellite, Source source) {
  const auto standsAt = [&](size_t at) {
    return books_[at].source == source && entries_[at].id == satellite.id;
  };
  // Receivers list their satellites in the same order each time.
  size_t at = nextPlace_;
  if (at >= count_ || !standsAt(at)) at = 0;
  while (at < count_ && !standsAt(at)) ++at;
  if (at == entries_.size()) return;
  if (at == count_) ++count_;
  nextPlace_ = at + 1;
  // Assigns each field: copying a struct that was just written makes the processor wait.
  ViewedSatellite& entry = entries_[at];
  entry.system = satellite.system;
  entry.signal = satellite.signal;
  entry.id = satellite.id;
  entry.elevation = satellite.elevation;
  entry.azimuth = satellite.azimuth;
  entry.snr = satellite.snr;
  entry.positionKnown = satellite.positionKnown;
  entry.used = satellite.used;
  books_[at] = {source, false};
}

template <typename Drop>
void SatelliteView::dropEntries(Drop drop) {
  const auto books = std::span(books_).first(count_);
  auto kept = static_cast<size_t>(std::find_if(books.begin(), books.end(), drop) - books.begin());
  for (size_t i = kept; i < count_; ++i) {
    if (drop(books_[i])) continue;
    entries_[kept] = entries_[i];
    books_[kept++] = books_[i];
  }
  count_ = kept;
}

void SatelliteView::forgetSilentSources(uint32_t tick) {
  sweptTick_ = tick;
  const size_t known = cycleCount_ + usedSetCount_;
  for (size_t i = cycleCount_; i-- > 0;) {
    if (tick - cycles_[i].tick <= kForgetMs) continue;
    const Source source = cycles_[i].source;
    dropEntries([&](const Bookkeeping& book) { return book.source == source; });
    cycles_[i] = cycles_[--cycleCount_];
  }
  for (size_t i = usedSetCount_; i-- > 0;) {
    if (tick - usedSets_[i].tick > kForgetMs) usedSets_[i] = usedSets_[--usedSetCount_];
  }
  if (cycleCount_ + usedSetCount_ == known) return;
  markUsed();
  ++revision_;
}

void SatelliteView::markUsed() {
  for (size_t i = 0; i < count_; ++i) entries_[i].used = isUsed(entries_[i]);
}

void SatelliteView::takeGsa(const DecodedSentence& decoded, uint32_t tick) {
  const GsaReport& report = decoded.gsa;
  const uint32_t talker = decoded.sentence.name.talker;
  const Body body(decoded.sentence);
  const bool hasSystem = !body.isEmpty(GsaReport::kSystemField);
  const int number = hasSystem ? systemIdOf(decoded.sentence) : 0;
  UsedSet* set = usedSetOf({static_cast<uint16_t>(talker), static_cast<uint8_t>(number)});
  if (set == nullptr) return;
  // Several GSA lines of one source in a row list more than twelve satellites; a GSA in the next
  // epoch starts a new list.
  if (set->run != gsaRun_) set->count = 0, set->marks = 0;
  set->run = gsaRun_;
  set->tick = tick;
  const bool named = number > 0 && number < static_cast<int>(kTalkerOfSystemNumber.size());
  const uint64_t speaker = named ? kTalkerOfSystemNumber[static_cast<size_t>(number)] : talker;
  for (size_t i = 0; i < report.channels && set->count < set->keys.size(); ++i) {
    if (body.isEmpty(GsaReport::kFirst + i)) continue;
    const uint64_t key = satelliteKey(systemOf(speaker, report.ids[i]), report.ids[i]);
    set->keys[set->count++] = key;
    set->marks |= markOf(key);
  }
  markUsed();
  ++revision_;
}

SatelliteView::UsedSet* SatelliteView::usedSetOf(Source source) {
  for (size_t i = 0; i < usedSetCount_; ++i) {
    if (usedSets_[i].source == source) return &usedSets_[i];
  }
  if (usedSetCount_ == usedSets_.size()) return nullptr;
  UsedSet& set = usedSets_[usedSetCount_++];
  set = UsedSet();
  set.source = source;
  return &set;
}

bool SatelliteView::isUsed(const ViewedSatellite& satellite) const {
  const uint64_t key = satelliteKey(satellite.system, satellite.id);
  for (size_t i = 0; i < usedSetCount_; ++i) {
    if ((usedSets_[i].marks & markOf(key)) == 0) continue;
    const auto keys = std::span(usedSets_[i].keys).first(usedSets_[i].count);
    if (std::find(keys.begin(), keys.end(), key) != keys.end()) return true;
  }
  return false;
}

}  // namespace vgps
