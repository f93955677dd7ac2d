#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/number.h"

// The fields of a sentence, without copying them.
namespace vgps {

// Bit i is set if character i of `text` is a comma; covers the first 64 characters. Sentences are
// full of commas, and finding them one by one takes longer than parsing the numbers between them.
inline uint64_t commaBits(std::string_view text) {
  constexpr uint64_t kCommas = 0x2C2C2C2C2C2C2C2C;
  constexpr uint64_t kSevenBits = 0x7F7F7F7F7F7F7F7F;
  constexpr uint64_t kGather = 0x0102040810204080;
  // Eight characters at a time: commas become 0; in any other character the addition carries a bit
  // into the highest position; a multiplication gathers these highest bits in one byte.
  const auto bitsOfEight = [](const char* characters) {
    uint64_t word = 0;
    std::memcpy(&word, characters, sizeof word);
    word ^= kCommas;
    const uint64_t commas = ~(((word & kSevenBits) + kSevenBits) | word | kSevenBits) >> 7;
    return commas * kGather >> 56;
  };
  const size_t length = text.size() < 64 ? text.size() : 64;
  uint64_t bits = 0;
  size_t at = 0;
  if constexpr (std::endian::native == std::endian::little) {
    for (; at + 8 <= length; at += 8) bits |= bitsOfEight(text.data() + at) << at;
  }
  for (; at < length; ++at) bits |= uint64_t{text[at] == ','} << at;
  return bits;
}

// The whole number in the `length` characters (1 to 4) before `end`; -1 if they are not all digits.
// The four characters before `end` must be readable: they are loaded as one word, to avoid a loop
// for each short number.
inline int32_t digitsBefore(const char* end, size_t length) {
  constexpr uint32_t kZeros = 0x30303030;
  constexpr uint32_t kAboveNine = 0x76767676;
  constexpr uint32_t kHighBits = 0x80808080;
  uint32_t word = 0;
  std::memcpy(&word, end - sizeof word, sizeof word);
  word = (word ^ kZeros) & (~uint32_t{0} << (32 - 8 * length));
  if ((((word + kAboveNine) | word) & kHighBits) != 0) return -1;
  word = (word * 10 + (word >> 8)) & 0x00FF00FF;  // pairs of digits combined
  return static_cast<int32_t>((word * 100 + (word >> 16)) & 0xFFFF);
}

// The first kKept fields of a text, which is as many as a sentence of fixed layout can have.
class Fields {
 public:
  static constexpr size_t kKept = 24;

  explicit Fields(std::string_view text) : text_(text) {
    starts_[0] = 0;
    for (size_t block = 0; block < text.size(); block += 64) {
      for (uint64_t bits = commaBits(text.substr(block)); bits != 0; bits &= bits - 1) {
        starts_[size_] =
            static_cast<uint32_t>(block) + static_cast<uint32_t>(std::countr_zero(bits)) + 1;
        if (size_ == kKept) {
          more_ = true;
          return;
        }
        ++size_;
      }
    }
    starts_[size_] = static_cast<uint32_t>(text.size()) + 1;
  }

  // The number of fields, at most kKept.
  size_t size() const { return size_; }
  // Whether the field numbered `index` exists.
  bool has(size_t index) const { return size_ > index; }
  std::string_view operator[](size_t index) const {
    return {text_.data() + startOf(index), endOf(index) - startOf(index)};
  }
  // The start and end of a field in the text.
  size_t startOf(size_t index) const { return starts_[index]; }
  size_t endOf(size_t index) const { return starts_[index + 1] - size_t{1}; }
  std::string_view orEmpty(size_t index) const {
    return has(index) ? (*this)[index] : std::string_view();
  }
  bool isEmpty(size_t index) const { return startOf(index) == endOf(index); }
  // The number at the start of an existing field, read like `leadingInt` and `leadingDouble`.
  int32_t wholeNumber(size_t index) const {
    const int32_t value = shortNumber(index);
    return value >= 0 ? value : leadingInt((*this)[index]);
  }
  float number32(size_t index) const {
    const int32_t value = shortNumber(index);
    if (value >= 0) return static_cast<float>(value);
    return static_cast<float>(leadingDouble((*this)[index]));
  }
  // Whether there are more than kKept fields, and the text of those.
  bool more() const { return more_; }
  std::string_view rest() const { return text_.substr(starts_[size_]); }
  // The number of all fields.
  size_t count() const {
    if (!more_) return size_;
    const std::string_view others = rest();
    return size_ + 1 + static_cast<size_t>(std::count(others.begin(), others.end(), ','));
  }

 private:
  // Returns -1 if it is not a number of at most four digits, or is too close to the start of the
  // text.
  int32_t shortNumber(size_t index) const {
    const size_t end = endOf(index);
    const size_t length = end - startOf(index);
    if constexpr (std::endian::native != std::endian::little) return -1;
    if (length == 0) return 0;
    return length > 4 || end < 4 ? -1 : digitsBefore(text_.data() + end, length);
  }

  std::string_view text_;
  size_t size_ = 1;
  bool more_ = false;
  std::array<uint32_t, kKept + 1> starts_;
};

}  // namespace vgps
