#include "gps/satellite_view.h"

#include <algorithm>

#include "base/number.h"
#include "gps/fields.h"
#include "gps/sentence_name.h"

namespace vgps {
namespace {

// A talker that has said nothing for so long has no say in the view any more.
constexpr uint32_t kForgetMs = 30000;
constexpr uint32_t kSweepMs = 1000;

// The fields of a sentence without its checksum.
Fields fieldsOf(std::string_view line) { return Fields(line.substr(0, line.find('*'))); }

struct Range {
  int32_t first;
  int32_t last;
  SatelliteSystem system;
};

// How receivers number satellites of several systems in one list.
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

// What a talker's own satellites are; unknown for those that list several systems by number.
SatelliteSystem systemOfTalker(uint64_t talker) {
  switch (talker) {
    case lettersKey("GL"): return SatelliteSystem::glonass;
    case lettersKey("GA"): return SatelliteSystem::galileo;
    case lettersKey("GB"):
    case lettersKey("BD"): return SatelliteSystem::beidou;
    case lettersKey("GQ"):
    case lettersKey("QZ"): return SatelliteSystem::qzss;
    case lettersKey("GI"): return SatelliteSystem::navic;
    default: return SatelliteSystem::unknown;
  }
}

// System numbers of NMEA 4.10 in GSA, as the talker that speaks of the same satellites.
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

int hexValue(std::string_view field) {
  if (field.empty()) return 0;
  const char c = field[0];
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return 0;
}

}  // namespace

const char* satelliteSystemName(SatelliteSystem system) {
  constexpr std::array<const char*, 8> kNames = {"unknown", "GPS",  "GLONASS", "Galileo",
                                                 "BeiDou",  "QZSS", "SBAS",    "NavIC"};
  return kNames[static_cast<size_t>(system)];
}

void SatelliteView::take(std::string_view line, uint32_t tick) {
  if (tick - sweptTick_ >= kSweepMs) forgetSilentSources(tick);
  // "$P" begins a sentence of a maker's own, whatever letters follow.
  const bool sentence = line.size() > 6 && line[0] == '$' && line[3] == 'G' && line[4] == 'S' &&
                        line[6] == ',' && line[1] != 'P';
  const bool gsa = sentence && line[5] == 'A';
  if (gsa && !lastWasGsa_) ++gsaRun_;
  lastWasGsa_ = gsa;
  if (gsa) takeGsa(line, tick);
  if (sentence && line[5] == 'V') takeGsv(line, tick);
}

// $GPGSV,messages,message,in view,{id,elevation,azimuth,snr} x 0..4[,signal]*hh
void SatelliteView::takeGsv(std::string_view line, uint32_t tick) {
  constexpr size_t kHead = 4;
  const uint64_t talker = talkerOf(line);
  const Fields fields = fieldsOf(line);
  const int32_t messages = leadingInt(fields.orEmpty(1));
  const int32_t message = leadingInt(fields.orEmpty(2));
  const size_t all = fields.count();
  const size_t left = all > kHead ? all - kHead : 0;
  const size_t groups = left / 4 + (left % 4 == 3 ? 1 : 0);
  std::array<ViewedSatellite, 4> listed;
  const size_t count = std::min(groups, listed.size());
  size_t found = 0;
  for (size_t i = 0; i < count; ++i) {
    const size_t at = kHead + 4 * i;
    const std::string_view id = fields[at];
    const std::string_view elevation = fields[at + 1];
    const std::string_view azimuth = fields[at + 2];
    const std::string_view snr = fields.orEmpty(at + 3);
    if (id.empty()) continue;
    ViewedSatellite& satellite = listed[found++];
    satellite.id = leadingInt(id);
    satellite.system = systemOf(talker, satellite.id);
    satellite.elevation = static_cast<float>(leadingDouble(elevation));
    satellite.azimuth = static_cast<float>(leadingDouble(azimuth));
    satellite.positionKnown = !elevation.empty() && !azimuth.empty();
    satellite.snr = static_cast<float>(leadingDouble(snr));
  }
  const int signal = left % 4 == 1 ? hexValue(fields[kHead + 4 * count]) : 0;
  const Source source = {static_cast<uint16_t>(talker), static_cast<uint8_t>(signal)};
  beginOrContinueCycle(source, message, tick);
  for (size_t i = 0; i < found; ++i) {
    listed[i].signal = static_cast<uint8_t>(signal);
    listed[i].used = isUsed(listed[i]);
    store(listed[i], source);
  }
  if (message >= messages) endCycle(source);
  ++revision_;
}

// Some receivers number their messages on across the talkers (GP 1 and 2, GL 3, GA 4 of 4), so a
// cycle begins with message 1 or with a number that is not above the talker's last.
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
  size_t at = 0;
  while (at < count_ && !(books_[at].source == source && entries_[at].id == satellite.id)) ++at;
  if (at == entries_.size()) return;
  if (at == count_) ++count_;
  entries_[at] = satellite;
  books_[at] = {source, false};
}

template <typename Drop>
void SatelliteView::dropEntries(Drop drop) {
  size_t kept = 0;
  for (size_t i = 0; i < count_; ++i) {
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

// $GPGSA,mode,fix,id x 12,pdop,hdop,vdop[,system]*hh
void SatelliteView::takeGsa(std::string_view line, uint32_t tick) {
  constexpr size_t kChannels = 12;
  constexpr size_t kSystemField = 18;
  const Fields fields = fieldsOf(line);
  std::array<int32_t, kChannels> ids{};
  size_t count = 0;
  for (size_t i = 3; i < 3 + kChannels && fields.has(i); ++i) {
    if (!fields[i].empty()) ids[count++] = leadingInt(fields[i]);
  }
  const int number = hexValue(fields.orEmpty(kSystemField));
  UsedSet* set = usedSetOf({static_cast<uint16_t>(talkerOf(line)), static_cast<uint8_t>(number)});
  if (set == nullptr) return;
  // Several GSA of one source in a row list more than twelve; the next epoch starts anew.
  if (set->run != gsaRun_) set->count = 0;
  set->run = gsaRun_;
  set->tick = tick;
  const bool named = number > 0 && number < static_cast<int>(kTalkerOfSystemNumber.size());
  const uint64_t talker =
      named ? kTalkerOfSystemNumber[static_cast<size_t>(number)] : talkerOf(line);
  for (size_t i = 0; i < count && set->count < set->keys.size(); ++i) {
    set->keys[set->count++] = satelliteKey(systemOf(talker, ids[i]), ids[i]);
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
    const auto keys = std::span(usedSets_[i].keys).first(usedSets_[i].count);
    if (std::find(keys.begin(), keys.end(), key) != keys.end()) return true;
  }
  return false;
}

}  // namespace vgps
