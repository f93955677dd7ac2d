#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "xml/document.h"

// Values addressed like those of an INI file: by a section, which is the path of element names
// below the root with "\" between them ("cfg\gps"; empty for the root itself), and a key, which is
// an attribute there.
//
// With a document, that is used and nothing is read or written on disk. With a file name (UTF-8)
// alone, the file is loaded, and a setter saves it at once as UTF-8. Setters return 0 when they
// failed. An attribute that holds nothing reads as the default, like one that is not there.
namespace vgps {

// The length of the value, copied to `out` with a NUL behind it. `size` is what `out` holds
// without that NUL: when the value is longer, its length is returned and `out` left alone.
size_t XmlGetString(std::string_view section, std::string_view key, std::string_view defaultValue,
                    char* out, size_t size, const char* file = nullptr,
                    XmlDocument* document = nullptr);
// In full length.
std::string XmlGetString(std::string_view section, std::string_view key,
                         std::string_view defaultValue, const char* file,
                         XmlDocument* document = nullptr);
// Creates what is missing of the path. Without a key the element of the path is removed, without a
// value the attribute.
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
// Six decimals.
float XmlGetFloat(std::string_view section, std::string_view key, float defaultValue,
                  const char* file = nullptr, XmlDocument* document = nullptr);
int XmlSetFloat(std::string_view section, std::string_view key, float value, const char* file,
                XmlDocument* document = nullptr);

// A block of bytes as upper-case hexadecimal, two digits a byte. Reading gives `size`; 0, and `out`
// is left alone, when the value is missing, holds another number of bytes or any other character.
size_t XmlGetBinary(std::string_view section, std::string_view key, void* out, size_t size,
                    const char* file = nullptr, XmlDocument* document = nullptr);
int XmlSetBinary(std::string_view section, std::string_view key, const void* bytes, size_t size,
                 const char* file = nullptr, XmlDocument* document = nullptr);

// The element of a path; with `create` what is missing of it is created.
XmlElement xmlElementAt(XmlDocument& document, std::string_view section, bool create = false);

}  // namespace vgps
