#include "files/unique_number.h"

#include <atomic>
#include <chrono>

namespace vgps {

// Programs that start at the same moment lie at different places in memory.
uint64_t uniqueNumber() {
  static std::atomic<uint64_t> count = 0;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto ticks = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
  const uint64_t number =
      static_cast<uint64_t>(ticks) ^ reinterpret_cast<uintptr_t>(&count) << 20 ^ ++count << 56;
  return number == 0 ? 1 : number;
}

}  // namespace vgps
