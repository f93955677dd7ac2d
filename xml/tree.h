#pragma once

#include <cstdint>
#include <string_view>

#include "xml/growing_array.h"
#include "xml/name_table.h"
#include "xml/text_store.h"

namespace vgps {

constexpr uint32_t kNoRow = UINT32_MAX;

enum class XmlItemKind : uint32_t { comment = 0, content = 1, cdata = 2 };

// One element. Lists are rings known by their last member, so that both ends are one step away:
// the first child is `elements[lastChild].next`, likewise the items. An element that holds one text
// content and nothing else, as most of a GPX file's do, keeps it here: `textOnly` is set, and
// lastChild and lastItem are the offset and the length of the text.
struct XmlElementRow {
  uint32_t parent = kNoRow;  // kNoRow at a root and at an element not yet placed
  uint32_t next = kNoRow;    // sibling
  uint32_t lastChild = kNoRow;
  uint32_t lastItem = kNoRow;  // of a free row: the next free one
  uint32_t firstAttribute = 0;
  uint32_t attributeCount : 29 = 0;
  uint32_t attributesRoomy : 1 = 0;  // the rows reach to the next power of two
  uint32_t spaces : 1 = 0;           // indented with spaces instead of tabs
  uint32_t textOnly : 1 = 0;
  uint32_t name = 0;

  void setAttributeCount(uint32_t count) { attributeCount = count & (UINT32_MAX >> 3); }
  XmlSpan text() const { return {lastChild, lastItem}; }
};
static_assert(sizeof(XmlElementRow) == 28);

// One attribute. What does not fit (the 65,535th different name and later ones, a value of over
// 65,535 bytes) is a wide row: `name` is kWide and `value` its index.
struct XmlAttributeRow {
  static constexpr uint16_t kWide = UINT16_MAX;

  uint32_t value = 0;  // offset in the text
  uint16_t name = 0;
  uint16_t length = 0;
};
static_assert(sizeof(XmlAttributeRow) == 8);

struct XmlWideAttributeRow {
  uint32_t name = 0;
  XmlSpan value;
};

// A comment, text content or CDATA section of an element.
struct XmlItemRow {
  uint32_t offset = 0;
  uint32_t length = 0;
  uint32_t after = kNoRow;  // the child it follows; kNoRow before the first
  uint32_t next : 30 = 0;
  uint32_t kind : 2 = 0;
};
static_assert(sizeof(XmlItemRow) == 16);

// The element tree of one document: rows by index over one TextStore. Names, values and texts
// are held in their stored (escaped) form. Nothing here recurses.
struct XmlTree {
  TextStore text;
  NameTable names;
  GrowingArray<XmlElementRow> elements;
  GrowingArray<XmlAttributeRow> attributes;
  GrowingArray<XmlWideAttributeRow> wideAttributes;
  GrowingArray<XmlItemRow> items;
  uint32_t root = kNoRow;
  uint32_t firstFree = kNoRow;

  std::string_view nameOf(const XmlElementRow& element) const {
    return names.view(text, element.name);
  }
  std::string_view nameOf(const XmlAttributeRow& row) const {
    return names.view(text, nameNumber(row));
  }
  std::string_view valueOf(const XmlAttributeRow& row) const { return text.view(valueSpan(row)); }
  uint32_t nameNumber(const XmlAttributeRow& row) const {
    return row.name == XmlAttributeRow::kWide ? wideAttributes[row.value].name : row.name;
  }
  XmlSpan valueSpan(const XmlAttributeRow& row) const {
    if (row.name == XmlAttributeRow::kWide) return wideAttributes[row.value].value;
    return {row.value, row.length};
  }
  std::string_view textOf(const XmlItemRow& item) const {
    return text.view({item.offset, item.length});
  }

