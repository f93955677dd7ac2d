#include "xml/element.h"

#include <cstring>

#include "xml/escape.h"

namespace vgps {
namespace {

uint32_t nameNumber(XmlTree& tree, std::string_view name) {
  return needsEscape(name) ? tree.names.number(tree.text, escapeXml(name))
                           : tree.names.number(tree.text, name);
}

// Compares element names by number first, because names repeat.
class NameTest {
 public:
  NameTest(const XmlTree& tree, std::string_view name) : tree_(tree), name_(name) {}

  bool operator()(uint32_t number) {
    if (number != last_) {
      last_ = number;
      same_ = readsAs(tree_.names.view(tree_.text, number), name_);
    }
    return same_;
  }

 private:
  const XmlTree& tree_;
  std::string_view name_;
  uint32_t last_ = kNoRow;
  bool same_ = false;
};

}  // namespace

size_t XmlElement::GetElementName(char* buffer) const {
  if (buffer == nullptr) return unescapedLength(storedName());
  const std::string name = GetElementName();
  std::memcpy(buffer, name.c_str(), name.size() + 1);
  return name.size();
}

std::string XmlElement::GetElementName() const { return unescapeXml(storedName()); }

std::string_view XmlElement::storedName() const {
  return tree_ == nullptr ? std::string_view() : tree_->nameOf(row());
}

bool XmlElement::SetElementName(std::string_view name) {
  if (tree_ == nullptr) return false;
  row().name = nameNumber(*tree_, name);
  return true;
}

XmlElement XmlElement::GetParent() const {
  return tree_ == nullptr ? XmlElement() : XmlElement(tree_, row().parent);
}

size_t XmlElement::GetDepth() const {
  size_t depth = 0;
  for (XmlElement above = GetParent(); above; above = above.GetParent()) ++depth;
  return depth;
}

bool XmlElement::indentsWithSpaces() const { return tree_ != nullptr && row().spaces != 0; }

void XmlElement::setIndentsWithSpaces(bool spaces) {
  if (tree_ != nullptr) row().spaces = spaces ? 1 : 0;
}

XmlElement XmlElement::FindElement(std::string_view name, bool create) const {
  if (tree_ == nullptr) return {};
  NameTest isName(*tree_, name);
  for (const XmlElement child : GetChildren()) {
    if (isName(child.row().name)) return child;
  }
  return create ? XmlElement(*this).AddElement(name) : XmlElement();
}

int XmlElement::FindElementIndex(std::string_view name) const {
  if (tree_ == nullptr) return -1;
  NameTest isName(*tree_, name);
  int index = 0;
  for (const XmlElement child : GetChildren()) {
    if (isName(child.row().name)) return index;
    ++index;
  }
  return -1;
}

XmlElement XmlElement::AddElement(std::string_view name) {
  if (tree_ == nullptr) return {};
  const uint32_t child = tree_->newElement(nameNumber(*tree_, name));
  tree_->appendChild(index_, child);
  return {tree_, child};
}

XmlElement XmlElement::AddElement(XmlElement element) {
  if (tree_ == nullptr || !element) return {};
  uint32_t child = element.index_;
  if (element.tree_ == tree_) {
    for (XmlElement above = *this; above; above = above.GetParent()) {
      if (above == element) return {};
    }
    if (child == tree_->root) return {};
    tree_->detach(child);
  } else {
    child = tree_->copyFrom(*element.tree_, child);
  }
  tree_->appendChild(index_, child);
  return {tree_, child};
}

size_t XmlElement::RemoveElement(size_t index) {
  const XmlElement child = GetChild(index);
  if (child) tree_->destroy(child.index_);
  return GetChildrenNum();
}

void XmlElement::RemoveAllElements() {
  if (tree_ != nullptr) tree_->destroyChildren(index_);
}

bool XmlElement::Remove() {
  if (!GetParent()) return false;
  tree_->destroy(index_);
  return true;
}

size_t XmlElement::GetChildrenNum() const {
  size_t count = 0;
  for ([[maybe_unused]] const XmlElement child : GetChildren()) ++count;
  return count;
}

XmlElement XmlElement::GetChild(size_t index) const {
  for (const XmlElement child : GetChildren()) {
    if (index-- == 0) return child;
  }
  return {};
}

size_t XmlElement::GetSubtreeNum() const {
  if (tree_ == nullptr) return 0;
  size_t count = 0;
  uint32_t depth = 0;
  for (uint32_t at = index_; at != kNoRow; at = tree_->nextInSubtree(index_, at, depth)) ++count;
  return count;
}

XmlAttribute XmlElement::FindAttribute(std::string_view name) const {
  const int index = FindVariable(name);
  return index < 0 ? XmlAttribute() : GetVariable(static_cast<size_t>(index));
}

int XmlElement::FindVariable(std::string_view name) const {
  if (tree_ == nullptr) return -1;
  NameTest isName(*tree_, name);
  const uint32_t first = row().firstAttribute;
  for (uint32_t i = 0; i < row().attributeCount; ++i) {
    if (isName(tree_->nameNumber(tree_->attributes[first + i]))) return static_cast<int>(i);
  }
  return -1;
}

XmlAttribute XmlElement::AddVariable(std::string_view name, std::string_view value) {
  if (tree_ == nullptr) return {};
  const uint32_t number = nameNumber(*tree_, name);
  const XmlSpan stored =
      needsEscape(value) ? tree_->text.add(escapeXml(value)) : tree_->text.add(value);
  const uint32_t attribute = tree_->newAttribute(index_);
  tree_->attributes[attribute] = tree_->attributeRow(number, stored);
  return {tree_, index_, row().attributeCount - 1U};
}

size_t XmlElement::RemoveVariable(size_t index) {
  if (index < GetVariableNum()) tree_->removeAttribute(index_, static_cast<uint32_t>(index));
  return GetVariableNum();
}

std::vector<XmlAttribute> XmlElement::GetVariables() const {
  std::vector<XmlAttribute> all(GetVariableNum());
  for (size_t i = 0; i < all.size(); ++i) all[i] = GetVariable(i);
  return all;
}

XmlAttribute XmlElement::GetVariable(size_t index) const {
  if (index >= GetVariableNum()) return {};
  return {tree_, index_, static_cast<uint32_t>(index)};
}

size_t XmlElement::GetVariableNum() const { return tree_ == nullptr ? 0 : row().attributeCount; }

void XmlElement::AddComment(std::string_view text, size_t position) {
  addItem(XmlItemKind::comment, text, position);
}

void XmlElement::AddContent(std::string_view text, size_t position) {
  if (!text.empty()) addItem(XmlItemKind::content, escapeXml(text), position);
}

void XmlElement::AddCData(std::string_view text, size_t position) {
  addItem(XmlItemKind::cdata, text, position);
}

void XmlElement::addItem(XmlItemKind kind, std::string_view stored, size_t position) {
  if (tree_ == nullptr) return;
  uint32_t after = tree_->lastChild(index_);
  if (position == 0) {
    after = kNoRow;
  } else if (position != SIZE_MAX) {
    const XmlElement child = GetChild(position - 1);
    if (child) after = child.index_;
  }
  tree_->addItem(index_, kind, tree_->text.add(stored), after);
}

std::vector<XmlItem> XmlElement::items(XmlItemKind kind) const {
  std::vector<XmlItem> found;
  if (tree_ == nullptr) return found;
  if (row().textOnly) {
    if (kind == XmlItemKind::content) found.push_back({tree_->text.view(row().text()), 0});
    return found;
  }
  uint32_t child = kNoRow;  // the last of the first `position` children
  size_t position = 0;
  for (uint32_t item = tree_->firstItem(index_); item != kNoRow;
       item = tree_->nextItem(index_, item)) {
    const XmlItemRow& itemRow = tree_->items[item];
    for (; child != itemRow.after; ++position) {
      child = child == kNoRow ? tree_->firstChild(index_) : tree_->nextSibling(child);
    }
    if (itemRow.kind == static_cast<uint32_t>(kind))
      found.push_back({tree_->textOf(itemRow), position});
  }
  return found;
}

std::string XmlElement::GetText() const {
  std::string all;
  for (const XmlItem& item : GetContents()) all += unescapeXml(item.stored);
  return all;
}

std::string_view XmlElement::text(std::string& scratch) const {
  if (tree_ == nullptr) return {};
  const std::string_view stored =
      row().textOnly ? tree_->text.view(row().text()) : std::string_view();
  if (row().textOnly && stored.find('&') == std::string_view::npos) return stored;
  scratch = GetText();
  return scratch;
}

void XmlElement::SetText(std::string_view text) {
  if (tree_ == nullptr) return;
  tree_->removeItems(index_, XmlItemKind::content);
  AddContent(text);
}

}  // namespace vgps
