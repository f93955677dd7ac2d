#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "gps/fix.h"
#include "gps/satellite_sentences.h"
#include "gps/sentence_stats.h"

namespace vgps {

enum class SatelliteSystem : uint8_t { unknown, gps, glonass, galileo, beidou, qzss, sbas, navic };

const char* satelliteSystemName(SatelliteSystem system);

struct ViewedSatellite {
  SatelliteSystem system = SatelliteSystem::unknown;
  uint8_t signal = 0;   // NMEA 4.10 signal number; 0 if not given
  int32_t id = 0;       // PRN or space vehicle number, as reported by the receiver
  float elevation = 0;  // degrees; this and azimuth only if `positionKnown`
  float azimuth = 0;    // degrees true
  float snr = 0;        // C/N0 in dB-Hz; 0 if not tracked
  bool positionKnown = false;
  bool used = false;
};

// Lists each satellite once, with its strongest signal, although receivers list it once per signal.
std::vector<ViewedSatellite> strongestSignals(std::span<const ViewedSatellite> view);

// All satellites of all systems listed by GSV and GSA sentences of any talker, for the screens. The
// satellites of a talker and signal remain until that talker's next GSV cycle ends without them, or
// until it has been silent for 30 seconds.
class SatelliteView {
 public:
  static constexpr size_t kCapacity = 160;  // further satellites are ignored

  // Call this for every line. A line that is not a GSV or GSA only ends a run of GSA lines.
  void take(const DecodedSentence& decoded, uint32_t tick);

  std::span<const ViewedSatellite> satellites() const { return {entries_.data(), count_}; }

  // Incremented with each change, so that a copy can tell whether it is up to date.
  uint32_t revision() const { return revision_; }

  void clear() { *this = SatelliteView(revision_ + 1); }
  SatelliteView() = default;

 private:
  explicit SatelliteView(uint32_t revision) : revision_(revision) {}

  // Identifies a list: the talker's two letters and the signal (GSV) or system number (GSA).
  struct Source {
    uint16_t talker = 0;
    uint8_t number = 0;
    bool operator==(const Source&) const = default;
  };
  struct GsvCycle {
    Source source;
    int32_t lastMessage = 0;
    uint32_t tick = 0;
  };
  struct UsedSet {
    Source source;
    uint32_t tick = 0;
    uint32_t run = 0;  // of consecutive GSA lines
    uint8_t count = 0;
    uint64_t marks = 0;  // one bit per key, from its last six bits, to reject most lookups quickly
    std::array<uint64_t, 48> keys{};  // system and number
  };
  struct Bookkeeping {
    Source source;
    bool stale = false;
  };

  void takeGsv(const DecodedSentence& decoded, uint32_t tick);
  void takeGsa(const DecodedSentence& decoded, uint32_t tick);
  void beginOrContinueCycle(Source source, int32_t message, uint32_t tick);
  void endCycle(Source source);
  GsvCycle* cycleOf(Source source);
  UsedSet* usedSetOf(Source source);
  void store(const ViewedSatellite& satellite, Source source);
  template <typename Drop>
  void dropEntries(Drop drop);
  void forgetSilentSources(uint32_t tick);
  void markUsed();
  bool isUsed(const ViewedSatellite& satellite) const;

  std::array<ViewedSatellite, kCapacity> entries_{};
  std::array<Bookkeeping, kCapacity> books_{};
  size_t count_ = 0;
  size_t nextPlace_ = 0;  // where the next satellite of a list is expected
  std::array<GsvCycle, 24> cycles_{};
  size_t cycleCount_ = 0;
  bool openCycle_ = false;
  Source openSource_;
  std::array<UsedSet, 12> usedSets_{};
  size_t usedSetCount_ = 0;
  uint32_t gsaRun_ = 0;
  bool lastWasGsa_ = false;
  uint32_t sweptTick_ = 0;
  uint32_t revision_ = 0;
};

// The number of satellites used in the fix: as GGA counts them, or of a receiver without GGA, as
// many as its GSA lists; `listed` says that one has come. 0 if unknown.
int32_t usedSatellites(const SatelliteTable& table, const SentenceStats& stats, bool listed);

}  // namespace vgps
