#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/clock.h"

// The program around the parser, as small as it gets.
namespace vgps {

// Ends the run: the fuzzer keeps the input that led here.
inline void require(bool holds) {
  if (!holds) std::abort();
}

// Each look is `step` milliseconds later than the last.
class SteppingClock : public Clock {
 public:
  explicit SteppingClock(uint32_t step) : step_(step) {}
  uint32_t tick() const override { return tick_ += step_; }
  DateTime utc() const override { return {}; }
  DateTime local() const override { return {}; }

 private:
  uint32_t step_;
  mutable uint32_t tick_ = 1000;
};

}  // namespace vgps
