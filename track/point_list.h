#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <type_traits>
#include <vector>

#include "gps/fix.h"

namespace vgps {

// One recorded fix: the fix's values as they were, with the computer's clock in `utcTime` and
// `localTime`. A plain record without a pointer.
struct TrackPoint : FixRecord {
  uint32_t m = 0;     // mark number, 0 none
  uint32_t s = 0;     // segment or status number, 0 none
  uint32_t c = 0;     // identifier of the radio cell
  uint32_t name = 0;  // place in the track's list of point names, from 1; 0 none
};
static_assert(sizeof(TrackPoint) == 160 && std::is_trivially_copyable_v<TrackPoint>);

// The points of a track in their order. It grows by blocks and never moves a point: recording
// hours at 10 Hz neither stops for a copy nor holds twice the memory.
class PointList {
 public:
  template <class List, class Point>
  class Iterator;
  using iterator = Iterator<PointList, TrackPoint>;
  using const_iterator = Iterator<const PointList, const TrackPoint>;

  PointList() = default;
  PointList(PointList&&) noexcept;
  PointList& operator=(PointList&&) noexcept;
  PointList(const PointList& other) { *this = other; }
  PointList& operator=(const PointList& other);
  ~PointList() = default;

  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  TrackPoint& operator[](size_t index) { return (*blocks_[index / kBlock])[index % kBlock]; }
  const TrackPoint& operator[](size_t index) const {
    return (*blocks_[index / kBlock])[index % kBlock];
  }
  TrackPoint& back() { return (*this)[size_ - 1]; }
  const TrackPoint& back() const { return (*this)[size_ - 1]; }
  const TrackPoint& front() const { return (*this)[0]; }

  void push_back(const TrackPoint& point) {  // NOLINT(readability-identifier-naming): as lists do
    if (size_ == blocks_.size() * kBlock) addBlock();
    ++size_;
    back() = point;
  }
  // Drops the points from `size` on.
  void truncate(size_t size);
  void clear() { truncate(0); }

  iterator begin();
  iterator end();
  const_iterator begin() const;
  const_iterator end() const;

 private:
  static constexpr size_t kBlock = 128;  // points; 20 KB
  using Block = std::array<TrackPoint, kBlock>;

  void addBlock();

  std::vector<std::unique_ptr<Block>> blocks_;
  size_t size_ = 0;
};

template <class List, class Point>
class PointList::Iterator {
 public:
  using iterator_category = std::random_access_iterator_tag;
  using value_type = TrackPoint;
  using difference_type = std::ptrdiff_t;
  using pointer = Point*;
  using reference = Point&;

  Iterator() = default;
  Iterator(List* list, size_t index) : list_(list), index_(index) {}

  Point& operator*() const { return (*list_)[index_]; }
  Point* operator->() const { return &(*list_)[index_]; }
  Point& operator[](std::ptrdiff_t step) const { return *(*this + step); }
  Iterator& operator+=(std::ptrdiff_t step) {
    index_ += static_cast<size_t>(step);
    return *this;
  }
  Iterator& operator-=(std::ptrdiff_t step) { return *this += -step; }
  Iterator& operator++() { return *this += 1; }
  Iterator& operator--() { return *this -= 1; }
  Iterator operator++(int) {
    const Iterator before = *this;
    ++*this;
    return before;
  }
  Iterator operator--(int) {
    const Iterator before = *this;
    --*this;
    return before;
  }
  friend Iterator operator+(Iterator at, std::ptrdiff_t step) { return at += step; }
  friend Iterator operator+(std::ptrdiff_t step, Iterator at) { return at += step; }
  friend Iterator operator-(Iterator at, std::ptrdiff_t step) { return at -= step; }
  friend std::ptrdiff_t operator-(const Iterator& a, const Iterator& b) {
    return static_cast<std::ptrdiff_t>(a.index_) - static_cast<std::ptrdiff_t>(b.index_);
  }
  bool operator==(const Iterator& other) const { return index_ == other.index_; }
  auto operator<=>(const Iterator& other) const { return index_ <=> other.index_; }

 private:
  List* list_ = nullptr;
  size_t index_ = 0;
};

inline PointList::iterator PointList::begin() { return {this, 0}; }
inline PointList::iterator PointList::end() { return {this, size_}; }
inline PointList::const_iterator PointList::begin() const { return {this, 0}; }
inline PointList::const_iterator PointList::end() const { return {this, size_}; }

}  // namespace vgps
