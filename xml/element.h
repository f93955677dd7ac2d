#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "xml/tree.h"

// Elements and attributes of a document as small handles, copied like pointers. A null handle
// converts to false; reading through it returns 0, -1, or empty, and changes through it do nothing.
// A handle is valid until its document is destroyed or what it refers to is removed.
//
// Strings passed in are escaped; strings returned are unescaped. A `buffer` must have room for the
// length plus a NUL; if it is null, only the length is returned.
namespace vgps {

class XmlElement;

class XmlAttribute {
 public:
  XmlAttribute() = default;
  XmlAttribute(XmlTree* tree, uint32_t element, uint32_t position)
      : tree_(tree), element_(element), position_(position) {}

  explicit operator bool() const { return tree_ != nullptr; }
  XmlElement GetElement() const;

  size_t GetName(char* buffer) const;
  size_t GetValue(char* buffer) const;
  std::string GetName() const;
  std::string GetValue() const;
  // The value without a copy where it needs no unescaping; otherwise `scratch` holds it.
  std::string_view value(std::string& scratch) const;
  // The value; copied to `scratch` only if it contains entities.
  std::string_view storedName() const;
  std::string_view storedValue() const;

  int32_t GetValueInt() const;
  uint32_t GetValueUInt() const;
  int64_t GetValueInt64() const;
  uint64_t GetValueUInt64() const;
  // A decimal fraction, as a double and rounded to a float.
  double GetValueDouble() const;
  float GetValueFloat() const;

  bool SetValue(std::string_view value);
  bool SetValueInt(int32_t value);
  bool SetValueUInt(uint32_t value);
  bool SetValueInt64(int64_t value);
  bool SetValueUInt64(uint64_t value);
  bool SetValueFloat(double value);  // six decimals

 private:
  friend class XmlElement;
  uint32_t row() const { return tree_->elements[element_].firstAttribute + position_; }

  XmlTree* tree_ = nullptr;
  uint32_t element_ = 0;
  uint32_t position_ = 0;
};

// A comment, text content or CDATA section.
struct XmlItem {
  std::string_view stored;  // contents are escaped, comments and CDATA are verbatim
  size_t position = 0;      // the number of child elements before it
};

// The children of one element in order, for a range-based for.
class XmlChildren {
 public:
  class Iterator;
  XmlChildren(XmlTree* tree, uint32_t parent) : tree_(tree), parent_(parent) {}
  Iterator begin() const;
  Iterator end() const;

 private:
  XmlTree* tree_;
  uint32_t parent_;
};

class XmlElement {
 public:
  XmlElement() = default;
  XmlElement(XmlTree* tree, uint32_t index)
      : tree_(index == kNoRow ? nullptr : tree), index_(index) {}

  explicit operator bool() const { return tree_ != nullptr; }
  bool operator==(const XmlElement&) const = default;

  size_t GetElementName(char* buffer) const;
  std::string GetElementName() const;
  std::string_view storedName() const;
  bool SetElementName(std::string_view name);
  XmlElement GetParent() const;
  // Levels below the root; 0 at the root.
  size_t GetDepth() const;
  bool indentsWithSpaces() const;
  void setIndentsWithSpaces(bool spaces);

  // The first child with exactly that name. With `create`, appends an empty one if there is none.
  XmlElement FindElement(std::string_view name, bool create = false) const;
  int FindElementIndex(std::string_view name) const;
  // Appends a child. An element of the same document is moved, one of another document is copied.
  // Returns a null handle if `element` contains this one.
  XmlElement AddElement(std::string_view name);
  XmlElement AddElement(XmlElement element);
  // Returns the new number of children. An index past the end changes nothing.
  size_t RemoveElement(size_t index);
  void RemoveAllElements();
  // Removes this element from its parent. Returns false for the root, which cannot be removed.
  bool Remove();
  XmlChildren GetChildren() const { return {tree_, index_}; }
  size_t GetChildrenNum() const;
  XmlElement GetChild(size_t index) const;  // linear in `index`
  // The number of elements in the subtree, including this one.
  size_t GetSubtreeNum() const;

  // The index of the first attribute with that name; -1 if there is none.
  int FindVariable(std::string_view name) const;
  XmlAttribute FindAttribute(std::string_view name) const;
  XmlAttribute AddVariable(std::string_view name, std::string_view value);
  size_t RemoveVariable(size_t index);
  std::vector<XmlAttribute> GetVariables() const;
  XmlAttribute GetVariable(size_t index) const;
  size_t GetVariableNum() const;

  // `position` is the number of child elements before the item; by default all of them.
  void AddComment(std::string_view text, size_t position = SIZE_MAX);
  void AddContent(std::string_view text, size_t position = SIZE_MAX);
  void AddCData(std::string_view text, size_t position = SIZE_MAX);
  std::vector<XmlItem> GetComments() const { return items(XmlItemKind::comment); }
  std::vector<XmlItem> GetContents() const { return items(XmlItemKind::content); }
  std::vector<XmlItem> GetCDatas() const { return items(XmlItemKind::cdata); }
  // All text contents concatenated, unescaped.
  std::string GetText() const;
  // The same; copied to `scratch` only if there are several contents or entities.
  std::string_view text(std::string& scratch) const;
  // Replaces all text contents; an empty text removes them.
  void SetText(std::string_view text);

  // Finds the elements of the subtree, including this one, that satisfy `expression`, in document
  // order, and returns their number. `results` needs room for GetSubtreeNum() + 1. Depth 0 means
  // only this element, -1 the whole subtree.
  //   ? == "name"   ? != "name"   ? == "*" (all)   ? < 12 (a name that is a number)
  size_t Query(std::string_view expression, XmlElement* results, int depth = -1) const;
  std::vector<XmlElement> Query(std::string_view expression, int depth = -1) const;

  XmlTree* tree() const { return tree_; }
  uint32_t index() const { return index_; }

 private:
  XmlElementRow& row() const { return tree_->elements[index_]; }
  void addItem(XmlItemKind kind, std::string_view stored, size_t position);
  std::vector<XmlItem> items(XmlItemKind kind) const;

  XmlTree* tree_ = nullptr;
  uint32_t index_ = 0;
};

class XmlChildren::Iterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = XmlElement;
  using difference_type = std::ptrdiff_t;
  using pointer = const XmlElement*;
  using reference = XmlElement;

  Iterator() = default;
  Iterator(XmlTree* tree, uint32_t element) : tree_(tree), element_(element) {}
  XmlElement operator*() const { return {tree_, element_}; }
  Iterator& operator++() {
    element_ = tree_->nextSibling(element_);
    return *this;
  }
  Iterator operator++(int) {
    const Iterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const Iterator& other) const { return element_ == other.element_; }

 private:
  XmlTree* tree_ = nullptr;
  uint32_t element_ = kNoRow;
};

inline XmlChildren::Iterator XmlChildren::begin() const {
  return {tree_, tree_ == nullptr ? kNoRow : tree_->firstChild(parent_)};
}
inline XmlChildren::Iterator XmlChildren::end() const { return {tree_, kNoRow}; }

}  // namespace vgps
