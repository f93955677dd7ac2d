#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// The frame format of the binary SiRF protocol. All numbers are big-endian.
//
//   A0 A2 | length, 16 bits | payload | checksum, 16 bits | B0 B3
namespace vgps {

inline constexpr std::string_view kSirfStart = "\xA0\xA2";
inline constexpr std::string_view kSirfEnd = "\xB0\xB3";
inline constexpr size_t kSirfHeader = 4;
inline constexpr size_t kSirfOverhead = 8;  // everything except the payload

// A received binary message.
struct SirfMessage {
  uint16_t start = 0;
  uint16_t length = 0;
  std::span<const uint8_t> payload;  // inside the received bytes; byte 0 is the message number
  uint16_t checksum = 0;
  uint16_t end = 0;

  uint32_t number() const { return payload.empty() ? 0 : payload[0]; }
};

// The length of the frame at the start of `bytes`, according to its header; 0 if the header is
// incomplete.
constexpr size_t sirfFrameLength(std::string_view bytes) {
  if (bytes.size() < kSirfHeader) return 0;
  const auto high = static_cast<uint8_t>(bytes[2]);
  const auto low = static_cast<uint8_t>(bytes[3]);
  return (size_t{high} << 8 | low) + kSirfOverhead;
}

// Decodes a complete frame.
inline SirfMessage sirfMessageIn(std::string_view frame) {
  const auto* raw = reinterpret_cast<const uint8_t*>(frame.data());
  const auto word = [raw](size_t at) { return static_cast<uint16_t>(raw[at] << 8 | raw[at + 1]); };
  SirfMessage message;
  message.start = word(0);
  message.length = word(2);
  message.payload = {raw + kSirfHeader, message.length};
  message.checksum = word(kSirfHeader + size_t{message.length});
  message.end = word(kSirfHeader + size_t{message.length} + 2);
  return message;
}

}  // namespace vgps
