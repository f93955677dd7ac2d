#pragma once

#include <cstddef>
#include <cstdint>

#include "xml/tree.h"

namespace vgps {

// The number of bytes that `renderXml` produces for `element` as the root of a document.
uint64_t renderedSize(const XmlTree& tree, uint32_t element);

// Writes `element` and everything under it after the first `used` bytes of `buffer`, which may grow
// up to `most` bytes: one line per tag, text, and comment, ended by CR LF and indented by one tab
// (or blank) per level. Returns the new number of used bytes, or 0 if that would exceed `most` or
// the available memory.
size_t renderXml(const XmlTree& tree, uint32_t element, XmlBuffer& buffer, size_t used,
                 uint64_t most);

}  // namespace vgps
