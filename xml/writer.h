#pragma once

#include <cstdint>

#include "xml/tree.h"

namespace vgps {

// The bytes that `renderXml` makes of `element` as the root of a document.
uint64_t renderedSize(const XmlTree& tree, uint32_t element);

// Writes `element` with everything under it to `out`, which has room for `renderedSize` bytes and
// XmlBuffer::kTail more: one line for each tag, text and comment, CR LF at each end, one tab (or
// blank) for each level. Returns the end of what was written.
char* renderXml(const XmlTree& tree, uint32_t element, char* out);

}  // namespace vgps
