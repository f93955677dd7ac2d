#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "xml/document.h"

// Any bytes as a file, read strictly or leniently (first byte) and through a window of any size
// (second byte); what was read is walked over, saved, and read and saved again, which must change
// nothing.
namespace vgps {
namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

size_t readPiece(void* from, char* to, size_t size) {
  auto& rest = *static_cast<std::string_view*>(from);
  const size_t count = rest.substr(0, size).copy(to, size);
  rest.remove_prefix(count);
  return count;
}

// Looks at everything; true when a name is escaped.
bool walk(XmlElement root) {
  bool escapedNames = false;
  std::string scratch;
  for (const XmlElement element : root.Query("? == \"*\"")) {
    escapedNames = escapedNames || element.storedName().find('&') != std::string_view::npos;
    check(element.GetElementName().size() == element.GetElementName(nullptr));
    check(element.text(scratch) == element.GetText());
    for (const XmlAttribute& attribute : element.GetVariables()) {
      escapedNames = escapedNames || attribute.storedName().find('&') != std::string_view::npos;
      check(attribute.GetValue().size() == attribute.GetValue(nullptr));
    }
    for (const XmlItem& comment : element.GetComments()) {
      check(comment.position <= element.GetChildrenNum());
    }
  }
  return escapedNames;
}

// Nothing that a file holds takes many times its size.
void checkBounded(const XmlTree& tree, size_t size) {
  const uint64_t rows = tree.elements.size() * sizeof(XmlElementRow) +
                        tree.attributes.size() * sizeof(XmlAttributeRow) +
                        tree.wideAttributes.size() * sizeof(XmlWideAttributeRow) +
                        tree.items.size() * sizeof(XmlItemRow);
  check(rows + tree.text.used() <= 16 * size + 1024);
}

void load(std::string_view text, bool lenient, size_t window) {
  XmlTree tree;
  tree.text.open();
  XmlPrologue outside;
  std::string_view rest = text;
  tree.root = readXml(tree, {readPiece, &rest}, window, {lenient}, outside);
  tree.text.seal();
  checkBounded(tree, text.size());
  XmlDocument whole;
  const bool loaded = bool(whole.Load(text, XmlLoadMode::text, {lenient}));
  if (text.size() < 3 || (text[0] != '\xEF' && text[0] != '\xFE' && text[0] != '\xFF')) {
    check(loaded == (tree.root != kNoRow));
  }
  constexpr uint64_t kLargest = 1 << 20;
  if (!loaded || tree.root == kNoRow || whole.savedSize() > kLargest) return;
  const bool escapedNames = walk(whole.GetRootElement());
  std::string saved;
  check(whole.saveText(saved) == 1 && saved.size() == whole.savedSize());
  XmlDocument again;
  check(bool(again.Load(saved, XmlLoadMode::text)));
  std::string savedAgain;
  check(again.saveText(savedAgain) == 1);
  check(escapedNames || savedAgain == saved);
  again.SetRootElement(XmlElement(&tree, tree.root));
  check(again.GetRootElement().GetSubtreeNum() == XmlElement(&tree, tree.root).GetSubtreeNum());
}

}  // namespace
}  // namespace vgps

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 2, size - 2);
  vgps::load(text, (data[0] & 1) != 0, size_t{data[1]} + 1);
  return 0;
}
