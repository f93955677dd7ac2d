#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Scanning text for a few characters at a time. Everything here wants a byte that ends the scan to
// be there, and reads up to kScanSlack bytes behind it.
namespace vgps {

constexpr size_t kScanSlack = 64;

namespace scan {

// One bit for each of the sixteen bytes at `p` that is one of `chars`.
template <char... chars>
inline uint32_t matches16(const char* p) {
#if defined(__SSE2__)
  using Bytes [[gnu::vector_size(16)]] = char;
  Bytes bytes;
  std::memcpy(&bytes, p, sizeof bytes);
  const auto any = std::bit_cast<Bytes>(((bytes == chars) | ...));
  return static_cast<uint32_t>(__builtin_ia32_pmovmskb128(any));
#else
  uint32_t any = 0;
  for (unsigned i = 0; i < 16; ++i) any |= static_cast<uint32_t>(((p[i] == chars) || ...)) << i;
  return any;
#endif
}

}  // namespace scan

// The first byte at or behind `p` that is one of `chars`.
template <char... chars>
inline char* scanTo(char* p) {
  for (;; p += 16) {
    const uint32_t found = scan::matches16<chars...>(p);
    if (found != 0) return p + std::countr_zero(found);
  }
}

// The first byte at or behind `p` that is none of `chars`.
template <char... chars>
inline char* scanPast(char* p) {
  for (;; p += 16) {
    const uint32_t found = scan::matches16<chars...>(p) ^ 0xFFFFU;
    if (found != 0) return p + std::countr_zero(found);
  }
}

// Walks over the bytes of a text that are one of `chars`, 64 bytes looked at together. The next
// step does not wait for what is done with the last one, unlike a chain of `scanTo`.
template <char... chars>
class Marks {
 public:
  explicit Marks(char* p) { seek(p); }

  // `next` gives the first mark at or behind `p`.
  void seek(char* p) {
    block_ = p;
    look();
  }

  char* next() {
    while (bits_ == 0) {
      block_ += 64;
      look();
    }
    char* const mark = block_ + std::countr_zero(bits_);
    bits_ &= bits_ - 1;
    return mark;
  }

 private:
  void look() {
    const auto at = [this](size_t i) {
      return uint64_t{scan::matches16<chars...>(block_ + i)} << i;
    };
    bits_ = at(0) | at(16) | at(32) | at(48);
  }

  char* block_ = nullptr;
  uint64_t bits_ = 0;
};

}  // namespace vgps
