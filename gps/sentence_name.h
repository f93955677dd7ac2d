#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vgps {

// Up to eight letters as one number, so that sentences and talkers are told by integer compares.
constexpr uint64_t lettersKey(std::string_view letters) {
  uint64_t key = 0;
  for (size_t i = 0; i < letters.size(); ++i) {
    key |= uint64_t{static_cast<uint8_t>(letters[i])} << (8 * i);
  }
  return key;
}

// "$GPGGA,..." speaks as "GP"; the sentence must have three characters.
constexpr uint64_t talkerOf(std::string_view sentence) { return lettersKey(sentence.substr(1, 2)); }

}  // namespace vgps
