#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace vgps {

struct GpsFix;

inline constexpr uint32_t kSearchedPorts = 30;         // COM0 to COM29
inline constexpr uint32_t kDefaultSearchSpeed = 4800;  // when the speed box reads 0

// Probes COM0 to COM29 one after the other at `speed` (0: the default) and returns the numbers of
// those that answered with "$GP". The current connection is closed silently first. Takes up to
// three seconds a port, so it runs on a thread of its own; until it returns nobody else may open,
// close or look at the connection. `cancelled` is asked before each port.
std::vector<uint32_t> scanPorts(GpsFix& fix, uint32_t speed,
                                const std::function<bool()>& cancelled);

}  // namespace vgps
