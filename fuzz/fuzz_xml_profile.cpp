#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "xml/profile.h"

// A document and calls on it, one a line: a letter, then section, key and value with "|" between.
// What was set must read as it was set; the document must save and load at the end.
namespace vgps {
namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

std::string_view cut(std::string_view& rest, char mark) {
  const std::string_view piece = rest.substr(0, rest.find(mark));
  rest.remove_prefix(piece.size() < rest.size() ? piece.size() + 1 : piece.size());
  return piece;
}

void setAndRead(XmlDocument& document, std::string_view section, std::string_view key,
                std::string_view value) {
  check(XmlSetString(section, key, value, nullptr, &document) == 1);
  check(XmlGetString(section, key, "d", nullptr, &document) == (value.empty() ? "d" : value));
  char buffer[8];
  const size_t length =
      XmlGetString(section, key, "d", buffer, sizeof buffer - 1, nullptr, &document);
  check(length == (value.empty() ? 1 : value.size()));
  XmlGetInt(section, key, 7, nullptr, &document);
  XmlGetFloat(section, key, 7, nullptr, &document);
  XmlGetUInt64(section, key, 7, nullptr, &document);
}

void setNumbers(XmlDocument& document, std::string_view section, std::string_view key,
                std::string_view value) {
  XmlSetBinary(section, key, value.data(), value.size(), nullptr, &document);
  std::string back(value.size(), '\0');
  const size_t length = XmlGetBinary(section, key, back.data(), back.size(), nullptr, &document);
  check(length == value.size() && back == value);
  const auto number = static_cast<int64_t>(std::hash<std::string_view>()(value));
  XmlSetInt64(section, key, number, nullptr, &document);
  check(XmlGetInt64(section, key, 0, nullptr, &document) == number);
  XmlSetInt(section, key, static_cast<int32_t>(number), nullptr, &document);
  check(XmlGetInt(section, key, 0, nullptr, &document) == static_cast<int32_t>(number));
}

void addTo(XmlElement element, std::string_view key, std::string_view value) {
  element.AddContent(value, key.size());
  element.AddComment(value, value.size());
  element.SetElementName(key);
  element.AddElement(value).SetText(key);
  element.AddVariable(key, value);
  check(element.FindElement(value) && element.FindVariable(key) >= 0);
}

void call(XmlDocument& document, std::string_view line) {
  const char what = line.empty() ? '\0' : line.front();
  line.remove_prefix(line.empty() ? 0 : 1);
  const std::string_view section = cut(line, '|');
  const std::string_view key = cut(line, '|');
  const std::string name(key);
  switch (what) {
    case 's': return setAndRead(document, section, key, line);
    case 'n': return setNumbers(document, section, key, line);
    case 'v': XmlSetString(section, name.c_str(), nullptr, nullptr, &document); break;
    case 'k': XmlSetString(section, nullptr, nullptr, nullptr, &document); break;
    case 'a': return addTo(xmlElementAt(document, section, true), key, line);
    case 'r': xmlElementAt(document, section).RemoveElement(line.size()); break;
    case 'd': xmlElementAt(document, section).RemoveAllElements(); break;
    case 'm': xmlElementAt(document, section).AddElement(xmlElementAt(document, key)); break;
    case 'l': xmlElementAt(document, section).AddElement(document.createElement(line)); break;
    case 't': document.SetRootElement(xmlElementAt(document, section)); break;
    case 'q': xmlElementAt(document, section).Query(line); break;
    case 'w': xmlElementAt(document, section).RemoveVariable(line.size()); break;
    default: break;
  }
}

}  // namespace
}  // namespace vgps

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vgps;
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  XmlDocument document;
  document.Load(cut(rest, '\n'), XmlLoadMode::text);
  while (!rest.empty()) call(document, cut(rest, '\n'));
  std::string saved;
  if (document.savedSize() > 1 << 20) return 0;
  check(document.saveText(saved) == 1 && saved.size() == document.savedSize());
  XmlDocument again;
  again.Load(saved, XmlLoadMode::text);
  return 0;
}
