#include "xml/tree.h"

#include <bit>

#include "base/allocation.h"

namespace vgps {
namespace {

// The number of rows allocated for `count` attributes once the list has spare space.
uint32_t roomyCount(uint32_t count) { return std::bit_ceil(count); }

}  // namespace

uint32_t XmlTree::nextInSubtree(uint32_t top, uint32_t element, uint32_t& depth) const {
  const uint32_t child = firstChild(element);
  if (child == kNoRow) return nextBeside(top, element, depth);
  ++depth;
  return child;
}

uint32_t XmlTree::nextBeside(uint32_t top, uint32_t element, uint32_t& depth) const {
  while (element != top) {
    const uint32_t sibling = nextSibling(element);
    if (sibling != kNoRow) return sibling;
    element = elements[element].parent;
    --depth;
  }
  return kNoRow;
}

uint32_t XmlTree::newElement(uint32_t name) {
  uint32_t element = firstFree;
  if (element == kNoRow) {
    element = elements.push({});
  } else {
    firstFree = elements[element].lastItem;
    elements[element] = {};
  }
  elements[element].name = name;
  return element;
}

void XmlTree::detach(uint32_t child) {
  const uint32_t parent = elements[child].parent;
  if (parent == kNoRow) return;
  XmlElementRow& from = elements[parent];
  uint32_t before = from.lastChild;
  while (elements[before].next != child) before = elements[before].next;
  const bool isFirst = before == from.lastChild;
  elements[before].next = elements[child].next;
  if (from.lastChild == child) from.lastChild = before == child ? kNoRow : before;
  for (uint32_t item = firstItem(parent); item != kNoRow; item = nextItem(parent, item)) {
    if (items[item].after == child) items[item].after = isFirst ? kNoRow : before;
  }
  elements[child].parent = kNoRow;
  elements[child].next = kNoRow;
}

void XmlTree::release(uint32_t element) {
  uint32_t depth = 0;
  for (uint32_t at = element; at != kNoRow; at = nextInSubtree(element, at, depth)) {
    elements[at].lastItem = firstFree;  // the traversal only needs parents, siblings, and children
    firstFree = at;
  }
}

void XmlTree::destroy(uint32_t element) {
  detach(element);
  release(element);
}

void XmlTree::destroyChildren(uint32_t element) {
  if (elements[element].textOnly) return;
  for (uint32_t child = firstChild(element), next = kNoRow; child != kNoRow; child = next) {
    next = nextSibling(child);
    release(child);
  }
  elements[element].lastChild = kNoRow;
  for (uint32_t item = firstItem(element); item != kNoRow; item = nextItem(element, item)) {
    items[item].after = kNoRow;
  }
}

uint32_t XmlTree::newAttribute(uint32_t element) {
  XmlElementRow& row = elements[element];
  const uint32_t count = row.attributeCount;
  if (count == 0) {
    row.firstAttribute = attributes.size();
    row.attributesRoomy = 0;
  }
  if (!row.attributesRoomy && row.firstAttribute + count == attributes.size()) {
    attributes.push({});
  } else if (!row.attributesRoomy || count == roomyCount(count)) {
    const uint32_t moved = attributes.size();
    for (uint32_t i = 0; i < roomyCount(count + 1); ++i) {
      attributes.push(i < count ? attributes[row.firstAttribute + i] : XmlAttributeRow{});
    }
    row.firstAttribute = moved;
    row.attributesRoomy = 1;
  }
  row.setAttributeCount(count + 1);
  return row.firstAttribute + count;
}

void XmlTree::removeAttribute(uint32_t element, uint32_t position) {
  XmlElementRow& row = elements[element];
  for (uint32_t i = position; i + 1 < row.attributeCount; ++i) {
    attributes[row.firstAttribute + i] = attributes[row.firstAttribute + i + 1];
  }
  row.setAttributeCount(row.attributeCount - 1);
}

void XmlTree::setValue(uint32_t row, std::string_view value) {
  const XmlAttributeRow old = attributes[row];
  const XmlSpan span = valueSpan(old);
  if (value.size() > span.length) {
    attributes[row] = attributeRow(nameNumber(old), text.add(value));
    return;
  }
  text.overwrite(span.offset, value);
  if (old.name == XmlAttributeRow::kWide) {
    wideAttributes[old.value].value.length = static_cast<uint32_t>(value.size());
  } else {
    attributes[row].length = static_cast<uint16_t>(value.size());
  }
}

// The last item that comes before the children following `after`.
uint32_t XmlTree::lastItemUpTo(uint32_t element, uint32_t after) const {
  uint32_t found = kNoRow;
  uint32_t item = firstItem(element);
  for (uint32_t child = kNoRow;;) {
    while (item != kNoRow && items[item].after == child) {
      found = item;
      item = nextItem(element, item);
    }
    if (child == after) return found;
    child = child == kNoRow ? firstChild(element) : nextSibling(child);
  }
}

uint32_t XmlTree::newItem(XmlItemKind kind, XmlSpan stored, uint32_t after) {
  if (items.size() > kMostItems) failAllocation();
  XmlItemRow row{stored.offset, stored.length, after, 0, 0};
  row.kind = static_cast<uint32_t>(kind) & 3U;
  return items.push(row);
}

void XmlTree::appendItemRow(uint32_t element, XmlItemKind kind, XmlSpan stored) {
  XmlElementRow& owner = elements[element];
  const uint32_t item = newItem(kind, stored, owner.lastChild);
  const uint32_t last = owner.lastItem;
  items[item].next = (last == kNoRow ? item : items[last].next) & kMostItems;
  if (last != kNoRow) items[last].next = item & kMostItems;
  owner.lastItem = item;
}

void XmlTree::unfoldText(uint32_t element) {
  XmlElementRow& owner = elements[element];
  const XmlSpan stored = owner.text();
  owner.textOnly = 0;
  owner.lastChild = kNoRow;
  owner.lastItem = kNoRow;
  appendItemRow(element, XmlItemKind::content, stored);
}

void XmlTree::addItem(uint32_t element, XmlItemKind kind, XmlSpan stored, uint32_t after) {
  XmlElementRow& owner = elements[element];
  if (after == lastChild(element)) {
    appendItem(element, kind, stored);
    return;
  }
  const uint32_t item = newItem(kind, stored, after);
  const uint32_t found = owner.lastItem == kNoRow ? kNoRow : lastItemUpTo(element, after);
  const uint32_t before = found == kNoRow ? owner.lastItem : found;
  items[item].next = (before == kNoRow ? item : items[before].next) & kMostItems;
  if (before != kNoRow) items[before].next = item & kMostItems;
  if (before == kNoRow || found == owner.lastItem) owner.lastItem = item;
}

void XmlTree::removeItems(uint32_t element, XmlItemKind kind) {
  if (elements[element].textOnly) {
    if (kind != XmlItemKind::content) return;
    elements[element].textOnly = 0;
    elements[element].lastChild = kNoRow;
    elements[element].lastItem = kNoRow;
    return;
  }
  uint32_t item = firstItem(element);
  const uint32_t oldLast = elements[element].lastItem;
  uint32_t first = kNoRow;
  uint32_t last = kNoRow;
  while (item != kNoRow) {
    const uint32_t next = item == oldLast ? kNoRow : uint32_t{items[item].next};
    if (items[item].kind != static_cast<uint32_t>(kind)) {
      if (last == kNoRow) first = item;
      if (last != kNoRow) items[last].next = item & kMostItems;
      last = item;
    }
    item = next;
  }
  if (last != kNoRow) items[last].next = first & kMostItems;
  elements[element].lastItem = last;
}

}  // namespace vgps
