#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/serial_port.h"

namespace vgps {

inline constexpr uint32_t kSearchedPorts = 30;         // COM0 to COM29
inline constexpr uint32_t kDefaultSearchSpeed = 4800;  // if the speed box contains 0

// Probes COM0 to COM29 one after another at `speed` (0: the default) and returns the numbers of the
// ports that answered with "$GP". Takes up to three seconds per port, or longer if opening one
// takes long, so call it on a separate thread. Close the current connection first: its port would
// be busy. `cancelled` is called with the number of the port, before probing it and while
// listening.
std::vector<uint32_t> scanPorts(const std::function<std::unique_ptr<SerialPort>()>& makePort,
                                uint32_t speed,
                                const std::function<bool(uint32_t port)>& cancelled);

}  // namespace vgps
