#include "xml/text_store.h"

#include <algorithm>
#include <bit>

#include "base/allocation.h"

namespace vgps {

const char* TextStore::sideAt(uint32_t offset) const {
  const uint64_t inSide = offset - sideBase_;
  const auto chunk = static_cast<size_t>(std::bit_width(inSide / kFirstChunk + 1) - 1);
  return chunks_[chunk].data() + (inSide - chunkStart(chunk));
}

XmlSpan TextStore::add(std::string_view text) {
  if (open_) return addToBlock(text);
  while (sideUsed_ + text.size() > chunkStart(chunk_ + 1)) {
    sideUsed_ = chunkStart(++chunk_);
    if (sideBase_ + sideUsed_ + text.size() > kLimit) failAllocation();
  }
  XmlBuffer& chunk = chunks_[chunk_];
  if (!chunk && !chunk.resize(chunkStart(chunk_ + 1) - chunkStart(chunk_))) failAllocation();
  const XmlSpan span{static_cast<uint32_t>(sideBase_ + sideUsed_),
                     static_cast<uint32_t>(text.size())};
  overwrite(span.offset, text);
  sideUsed_ += text.size();
  return span;
}

XmlSpan TextStore::addToBlock(std::string_view text) {
  if (!block_ || block_.size() - used_ < text.size()) {
    const uint64_t needed = used_ + text.size();
    overflowed_ = overflowed_ || needed > kLimit;
    if (overflowed_) return {};
    const uint64_t grown = std::max<uint64_t>(needed, block_.size() * 2) + kFirstChunk;
    overflowed_ = !block_.resize(std::min(grown, kLimit));
    if (overflowed_) return {};
  }
  if (!text.empty()) std::memcpy(block_.data() + used_, text.data(), text.size());
  used_ += text.size();
  return {static_cast<uint32_t>(used_ - text.size()), static_cast<uint32_t>(text.size())};
}

void TextStore::seal() {
  open_ = false;
  // One extra byte, so that an empty string at the end still has an offset inside the block.
  sideBase_ = static_cast<uint32_t>(used_ + 1);
  if (!block_.resize(used_ + 1)) failAllocation();
}

}  // namespace vgps
