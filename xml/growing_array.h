#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>
#include <utility>

#include "base/allocation.h"

namespace vgps {

// An array of plain rows that grows by chunks. Rows are rarely copied, and memory pages without
// rows are never touched: touching memory is the main cost of loading a big file.
template <class Row>
class GrowingArray {
  static_assert(std::is_trivially_copyable_v<Row> && std::is_trivially_destructible_v<Row>);

 public:
  uint32_t size() const { return size_; }
  Row& operator[](uint32_t index) { return chunks_[index / kRows][index % kRows]; }
  const Row& operator[](uint32_t index) const { return chunks_[index / kRows][index % kRows]; }

  GrowingArray() = default;
  GrowingArray(const GrowingArray&) = delete;
  GrowingArray& operator=(const GrowingArray&) = delete;
  ~GrowingArray() {
    for (uint32_t chunk = 0; uint64_t{chunk} * kRows < capacity_; ++chunk)
      std::free(chunks_[chunk]);
    std::free(chunks_);
  }

  // Returns the index of the appended copy. Rows never move once there are at least kRows of them.
  uint32_t push(const Row& row) {
    if (size_ == capacity_) {
      const Row copy = row;
      grow();
      *next_++ = copy;
    } else {
      *next_++ = row;
    }
    return size_++;
  }

 private:
  static constexpr uint32_t kRows = 8192;  // rows in a chunk; the first one starts with kFirstRows
  static constexpr uint32_t kFirstRows = 16;

  template <class T>
  static void resize(T*& rows, uint64_t count) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): rows of addresses are meant
    void* const resized = std::realloc(rows, count * sizeof(T));
    if (resized == nullptr) failAllocation();
    rows = static_cast<T*>(resized);
  }

  void grow() {
    if (size_ == UINT32_MAX - kRows + 1) failAllocation();
    const uint32_t chunk = size_ / kRows;
    if ((chunk & (chunk - 1)) == 0 && size_ % kRows == 0) {
      resize(chunks_, chunk == 0 ? 1 : uint64_t{chunk} * 2);
      if (chunk == 0) chunks_[0] = nullptr;
    }
    if (chunk > 0) chunks_[chunk] = nullptr;
    const uint32_t rows = chunk > 0 ? kRows : size_ == 0 ? kFirstRows : size_ * 2;
    resize(chunks_[chunk], rows);
    capacity_ = chunk * kRows + rows;
    next_ = chunks_[chunk] + size_ % kRows;
  }

  uint32_t size_ = 0;
  uint32_t capacity_ = 0;
  Row* next_ = nullptr;
  Row** chunks_ = nullptr;
};

}  // namespace vgps
