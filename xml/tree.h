#pragma once

#include <cstdint>
#include <string_view>

#include "xml/growing_array.h"
#include "xml/name_table.h"
#include "xml/text_store.h"

namespace vgps {

constexpr uint32_t kNoRow = UINT32_MAX;

enum class XmlItemKind : uint32_t { comment = 0, content = 1, cdata = 2 };

// One element. Each list is a ring that is known by its last member, so that both ends are reached
// in one step: the first child is `elements[lastChild].next`; items work the same way. An element
// with a single text and nothing else, like most in a GPX file, stores the text here: `textOnly` is
// set, and lastChild and lastItem are the text's offset and length.
struct XmlElementRow {
  uint32_t parent = kNoRow;  // kNoRow for a root and for an element without a parent yet
  uint32_t next = kNoRow;    // sibling
  uint32_t lastChild = kNoRow;
  uint32_t lastItem = kNoRow;  // in a free row: the next free row
  uint32_t firstAttribute = 0;
  uint32_t attributeCount : 29 = 0;
  uint32_t attributesRoomy : 1 = 0;  // space is allocated up to the next power of two
  uint32_t spaces : 1 = 0;           // indented with spaces instead of tabs
  uint32_t textOnly : 1 = 0;
  uint32_t name = 0;

  void setAttributeCount(uint32_t count) { attributeCount = count & (UINT32_MAX >> 3); }
  XmlSpan text() const { return {lastChild, lastItem}; }
};
static_assert(sizeof(XmlElementRow) == 28);

// One attribute. If something does not fit (more than 65,535 different names, or a value longer
// than 65,535 bytes), the row is "wide": `name` is kWide and `value` is an index into the wide
// rows.
struct XmlAttributeRow {
  static constexpr uint16_t kWide = UINT16_MAX;

  uint32_t value = 0;  // offset in the TextStore
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

// The element tree of one document: rows addressed by index, strings in one TextStore. Names,
// values, and texts are stored escaped. No function here is recursive.
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
  // kNoRow after the last one. `element` must have a parent.
  uint32_t nextSibling(uint32_t element) const {
    const XmlElementRow& row = elements[element];
    return elements[row.parent].lastChild == element ? kNoRow : row.next;
  }
  // The item rows; kNoRow for an element that is `textOnly`.
  uint32_t firstItem(uint32_t element) const {
    const XmlElementRow& row = elements[element];
    return row.textOnly || row.lastItem == kNoRow ? kNoRow : uint32_t{items[row.lastItem].next};
  }
  uint32_t nextItem(uint32_t element, uint32_t item) const {
    return elements[element].lastItem == item ? kNoRow : uint32_t{items[item].next};
  }
  // The next element of the subtree of `top` in document order; kNoRow at its end. Updates `depth`
  // (levels below `top`).
  uint32_t nextInSubtree(uint32_t top, uint32_t element, uint32_t& depth) const;
  // The same, but skips everything under `element`.
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
  // Removes `child` from its parent's list. Items that followed it now follow its predecessor.
  void detach(uint32_t child);
  // Detaches and frees `element` and everything under it.
  void destroy(uint32_t element);
  void destroyChildren(uint32_t element);

  // Copies `element` of another tree and everything under it. The copy has no parent.
  uint32_t copyFrom(const XmlTree& other, uint32_t element);

  // Appends an attribute row, to be filled by the caller, and returns its index.
  uint32_t newAttribute(uint32_t element);
  void removeAttribute(uint32_t element, uint32_t position);
  XmlAttributeRow attributeRow(uint32_t name, XmlSpan value) {
    if (name >= XmlAttributeRow::kWide || value.length > UINT16_MAX) {
      return {wideAttributes.push({name, value}), XmlAttributeRow::kWide, 0};
    }
    return {value.offset, static_cast<uint16_t>(name), static_cast<uint16_t>(value.length)};
  }
  // Changes the stored value of an existing attribute; in place if it fits.
  void setValue(uint32_t row, std::string_view value);
  // Adds an item after the child `after` and after the items that are already there.
  void addItem(uint32_t element, XmlItemKind kind, XmlSpan stored, uint32_t after);
  // Adds an item after everything else, as the reader does.
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
  // Moves the text of a `textOnly` element to an item row.
  void unfoldText(uint32_t element);
  uint32_t lastItemUpTo(uint32_t element, uint32_t after) const;
  uint32_t copyRow(const XmlTree& other, uint32_t element);
  void copyItems(const XmlTree& other, uint32_t from, uint32_t to);
  void release(uint32_t element);
};

}  // namespace vgps
