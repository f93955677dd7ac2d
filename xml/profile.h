#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "xml/document.h"

// Access to single values as in an INI file. A section is a path of element names below the root,
// separated by "\" ("cfg\gps"; empty for the root itself); a key is an attribute of that element.
//
// If a document is passed, it is used and the disk is not touched. With only a file name (UTF-8),
// the file is loaded, and a setter saves it at once as UTF-8. Setters return 0 on failure. An empty
// attribute reads as the default, like a missing one.
namespace vgps {

// Copies the value and a NUL to `out` and returns the length. `size` is the room in `out` without
// the NUL; for a longer value, the length is returned and `out` is left unchanged.
size_t XmlGetString(std::string_view section, std::string_view key, std::string_view defaultValue,
                    char* out, size_t size, const char* file = nullptr,
                    XmlDocument* document = nullptr);
// The whole value.
std::string XmlGetString(std::string_view section, std::string_view key,
                         std::string_view defaultValue, const char* file,
                         XmlDocument* document = nullptr);
// Creates missing elements of the path. A null key removes the element; a null value removes the
// attribute.
int XmlSetString(std::string_view section, const char* key, const char* value, const char* file,
                 XmlDocument* document = nullptr);
int XmlSetString(std::string_view section, std::string_view key, std::string_view value,
                 const char* file = nullptr, XmlDocument* document = nullptr);

int32_t XmlGetInt(std::string_view section, std::string_view key, int32_t defaultValue,
                  const char* file = nullptr, XmlDocument* document = nullptr);
int XmlSetInt(std::string_view section, std::string_view key, int32_t value, const char* file,
              XmlDocument* document = nullptr);
int64_t XmlGetInt64(std::string_view section, std::string_view key, int64_t defaultValue,
                    const char* file = nullptr, XmlDocument* document = nullptr);
int XmlSetInt64(std::string_view section, std::string_view key, int64_t value, const char* file,
                XmlDocument* document = nullptr);
uint64_t XmlGetUInt64(std::string_view section, std::string_view key, uint64_t defaultValue,
                      const char* file = nullptr, XmlDocument* document = nullptr);
int XmlSetUInt64(std::string_view section, std::string_view key, uint64_t value, const char* file,
                 XmlDocument* document = nullptr);
// Written with six decimals.
float XmlGetFloat(std::string_view section, std::string_view key, float defaultValue,
                  const char* file = nullptr, XmlDocument* document = nullptr);
int XmlSetFloat(std::string_view section, std::string_view key, float value, const char* file,
                XmlDocument* document = nullptr);

// Binary data as upper-case hexadecimal, two digits per byte. Reading returns `size`, or 0 with
// `out` unchanged if the value is missing, has another number of bytes, or contains any other
// character.
size_t XmlGetBinary(std::string_view section, std::string_view key, void* out, size_t size,
                    const char* file = nullptr, XmlDocument* document = nullptr);
int XmlSetBinary(std::string_view section, std::string_view key, const void* bytes, size_t size,
                 const char* file = nullptr, XmlDocument* document = nullptr);

// The element at a path. With `create`, missing elements are created.
XmlElement xmlElementAt(XmlDocument& document, std::string_view section, bool create = false);

}  // namespace vgps
