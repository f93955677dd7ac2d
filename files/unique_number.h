#pragma once

#include <cstdint>

namespace vgps {

// A number that no other call in any program returns, never 0.
uint64_t uniqueNumber();

}  // namespace vgps