  uint32_t lastChild(uint32_t element) const {
    return elements[element].textOnly ? kNoRow : elements[element].lastChild;
  }
  uint32_t firstChild(uint32_t element) const {
    const uint32_t last = lastChild(element);
    return last == kNoRow ? kNoRow : elements[last].next;
  }
  // kNoRow behind the last one. `element` has a parent.
  uint32_t nextSibling(uint32_t element) const {
    const XmlElementRow& row = elements[element];
    return elements[row.parent].lastChild == element ? kNoRow : row.next;
  }
  // The item rows; none of an element that is `textOnly`.
  uint32_t firstItem(uint32_t element) const {
    const XmlElementRow& row = elements[element];
    return row.textOnly || row.lastItem == kNoRow ? kNoRow : uint32_t{items[row.lastItem].next};
  }
  uint32_t nextItem(uint32_t element, uint32_t item) const {
    return elements[element].lastItem == item ? kNoRow : uint32_t{items[item].next};
  }
  // The next element of the subtree of `top` in document order; kNoRow at its end. `depth`
  // (levels below `top`) follows along.
  uint32_t nextInSubtree(uint32_t top, uint32_t element, uint32_t& depth) const;
  // The same, leaving out what lies under `element`.
  uint32_t nextBeside(uint32_t top, uint32_t element, uint32_t& depth) const;

  // A new element without a parent.
  uint32_t newElement(uint32_t name);
  void appendChild(uint32_t parent, uint32_t child) {
    XmlElementRow& into = elements[parent];
    if (into.textOnly) unfoldText(parent);
    if (into.lastChild == kNoRow) {
      elements[child].next = child;
    } else {
      elements[child].next = elements[into.lastChild].next;
      elements[into.lastChild].next = child;
    }
    into.lastChild = child;
    elements[child].parent = parent;
  }
  // Takes `child` out of its parent's list; what followed it moves behind its predecessor.
  void detach(uint32_t child);
  // Detaches and frees `element` with everything under it.
  void destroy(uint32_t element);
  void destroyChildren(uint32_t element);

  // A copy of `element` of another tree with everything under it, without a parent.
  uint32_t copyFrom(const XmlTree& other, uint32_t element);

  // Appends an attribute row, which the caller sets; its index.
  uint32_t newAttribute(uint32_t element);
  void removeAttribute(uint32_t element, uint32_t position);
  XmlAttributeRow attributeRow(uint32_t name, XmlSpan value) {
    if (name >= XmlAttributeRow::kWide || value.length > UINT16_MAX) {
      return {wideAttributes.push({name, value}), XmlAttributeRow::kWide, 0};
    }
    return {value.offset, static_cast<uint16_t>(name), static_cast<uint16_t>(value.length)};
  }
  // The stored value of an attribute that exists; in place where it fits.
  void setValue(uint32_t row, std::string_view value);
  // Adds an item behind the child `after`, last among those that stand there.
  void addItem(uint32_t element, XmlItemKind kind, XmlSpan stored, uint32_t after);
  // The same behind everything else, as the reader does.
  void appendItem(uint32_t element, XmlItemKind kind, XmlSpan stored) {
    XmlElementRow& owner = elements[element];
    if (kind == XmlItemKind::content && owner.lastChild == kNoRow && owner.lastItem == kNoRow) {
      owner.textOnly = 1;
      owner.lastChild = stored.offset;
      owner.lastItem = stored.length;
    } else {
      if (owner.textOnly) unfoldText(element);
      appendItemRow(element, kind, stored);
    }
  }
  void removeItems(uint32_t element, XmlItemKind kind);

 private:
  static constexpr uint32_t kMostItems = (1U << 30) - 1;

  uint32_t newItem(XmlItemKind kind, XmlSpan stored, uint32_t after);
  void appendItemRow(uint32_t element, XmlItemKind kind, XmlSpan stored);
  // Gives the text of a `textOnly` element a row of its own.
  void unfoldText(uint32_t element);
  uint32_t lastItemUpTo(uint32_t element, uint32_t after) const;
  uint32_t copyRow(const XmlTree& other, uint32_t element);
  void copyItems(const XmlTree& other, uint32_t from, uint32_t to);
  void release(uint32_t element);
};

}  // namespace vgps
