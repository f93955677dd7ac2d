#include "xml/writer.h"

#include <cstring>
#include <vector>

namespace vgps {
namespace {

// Both sinks take strings of the tree's TextStore and literals.
class Counter {
 public:
  uint64_t count() const { return count_; }
  void stored(const XmlTree&, XmlSpan span) { count_ += span.length; }
  template <size_t size>
  void literal(const char (&)[size]) {
    count_ += size - 1;
  }
  void indent(uint32_t depth, bool) { count_ += depth; }

 private:
  uint64_t count_ = 0;
};

class Renderer {
 public:
  explicit Renderer(char* out) : out_(out) {}
  char* end() const { return out_; }

  // Most strings are short: copying a fixed size and then stepping back is faster than looking
  // at the length. Source and target both have XmlBuffer::kTail bytes to spare.
  void stored(const XmlTree& tree, XmlSpan span) {
    const char* const from = tree.text.at(span.offset);
    if (span.length <= 16) {
      std::memcpy(out_, from, 16);
    } else if (span.length <= 48) {
      std::memcpy(out_, from, 48);
    } else {
      std::memcpy(out_, from, span.length);
    }
    out_ += span.length;
  }
  template <size_t size>
  void literal(const char (&text)[size]) {
    std::memcpy(out_, text, size - 1);
    out_ += size - 1;
  }
  void indent(uint32_t depth, bool spaces) {
    if (depth <= 16) {
      std::memset(out_, spaces ? ' ' : '\t', 16);
    } else {
      std::memset(out_, spaces ? ' ' : '\t', depth);
    }
    out_ += depth;
  }

 private:
  char* out_;
};

template <class Sink>
class Writer {
 public:
  Writer(const XmlTree& tree, Sink& sink) : tree_(tree), sink_(sink) {}

  void write(uint32_t top) {
    uint32_t element = top;
    for (;;) {
      const uint32_t child = open(element);
      if (child != kNoRow) {
        element = child;
        continue;
      }
      for (;;) {
        if (element == top) return;
        const uint32_t parent = tree_.elements[element].parent;
        if (open_.back() != kNoRow) open_.back() = writeItems(parent, open_.back(), element);
        const uint32_t sibling = tree_.nextSibling(element);
        element = sibling == kNoRow ? parent : sibling;
        if (sibling != kNoRow) break;
        open_.pop_back();
        close(tree_.elements[parent]);
      }
    }
  }

 private:
  // Writes the element up to its first child and returns that; without children all of it.
  uint32_t open(uint32_t element) {
    const XmlElementRow& row = tree_.elements[element];
    sink_.indent(depth(), row.spaces);
    sink_.literal("<");
    sink_.stored(tree_, tree_.names.span(row.name));
    for (uint32_t i = 0; i < row.attributeCount; ++i)
      writeAttribute(tree_.attributes[row.firstAttribute + i]);
    if (row.lastChild == kNoRow && row.lastItem == kNoRow) {
      closeAtOnce(row);
      return kNoRow;
    }
    sink_.literal(">\r\n");
    uint32_t item = tree_.firstItem(element);
    if (item != kNoRow) item = writeItems(element, item, kNoRow);
    if (row.lastChild == kNoRow) {
      close(row);
      return kNoRow;
    }
    open_.push_back(item);
    return tree_.elements[row.lastChild].next;
  }

  void closeAtOnce(const XmlElementRow& row) {
    if (row.attributeCount == 0 && tree_.names.span(row.name).length == 0) {
      sink_.literal("></>\r\n");  // "</>" alone would read as a closing tag
    } else {
      sink_.literal("/>\r\n");
    }
  }

  void close(const XmlElementRow& row) {
    sink_.indent(depth(), row.spaces);
    sink_.literal("</");
    sink_.stored(tree_, tree_.names.span(row.name));
    sink_.literal(">\r\n");
  }

  void writeAttribute(const XmlAttributeRow& row) {
    sink_.literal(" ");
    sink_.stored(tree_, tree_.names.span(tree_.nameNumber(row)));
    sink_.literal("=\"");
    sink_.stored(tree_, tree_.valueSpan(row));
    sink_.literal("\"");
  }

  // Writes the items from `item` on that follow the child `after`, comments first, then texts,
  // then CDATA; the first that follows a later child, or kNoRow.
  uint32_t writeItems(uint32_t owner, uint32_t item, uint32_t after) {
    uint32_t next = item;
    for (const XmlItemKind kind :
         {XmlItemKind::comment, XmlItemKind::content, XmlItemKind::cdata}) {
      next = item;
      while (next != kNoRow && tree_.items[next].after == after) {
        if (tree_.items[next].kind == static_cast<uint32_t>(kind)) writeItem(tree_.items[next]);
        next = tree_.nextItem(owner, next);
      }
    }
    return next;
  }

  void writeItem(const XmlItemRow& item) {
    const auto kind = static_cast<XmlItemKind>(item.kind);
    if (kind == XmlItemKind::comment) sink_.literal("<!--");
    if (kind == XmlItemKind::cdata) sink_.literal("<![CDATA[");
    sink_.stored(tree_, {item.offset, item.length});
    if (kind == XmlItemKind::comment) sink_.literal("-->");
    if (kind == XmlItemKind::cdata) sink_.literal("]]>");
    sink_.literal("\r\n");
  }

  uint32_t depth() const { return static_cast<uint32_t>(open_.size()); }

  const XmlTree& tree_;
  Sink& sink_;
  std::vector<uint32_t> open_;  // for each open element, its next item to write
};

}  // namespace

uint64_t renderedSize(const XmlTree& tree, uint32_t element) {
  Counter counter;
  Writer<Counter>(tree, counter).write(element);
  return counter.count();
}

char* renderXml(const XmlTree& tree, uint32_t element, char* out) {
  Renderer renderer(out);
  Writer<Renderer>(tree, renderer).write(element);
  return renderer.end();
}

}  // namespace vgps
