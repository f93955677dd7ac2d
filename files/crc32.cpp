#include "files/crc32.h"

#include <zlib.h>

namespace vgps {

uint32_t crc32Of(std::span<const uint8_t> bytes, uint32_t before) {
  return static_cast<uint32_t>(::crc32_z(before, bytes.data(), bytes.size()));
}

uint32_t crc32Of(std::string_view bytes, uint32_t before) {
  return crc32Of(std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()), before);
}

}  // namespace vgps
