#include "xml/tree.h"

namespace vgps {

uint32_t XmlTree::copyRow(const XmlTree& other, uint32_t element) {
  const XmlElementRow& from = other.elements[element];
  const uint32_t copy = newElement(names.number(text, other.nameOf(from)));
  elements[copy].spaces = from.spaces;
  for (uint32_t i = 0; i < from.attributeCount; ++i) {
    const XmlAttributeRow& attribute = other.attributes[from.firstAttribute + i];
    const uint32_t name = names.number(text, other.nameOf(attribute));
    const uint32_t row = newAttribute(copy);
    attributes[row] = attributeRow(name, text.add(other.valueOf(attribute)));
  }
  return copy;
}

// Both elements must have the same number of children.
void XmlTree::copyItems(const XmlTree& other, uint32_t from, uint32_t to) {
  const XmlElementRow& whole = other.elements[from];
  if (whole.textOnly) {
    appendItem(to, XmlItemKind::content, text.add(other.text.view(whole.text())));
    return;
  }
  uint32_t after = kNoRow;
  uint32_t copiedAfter = kNoRow;
  for (uint32_t item = other.firstItem(from); item != kNoRow; item = other.nextItem(from, item)) {
    const XmlItemRow& row = other.items[item];
    while (after != row.after) {
      after = after == kNoRow ? other.firstChild(from) : other.nextSibling(after);
      copiedAfter = copiedAfter == kNoRow ? firstChild(to) : nextSibling(copiedAfter);
    }
    addItem(to, static_cast<XmlItemKind>(row.kind), text.add(other.textOf(row)), copiedAfter);
  }
}

uint32_t XmlTree::copyFrom(const XmlTree& other, uint32_t element) {
  const uint32_t top = copyRow(other, element);
  uint32_t depth = 0;
  uint32_t copy = top;
  for (uint32_t from = element;;) {
    const uint32_t before = depth;
    from = other.nextInSubtree(element, from, depth);
    if (from == kNoRow) break;
    // One level deeper adds a child, the same level a sibling; each level up moves to a parent.
    for (uint32_t level = before + 1; level > depth; --level) copy = elements[copy].parent;
    const uint32_t next = copyRow(other, from);
    appendChild(copy, next);
    copy = next;
  }
  uint32_t to = top;
  uint32_t sameDepth = 0;
  depth = 0;
  for (uint32_t from = element; from != kNoRow;) {
    copyItems(other, from, to);
    from = other.nextInSubtree(element, from, depth);
    to = nextInSubtree(top, to, sameDepth);
  }
  return top;
}

}  // namespace vgps
