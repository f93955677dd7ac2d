#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "xml/tree.h"
#include "xml/window.h"

namespace vgps {

// Reading options. The default is the format of this program's own files.
struct XmlReadOptions {
  // For other programs' files: accepts values in single quotes, ">" inside values, blanks around
  // "=", and CR or LF after a name; decodes numeric references; treats CDATA as ordinary text.
  bool lenient = false;
};

// A comment outside the root.
struct XmlComment {
  std::string text;
  int position = 0;  // 0 before the root element, 1 after it
};

// A position in a text. Both numbers start at 1; columns count bytes.
struct XmlPlace {
  uint64_t line = 1;
  uint64_t column = 1;
};

// What the reader found outside the tree.
struct XmlPrologue {
  std::string declaration;  // "<?xml ... ?>" verbatim; empty if there is none
  std::vector<XmlComment> comments;
  bool anyText = false;      // there was at least one byte
  bool rootEnds = false;     // the root's own tags are whole, the closing one included
  bool outOfMemory = false;  // the text is larger than memory or the tree's TextStore
  XmlPlace stray;            // if there is no root: where an element was expected
};

// Reads a text into new elements of `tree`. Returns the index of the root element, or kNoRow if the
// text contains none. Takes linear time, without recursion. An element that is never closed ends
// with the text.
uint32_t readXml(XmlTree& tree, XmlSource source, size_t windowSize, const XmlReadOptions& reading,
                 XmlPrologue& outside);
// The same for a text in memory.
uint32_t readXml(XmlTree& tree, std::string_view text, const XmlReadOptions& reading,
                 XmlPrologue& outside);

}  // namespace vgps
