#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/serial_port.h"

namespace vgps {

inline constexpr uint32_t kSearchedPorts = 30;         // COM0 to COM29
inline constexpr uint32_t kDefaultSearchSpeed = 4800;  // when the speed box reads 0

// Probes COM0 to COM29 one after the other at `speed` (0: the default) and returns the numbers of
// those that answered with "$GP". Takes up to three seconds a port, and longer where the system
// takes long to open one, so it runs on a thread of its own. The current connection is closed
// before: its port would be busy. `cancelled` is asked before each port and while it is listened
// to, with its number.
std::vector<uint32_t> scanPorts(const std::function<std::unique_ptr<SerialPort>()>& makePort,
                                uint32_t speed,
                                const std::function<bool(uint32_t port)>& cancelled);

}  // namespace vgps
