#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "xml/document.h"

// Functions for documents written by other programs.
namespace vgps {

// Whether there are bytes that never occur in text. UTF-16 files, which start with a mark, are
// text.
bool isBinary(std::string_view bytes);

// Replaces references to entities of the text's own document type ("<!ENTITY name "text">") by
// their text, also nested ones; the text is UTF-8. Returns false if this would add more than 64 MB
// or exceed 16 levels of nesting: such a text is hostile.
bool expandEntities(std::string_view bytes, std::string& text);

// The number of bytes that the writer needs for indentation.
uint64_t indentationOf(const XmlDocument& document);

// Whether both have the same elements and attributes, in name and order.
bool haveSameNames(const XmlDocument& a, const XmlDocument& b);

// Returns why the written document would not be well-formed (W3C, "Extensible Markup Language (XML)
// 1.0", fifth edition); empty if it is. All characters above 127 are accepted in names.
std::string whyNotWellFormed(const XmlDocument& document);

}  // namespace vgps
