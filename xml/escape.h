#pragma once

#include <string>
#include <string_view>

// Strings inside a document are stored escaped, with & < > " ' as entities. Numeric references
// ("&#233;") pass through this layer unchanged.
namespace vgps {

// Whether `escapeXml` would change the text.
bool needsEscape(std::string_view plain);

std::string escapeXml(std::string_view plain);

// The reverse, in a single pass: "&amp;lt;" becomes "&lt;". An "&" that does not start one of the
// five entities stays.
std::string unescapeXml(std::string_view stored);
size_t unescapedLength(std::string_view stored);

// Whether `stored` unescapes to `plain`, without building the string.
bool readsAs(std::string_view stored, std::string_view plain);

// Replaces every "&#233;" and "&#xE9;" by its character, still in escaped form ("&#38;" becomes
// "&amp;"). Used when reading other programs' files leniently.
std::string decodeReferences(std::string_view stored);

}  // namespace vgps
