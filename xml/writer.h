#pragma once

#include <cstddef>
#include <cstdint>

#include "xml/tree.h"

namespace vgps {

// The bytes that `renderXml` makes of `element` as the root of a document.
uint64_t renderedSize(const XmlTree& tree, uint32_t element);

// Writes `element` with everything under it behind the `used` bytes of `buffer`, which grows up to
// `most` bytes where it must: one line for each tag, text and comment, CR LF at each end, one tab
// (or blank) for each level. Returns the bytes used then; 0 when they would be more than `most` or
// than the memory has.
size_t renderXml(const XmlTree& tree, uint32_t element, XmlBuffer& buffer, size_t used,
                 uint64_t most);

}  // namespace vgps
