#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace vgps {

// CRC-32 of the bytes (ISO-HDLC, as in ZIP and PNG), used to detect damaged files. `before` is the
// CRC of the preceding bytes, 0 if there are none.
uint32_t crc32Of(std::span<const uint8_t> bytes, uint32_t before = 0);
uint32_t crc32Of(std::string_view bytes, uint32_t before = 0);

}  // namespace vgps
