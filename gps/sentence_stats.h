#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace vgps {

enum class CountedKind : uint8_t { rmc, gga, gsa, gsv, other };
inline constexpr size_t kCountedKinds = 5;

// Events per second over the last few seconds, by the ticks of the events.
class RateMeter {
 public:
  void count(uint32_t tick);
  double perSecond() const;

 private:
  static constexpr uint32_t kWindowMs = 4000;
  uint32_t windowStart_ = 0;
  uint32_t lastTick_ = 0;
  uint32_t inWindow_ = 0;
  double lastWindowRate_ = -1;
};

// What came down the line. Counting changes nothing in what is accepted.
struct SentenceStats {
  std::array<uint64_t, kCountedKinds> counts{};
  std::array<RateMeter, kCountedKinds> rates{};
  uint64_t rejected = 0;  // lines that begin with no "$"
  uint64_t binary = 0;    // whole binary messages
  uint64_t checksumRight = 0;
  uint64_t checksumWrong = 0;
  uint64_t checksumAbsent = 0;

  uint64_t total() const;  // accepted lines and binary messages

  // An accepted line: `raw` as received carries the checksum, `parsed` the name that was
  // recognised.
  void countLine(std::string_view raw, std::string_view parsed, uint32_t tick);
};

CountedKind countedKind(std::string_view sentence);

}  // namespace vgps
