#include "track/point_list.h"

#include <utility>

namespace vgps {

PointList::PointList(PointList&& other) noexcept
    : blocks_(std::move(other.blocks_)), size_(std::exchange(other.size_, 0)) {
  other.blocks_.clear();
}

PointList& PointList::operator=(PointList&& other) noexcept {
  blocks_.swap(other.blocks_);
  std::swap(size_, other.size_);
  return *this;
}

PointList& PointList::operator=(const PointList& other) {
  if (this == &other) return *this;
  clear();
  blocks_.reserve(other.blocks_.size());
  for (const auto& block : other.blocks_) blocks_.push_back(std::make_unique<Block>(*block));
  size_ = other.size_;
  return *this;
}

void PointList::truncate(size_t size) {
  if (size >= size_) return;
  size_ = size;
  blocks_.resize((size + kBlock - 1) / kBlock);
}

void PointList::addBlock() { blocks_.push_back(std::make_unique_for_overwrite<Block>()); }

}  // namespace vgps
