#include "xml/writer.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace vgps {
namespace {

// The traversal is written once, either to count bytes or to write them. Both kinds of output are
// passed by value and returned, so that they stay in registers; a member would not.

struct Place {
  char* at = nullptr;
  char* limit = nullptr;  // null if there is no space left
};

// A short name with the characters around it, ready to be copied as a whole, because the few names
// of a point repeat.
struct NamePieces {
  static constexpr uint32_t kLongest = 12;

  char tag[16];        // <name
  char attribute[16];  //  name="
  char closing[24];    // </name> CR LF
  uint32_t length;     // of the name; names longer than kLongest are not stored here
};

struct Work {
  const XmlTree& tree;
  XmlBuffer* buffer = nullptr;  // null when counting
  uint64_t most = 0;
  std::vector<NamePieces> pieces{};  // indexed by name number, for the first names

  const NamePieces* piecesOf(uint32_t name) const {
    return name < pieces.size() && pieces[name].length <= NamePieces::kLongest ? &pieces[name]
                                                                               : nullptr;
  }
};

std::vector<NamePieces> piecesOfNames(const XmlTree& tree) {
  constexpr uint32_t kMost = 1000;
  std::vector<NamePieces> all(std::min(tree.names.size(), kMost));
  for (uint32_t i = 0; i < all.size(); ++i) {
    const std::string_view name = tree.names.view(tree.text, i);
    NamePieces& pieces = all[i];
    pieces.length = static_cast<uint32_t>(name.size());
    if (name.size() > NamePieces::kLongest) continue;
    const auto set = [name](char* to, std::string_view before, std::string_view behind) {
      to += before.copy(to, before.size());
      to += name.copy(to, name.size());
      behind.copy(to, behind.size());
    };
    set(pieces.tag, "<", "");
    set(pieces.attribute, " ", "=\"");
    set(pieces.closing, "</", ">\r\n");
  }
  return all;
}

inline bool isFull(uint64_t) { return false; }
inline bool isFull(Place out) { return out.limit == nullptr; }

// How much may be written beyond the space that was reserved: a few literal characters and a short
// indentation before the next stored string.
constexpr size_t kSlack = 32;

// Moves to a larger buffer with space for `length` more bytes.
[[gnu::noinline]] Place grown(const Work& work, Place out, uint64_t length) {
  XmlBuffer& buffer = *work.buffer;
  const auto used = static_cast<uint64_t>(out.at - buffer.data());
  const uint64_t needed = used + length + kSlack;
  const uint64_t size = std::min(std::max(needed, buffer.size() + buffer.size() / 2), work.most);
  if (isFull(out) || size < needed || !buffer.resize(size)) return {buffer.data(), nullptr};
  return {buffer.data() + used, buffer.data() + size};
}

template <size_t size>
uint64_t put(uint64_t count, const char (&)[size]) {
  return count + size - 1;
}
template <size_t size>
Place put(Place out, const char (&text)[size]) {
  std::memcpy(out.at, text, size - 1);
  out.at += size - 1;
  return out;
}

inline uint64_t putStored(uint64_t count, const Work&, XmlSpan span) { return count + span.length; }
// Most strings are short, so copying a fixed size and stepping back is faster than checking the
// length. Source and target both have XmlBuffer::kTail spare bytes.
inline Place putStored(Place out, const Work& work, XmlSpan span) {
  if (out.limit - out.at < static_cast<std::ptrdiff_t>(span.length + kSlack)) {
    out = grown(work, out, span.length);
    if (isFull(out)) return out;
  }
  const char* const from = work.tree.text.at(span.offset);
  if (span.length <= 16) {
    std::memcpy(out.at, from, 16);
  } else if (span.length <= 48) {
    std::memcpy(out.at, from, 48);
  } else {
    std::memcpy(out.at, from, span.length);
  }
  out.at += span.length;
  return out;
}

// Counts or writes the first `length` bytes of a piece.
template <size_t size>
uint64_t putPiece(uint64_t count, const Work&, const char (&)[size], uint32_t length) {
  return count + length;
}
template <size_t size>
Place putPiece(Place out, const Work& work, const char (&piece)[size], uint32_t length) {
  if (out.limit - out.at < static_cast<std::ptrdiff_t>(size + kSlack)) {
    out = grown(work, out, size);
    if (isFull(out)) return out;
  }
  std::memcpy(out.at, piece, size);
  out.at += length;
  return out;
}

inline uint64_t putIndent(uint64_t count, const Work&, uint32_t depth, bool) {
  return count + depth;
}
inline Place putIndent(Place out, const Work& work, uint32_t depth, bool spaces) {
  static constexpr char kTabs[] = "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
  static constexpr char kSpaces[] = "                ";
  static_assert(sizeof kTabs == kSlack / 2 + 1 && sizeof kSpaces == sizeof kTabs);
  if (depth < sizeof kTabs) {
    std::memcpy(out.at, spaces ? kSpaces : kTabs, kSlack / 2);
  } else {
    if (out.limit - out.at < static_cast<std::ptrdiff_t>(depth + kSlack)) {
      out = grown(work, out, depth);
      if (isFull(out)) return out;
    }
    std::memset(out.at, spaces ? ' ' : '\t', depth);
  }
  out.at += depth;
  return out;
}

template <class Out>
Out writeAttribute(const Work& work, const XmlAttributeRow& row, Out out) {
  if (const NamePieces* const pieces = work.piecesOf(row.name)) {
    out = putPiece(out, work, pieces->attribute, pieces->length + 3);
    out = putStored(out, work, {row.value, row.length});
    return put(out, "\"");
  }
  out = put(out, " ");
  out = putStored(out, work, work.tree.names.span(work.tree.nameNumber(row)));
  out = put(out, "=\"");
  out = putStored(out, work, work.tree.valueSpan(row));
  return put(out, "\"");
}

// Writes the element's tag up to its last attribute.
template <class Out>
Out writeTag(const Work& work, const XmlElementRow& row, uint32_t depth, Out out) {
  out = putIndent(out, work, depth, row.spaces);
  if (const NamePieces* const pieces = work.piecesOf(row.name)) {
    out = putPiece(out, work, pieces->tag, pieces->length + 1);
  } else {
    out = put(out, "<");
    out = putStored(out, work, work.tree.names.span(row.name));
  }
  for (uint32_t i = 0; i < row.attributeCount; ++i) {
    out = writeAttribute(work, work.tree.attributes[row.firstAttribute + i], out);
  }
  return out;
}

template <class Out>
Out closeAtOnce(const Work& work, const XmlElementRow& row, Out out) {
  // Without a name and attributes this would be "</>", which reads as a closing tag.
  const bool bare = row.attributeCount == 0 && work.tree.names.span(row.name).length == 0;
  return bare ? put(out, "></>\r\n") : put(out, "/>\r\n");
}

template <class Out>
Out writeClosingTag(const Work& work, const XmlElementRow& row, uint32_t depth, Out out) {
  out = putIndent(out, work, depth, row.spaces);
  if (const NamePieces* const pieces = work.piecesOf(row.name)) {
    return putPiece(out, work, pieces->closing, pieces->length + 5);
  }
  out = put(out, "</");
  out = putStored(out, work, work.tree.names.span(row.name));
  return put(out, ">\r\n");
}

template <class Out>
Out writeItem(const Work& work, const XmlItemRow& item, Out out) {
  const XmlSpan text{item.offset, item.length};
  switch (static_cast<XmlItemKind>(item.kind)) {
    case XmlItemKind::comment: return put(putStored(put(out, "<!--"), work, text), "-->\r\n");
    case XmlItemKind::cdata: return put(putStored(put(out, "<![CDATA["), work, text), "]]>\r\n");
    default: return put(putStored(out, work, text), "\r\n");
  }
}

// Writes the items that follow the child `after`, starting with `item`: first comments, then texts,
// then CDATA. Sets `item` to the first one that follows a later child, or to kNoRow.
template <class Out>
Out writeItems(const Work& work, uint32_t owner, uint32_t& item, uint32_t after, Out out) {
  const uint32_t first = item;
  if (work.tree.items[first].after != after) return out;
  item = work.tree.nextItem(owner, first);
  if (item == kNoRow || work.tree.items[item].after != after) {
    return writeItem(work, work.tree.items[first], out);
  }
  for (const XmlItemKind kind : {XmlItemKind::comment, XmlItemKind::content, XmlItemKind::cdata}) {
    item = first;
    while (item != kNoRow && work.tree.items[item].after == after) {
      if (work.tree.items[item].kind == static_cast<uint32_t>(kind)) {
        out = writeItem(work, work.tree.items[item], out);
      }
      item = work.tree.nextItem(owner, item);
    }
  }
  return out;
}

template <class Out>
Out writeTree(const Work& work, uint32_t top, Out out) {
  std::vector<uint32_t> nextItems;  // the next item to write, for each open element
  uint32_t element = top;
  for (;;) {
    if (isFull(out)) return out;
    const XmlElementRow& row = work.tree.elements[element];
    const auto depth = static_cast<uint32_t>(nextItems.size());
    out = writeTag(work, row, depth, out);
    if (row.textOnly) {
      out = put(putStored(put(out, ">\r\n"), work, row.text()), "\r\n");
      out = writeClosingTag(work, row, depth, out);
    } else if (row.lastChild == kNoRow && row.lastItem == kNoRow) {
      out = closeAtOnce(work, row, out);
    } else {
      out = put(out, ">\r\n");
      uint32_t item = work.tree.firstItem(element);
      if (item != kNoRow) out = writeItems(work, element, item, kNoRow, out);
      if (row.lastChild != kNoRow) {
        nextItems.push_back(item);
        element = work.tree.elements[row.lastChild].next;
        continue;
      }
      out = writeClosingTag(work, row, depth, out);
    }
    // After a complete element: continue with its sibling, or close every parent that ends here.
    for (;;) {
      if (element == top || isFull(out)) return out;
      const uint32_t parent = work.tree.elements[element].parent;
      uint32_t& item = nextItems.back();
      if (item != kNoRow) out = writeItems(work, parent, item, element, out);
      const uint32_t sibling = work.tree.nextSibling(element);
      element = sibling == kNoRow ? parent : sibling;
      if (sibling != kNoRow) break;
      nextItems.pop_back();
      out = writeClosingTag(work, work.tree.elements[parent],
                            static_cast<uint32_t>(nextItems.size()), out);
    }
  }
}

}  // namespace

uint64_t renderedSize(const XmlTree& tree, uint32_t element) {
  return writeTree({tree}, element, uint64_t{0});
}

size_t renderXml(const XmlTree& tree, uint32_t element, XmlBuffer& buffer, size_t used,
                 uint64_t most) {
  const Place start{buffer.data() + used, buffer.data() + buffer.size()};
  const Place end = writeTree({tree, &buffer, most, piecesOfNames(tree)}, element, start);
  return isFull(end) ? 0 : static_cast<size_t>(end.at - buffer.data());
}

}  // namespace vgps
