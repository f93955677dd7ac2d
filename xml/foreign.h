#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "xml/document.h"

// What is asked of documents that other programs wrote.
namespace vgps {

// Whether there are bytes that never occur in text. UTF-16 files, which start with a mark, are
// text.
bool isBinary(std::string_view bytes);

// A text in UTF-8 whose references to entities of its own document type ("<!ENTITY name "text">")
// are replaced by their text, also inside one another. False when that makes it larger than 64 MB
// more or nests more than 16 deep: then it is not meant to be read.
bool expandEntities(std::string_view bytes, std::string& text);

// The tabs that the writer puts in front of lines, in bytes.
uint64_t indentationOf(const XmlDocument& document);

// Whether both have the same elements and attributes, by name and order.
bool haveSameNames(const XmlDocument& a, const XmlDocument& b);

// Why what the writer makes of the document is not well-formed (W3C, "Extensible Markup Language
// (XML) 1.0", fifth edition); empty when it is. All characters above 127 pass as those of names.
std::string whyNotWellFormed(const XmlDocument& document);

}  // namespace vgps
