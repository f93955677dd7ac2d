#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Searches text for a few characters, 16 bytes at a time. The text must contain a byte that ends
// the scan, and kScanSlack bytes after that byte must be readable.
namespace vgps {

constexpr size_t kScanSlack = 64;

namespace scan {

// One bit for each of the 16 bytes at `p` that is in `chars`.
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

// The first byte at or after `p` that is in `chars`.
template <char... chars>
inline char* scanTo(char* p) {
  for (;; p += 16) {
    const uint32_t found = scan::matches16<chars...>(p);
    if (found != 0) return p + std::countr_zero(found);
  }
}

// The first byte at or after `p` that is not in `chars`.
template <char... chars>
inline char* scanPast(char* p) {
  for (;; p += 16) {
    const uint32_t found = scan::matches16<chars...>(p) ^ 0xFFFFU;
    if (found != 0) return p + std::countr_zero(found);
  }
}

// Iterates over the bytes of a text that are in `chars`, examining 64 bytes at once. Unlike a chain
// of `scanTo`, finding the next one does not depend on what the caller did with the last one.
template <char... chars>
class Marks {
 public:
  explicit Marks(char* p) { seek(p); }

  // The next call of `next` returns the first mark at or after `p`.
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
