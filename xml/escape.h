#pragma once

#include <string>
#include <string_view>

// Strings inside a document are stored escaped: & < > " ' as entities. A reference by number
// ("&#233;") is no business of this layer: it is neither made nor undone, and passes through.
namespace vgps {

// True when `escapeXml` would change something.
bool needsEscape(std::string_view plain);

std::string escapeXml(std::string_view plain);

// The reverse, once from left to right: "&amp;lt;" becomes "&lt;". An "&" that begins none of the
// five entities stays.
std::string unescapeXml(std::string_view stored);
size_t unescapedLength(std::string_view stored);

// Whether `stored` reads as `plain`, without making the string.
bool readsAs(std::string_view stored, std::string_view plain);

// Every "&#233;" and "&#xE9;" replaced by its character, in stored form (so "&#38;" becomes
// "&amp;"). For foreign files read leniently.
std::string decodeReferences(std::string_view stored);

}  // namespace vgps
