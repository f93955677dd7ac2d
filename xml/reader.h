#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "xml/tree.h"
#include "xml/window.h"

namespace vgps {

// How a text is read. The default is the format of this program's own files.
struct XmlReading {
  // For files of other programs: values in single quotes, ">" inside values, blanks around "=",
  // CR and LF end a name, references by number are decoded, and CDATA is ordinary text.
  bool lenient = false;
};

// A comment outside the root.
struct XmlComment {
  std::string text;
  int position = 0;  // 0 before the root element, 1 after it
};

// A place in a text, both from 1; columns count bytes.
struct XmlPlace {
  uint64_t line = 1;
  uint64_t column = 1;
};

// What the reader found beside the tree.
struct XmlOutside {
  std::string declaration;  // "<?xml ... ?>" as it stands; empty when there is none
  std::vector<XmlComment> comments;
  bool anyText = false;      // there was at least one byte
  bool rootEnds = false;     // the root's own tags are whole, the closing one included
  bool outOfMemory = false;  // the text is larger than memory or the tree's TextStore
  XmlPlace stray;            // without a root: where an element should have begun
};

// Reads a text into new elements of `tree`. The index of the first element at the top level,
// without a parent; kNoRow when the text holds none. Linear in the text, without recursion; an
// element that is never closed ends with the text.
uint32_t readXml(XmlTree& tree, XmlSource source, size_t windowSize, const XmlReading& reading,
                 XmlOutside& outside);
// `text` in one piece.
uint32_t readXml(XmlTree& tree, std::string_view text, const XmlReading& reading,
                 XmlOutside& outside);

}  // namespace vgps
