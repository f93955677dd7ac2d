#include "xml/reader.h"

#include <algorithm>

#include "base/scan.h"
#include "xml/escape.h"
#include "xml/tags.h"

// <?xml ... ?>  <!DOCTYPE ... [ ... ]>  <!-- -->      outside the root
// <name attribute="value" attribute="value">          opens an element
//   text  <!-- comment -->  <![CDATA[ text ]]>
//   <name attribute="value"/>                          an element at once complete
// </name>                                              closes the open element, whatever the name
namespace vgps {
namespace {

char* skipBlanks(char* p) { return scanPast<' ', '\t', '\r', '\n'>(p); }

constexpr std::string_view kCdata = "<![CDATA[";
constexpr std::string_view kCdataEnd = "]]>";
constexpr std::string_view kComment = "<!--";
constexpr std::string_view kCommentEnd = "-->";
constexpr std::string_view kDoctype = "<!DOCTYPE";
constexpr std::string_view kInstructionEnd = "?>";

using TagMarks = Marks<'<', '>', '"'>;

template <char mark>
[[gnu::always_inline]] inline char* nextMark(TagMarks& marks) {
  char* p = marks.next();
  while (*p != mark) p = marks.next();
  return p;
}

// Returns the next quote or the ">" that ends the tag.
[[gnu::always_inline]] inline char* nextInTag(TagMarks& marks) {
  char* p = marks.next();
  while (*p == '<') p = marks.next();
  return p;
}

std::string_view between(const char* begin, const char* end) {
  return {begin, static_cast<size_t>(end - begin)};
}

// Counts lines across pieces of a text. CR LF, LF, and CR each end a line.
class LineCounter {
 public:
  void pass(std::string_view text) {
    for (const char c : text) {
      const bool secondHalf = c == '\n' && last_ == '\r';
      last_ = c;
      if (secondHalf) continue;
      ++place_.column;
      if (c == '\n' || c == '\r') place_ = {place_.line + 1, 1};
    }
  }
  XmlPlace place() const { return place_; }

 private:
  XmlPlace place_;
  char last_ = 0;
};

// Each read function takes the start of a tag or text and returns the position after it. If it ends
// beyond the window and there is more text, the function returns null without having done anything.
template <bool lenient>
class Reader {
 public:
  Reader(XmlTree& tree, XmlWindow& window, XmlPrologue& outside)
      : tree_(tree), window_(window), outside_(outside) {}

  uint32_t read() {
    if (!(lenient ? window_.takeAll() : advance(nullptr))) return fail();
    end_ = window_.end();
    char* p = window_.begin();
    outside_.anyText = p < end_;
    TagMarks marks(p);
    while (p <= end_) {
      char* const tag = nextMark<'<'>(marks);
      if (tag == end_ && !window_.isLast()) {
        if (!advance(p)) return fail();
        p = window_.begin();
        marks.seek(p);
        continue;
      }
      if constexpr (lenient) {
        if (isRun(p, tag)) {
          p = readRun(skipBlanks(p));
          marks.seek(p);
          continue;
        }
      }
      readText(p, tag);
      if (tag == end_) break;
      p = readTag(tag, marks);
      if (p == nullptr) {
        if (!advance(tag)) return fail();
        p = window_.begin();
        marks.seek(p);
      }
    }
    if (tree_.text.overflowed()) return fail();
    // A tag that lacks its ">" ends at the mark behind the text.
    outside_.rootEnds = root_ != kNoRow && open_ == kNoRow && p <= end_;
    if (root_ == kNoRow) passLines(end_);
    outside_.stray = lines_.place();
    return root_;
  }

 private:
  uint32_t fail() {
    outside_.outOfMemory = true;
    return kNoRow;
  }

  bool advance(char* p) {
    if (root_ == kNoRow && p != nullptr) passLines(p);
    if (tree_.text.overflowed() || !window_.advance(p)) return false;
    end_ = window_.end();
    return true;
  }

  void passLines(const char* p) {
    const uint64_t begin = window_.placeOf(window_.begin());
    const uint64_t end = std::min(stray_, window_.placeOf(p));
    if (begin < end) lines_.pass({window_.begin(), static_cast<size_t>(end - begin)});
  }

  // Notes that something at `p` does not belong to any element.
  void strayAt(const char* p) { stray_ = std::min(stray_, window_.placeOf(p)); }

  bool mayGoOn() const { return !window_.isLast(); }

  static char* tagEnd(char* p) { return scanTo<'>'>(p); }

  // The start of `mark` at or after `p`; end_ if there is none.
  char* find(char* p, std::string_view mark) const {
    if (p >= end_) return end_;
    const size_t at = between(p, end_).find(mark);
    return at == std::string_view::npos ? end_ : p + at;
  }

  bool startsWith(const char* p, std::string_view mark) const {
    return p < end_ && between(p, end_).starts_with(mark);
  }

  uint32_t nameNumber(const char* begin, const char* end) {
    return tree_.names.numberFromWindow(tree_.text, begin, static_cast<size_t>(end - begin));
  }

  XmlSpan store(const char* begin, const char* end) {
    return tree_.text.addFromWindow(begin, static_cast<size_t>(end - begin));
  }

  void addItem(XmlItemKind kind, const char* begin, const char* end) {
    if (open_ != kNoRow) {
      tree_.appendItem(open_, kind, store(begin, end));
    } else {
      strayAt(begin);
    }
  }

  void readText(char* p, char* end) {
    p = skipBlanks(p);
    if (p >= end) return;
    while (isXmlBlank(end[-1])) --end;
    addItem(XmlItemKind::content, p, end);
  }

  [[gnu::always_inline]] char* readTag(char* tag, TagMarks& marks) {
    char* next = nullptr;
    switch (tag[1]) {
      case '/': closeElement(tag); return nextMark<'>'>(marks) + 1;
      case '!': next = readBang(tag); break;
      case '?': next = readInstruction(tag); break;
      default: return openElement(tag, marks);
    }
    if (next != nullptr) marks.seek(next);
    return next;
  }

  [[gnu::noinline]] char* readInstruction(char* p) {
    // Once a search for "?>" fails, later ones would too: such tags then end at ">", which keeps
    // the total time linear.
    char* const close = unclosedInstruction_ ? end_ : find(p + 2, kInstructionEnd);
    if (close == end_ && mayGoOn()) return nullptr;
    if (close == end_) {
      unclosedInstruction_ = true;
      strayAt(p);
      return tagEnd(p) + 1;
    }
    char* const end = close + kInstructionEnd.size();
    if (outside_.declaration.empty() && root_ == kNoRow) outside_.declaration = between(p, end);
    return end;
  }

  [[gnu::noinline]] char* readBang(char* p) {
    if (startsWith(p, kComment)) return readComment(p);
    if (startsWith(p, kCdata)) return readCdata(p);
    if (startsWith(p, kDoctype)) return skipDoctype(p);
    strayAt(p);
    return tagEnd(p) + 1;
  }

  char* readComment(char* p) {
    char* const begin = p + kComment.size();
    char* const close = find(begin, kCommentEnd);
    if (close == end_ && mayGoOn()) return nullptr;
    if (close == end_) strayAt(p);
    if (open_ != kNoRow) {
      addItem(XmlItemKind::comment, begin, close);
    } else if (skipped_ == 0) {
      outside_.comments.push_back({std::string(begin, close), root_ == kNoRow ? 0 : 1});
    }
    return close == end_ ? end_ : close + kCommentEnd.size();
  }

  char* readCdata(char* p) {
    char* const begin = p + kCdata.size();
    char* const close = find(begin, kCdataEnd);
    if (close == end_ && mayGoOn()) return nullptr;
    addItem(XmlItemKind::cdata, begin, close);
    return close == end_ ? end_ : close + kCdataEnd.size();
  }

  // In lenient mode, consecutive texts and CDATA sections form one text.
  bool isRun(const char* p, const char* tag) const {
    return startsWith(tag, kCdata) || between(p, tag).find("&#") != std::string_view::npos;
  }

  char* readRun(char* p) {
    const char* const run = p;
    std::string joined;
    while (p < end_) {
      if (startsWith(p, kCdata)) {
        char* const begin = p + kCdata.size();
        char* const close = find(begin, kCdataEnd);
        joined += escapeXml(between(begin, close));
        p = close == end_ ? end_ : close + kCdataEnd.size();
      } else if (*p != '<') {
        char* const next = find(p, "<");
        joined += decodeReferences(between(p, next));
        p = next;
      } else {
        break;
      }
    }
    const size_t first = joined.find_first_not_of(kXmlBlanks);
    joined.erase(joined.find_last_not_of(kXmlBlanks) + 1).erase(0, first);
    if (open_ == kNoRow) strayAt(run);
    if (open_ != kNoRow && !joined.empty()) {
      tree_.appendItem(open_, XmlItemKind::content, tree_.text.add(joined));
    }
    return p;
  }

  // The internal subset may contain tags, quoted text, and comments, each with ">" and "]" inside.
  char* skipDoctype(char* tag) {
    char* p = tag;
    while (*p != '[' && *p != '>') ++p;
    if (*p == '>' || unclosedSubset_) return tagEnd(p) + 1;
    for (++p; p < end_ && *p != ']';) {
      if (startsWith(p, kComment)) {
        p = find(p + kComment.size(), kCommentEnd);
      } else if (*p == '"' || *p == '\'') {
        p = find(p + 1, {p, 1}) + 1;
      } else {
        ++p;
      }
    }
    if (p < end_ && (find(p, ">") < end_ || !mayGoOn())) return tagEnd(p) + 1;
    if (mayGoOn()) return nullptr;
    // Unpaired quotes: this tag, and every later one, ends at the next ">".
    unclosedSubset_ = true;
    strayAt(tag);
    return tagEnd(tag) + 1;
  }

  void closeElement(char* p) {
    if (open_ != kNoRow) {
      open_ = tree_.elements[open_].parent;
    } else if (skipped_ > 0) {
      --skipped_;
    } else {
      strayAt(p);
    }
  }

  [[gnu::always_inline]] char* openElement(char* tag, TagMarks& marks) {
    char* p = lenient ? scanTo<' ', '\t', '\r', '\n', '/', '>', '"', '\'', '='>(tag + 1)
                      : scanTo<' ', '\t', '/', '>', '"'>(tag + 1);
    if (p > end_) p = end_;
    // Only one root is allowed, and it must have a name. Anything else is skipped with its
    // contents, as is a "<" at the very end of the text.
    const bool nameless = p == tag + 1;
    if (open_ == kNoRow ? root_ != kNoRow || nameless : nameless && p == end_) {
      char* const end = nextMark<'>'>(marks);
      skipElement(tag, end);
      return end + 1;
    }
    const uint32_t element = tree_.newElement(nameNumber(tag + 1, p));
    if (open_ == kNoRow) {
      root_ = element;
    } else {
      tree_.appendChild(open_, element);
    }
    const uint32_t firstAttribute = tree_.attributes.size();
    char* const end = readAttributes(p, marks);
    tree_.elements[element].firstAttribute = firstAttribute;
    tree_.elements[element].setAttributeCount(tree_.attributes.size() - firstAttribute);
    if (end[-1] != '/') open_ = element;
    return end + 1;
  }

  void skipElement(const char* tag, const char* end) {
    strayAt(tag);
    if (open_ == kNoRow && root_ != kNoRow && end[-1] != '/') ++skipped_;
  }

  // Reads what follows an element's name. Returns the tag's ">".
  [[gnu::always_inline]] char* readAttributes(char* p, TagMarks& marks) {
    if constexpr (lenient) return resume(readLenientAttributes(p), marks);
    char* quote = nextInTag(marks);
    while (*quote == '"') {
      char* const name = p + 1;
      char* const equals = scanTo<'=', '>'>(name);
      const bool usual = *p == ' ' && *name != '/' && !isXmlBlank(*name) && equals + 1 == quote;
      if (!usual) return resume(readUnusualAttributes(p), marks);
      char* const close = nextInTag(marks);
      if (*close == '>') return close;
      addAttribute(nameNumber(name, equals), store(quote + 1, close));
      p = close + 1;
      quote = nextInTag(marks);
    }
    return quote;
  }

  // Continues with the marks after the tag that contains `p`. Returns the tag's ">".
  static char* resume(char* p, TagMarks& marks) {
    char* const end = tagEnd(p);
    marks.seek(end + 1);
    return end;
  }

  void addAttribute(uint32_t name, XmlSpan value) {
    tree_.attributes.push(tree_.attributeRow(name, value));
  }

  // Handles extra or missing blanks, and characters between "=" and the value. Stops before "/" or
  // ">", or if no complete attribute follows.
  [[gnu::noinline]] char* readUnusualAttributes(char* p) {
    for (;;) {
      p = skipBlanks(p);
      if (*p == '>' || *p == '/') return p;
      char* const name = p;
      char* const nameEnd = scanTo<'=', '>'>(p);
      if (*nameEnd == '>') return nameEnd;
      p = scanTo<'"', '>'>(nameEnd);
      if (*p == '>') return p;
      char* const value = p + 1;
      p = scanTo<'"', '>'>(value);
      if (*p == '>') return p;
      addAttribute(nameNumber(name, nameEnd), store(value, p));
      ++p;
    }
  }

  char* readLenientAttributes(char* p) {
    for (;;) {
      p = skipBlanks(p);
      if (*p == '>' || (*p == '/' && p[1] == '>')) return p;
      char* const name = p;
      char* const nameEnd = scanTo<' ', '\t', '\r', '\n', '/', '>', '"', '\'', '='>(p);
      p = skipBlanks(nameEnd);
      if (*p != '=') {
        if (p == name) ++p;  // a stray quote or slash
        continue;
      }
      p = skipBlanks(p + 1);
      if (*p != '"' && *p != '\'') continue;
      char* const value = p + 1;
      p = *p == '"' ? scanTo<'"', '<'>(value) : scanTo<'\'', '<'>(value);
      if (*p == '<') return value;  // never closed: the tag ends at the next ">"
      addAttribute(nameNumber(name, nameEnd), lenientValue(value, p));
      ++p;
    }
  }

  XmlSpan lenientValue(const char* begin, const char* end) {
    const std::string_view raw = between(begin, end);
    if (raw.find_first_of(">\"") == raw.npos && raw.find("&#") == raw.npos)
      return store(begin, end);
    std::string stored;
    for (const char c : decodeReferences(raw)) {
      if (c == '>' || c == '"') {
        stored += c == '>' ? "&gt;" : "&quot;";
      } else {
        stored += c;
      }
    }
    return tree_.text.add(stored);
  }

  XmlTree& tree_;
  XmlWindow& window_;
  XmlPrologue& outside_;
  LineCounter lines_;
  char* end_ = nullptr;
  uint64_t stray_ = UINT64_MAX;
  uint32_t open_ = kNoRow;
  uint32_t root_ = kNoRow;
  uint64_t skipped_ = 0;  // open elements after the root, which are ignored
  bool unclosedInstruction_ = false;
  bool unclosedSubset_ = false;
};

}  // namespace

uint32_t readXml(XmlTree& tree, XmlSource source, size_t windowSize, const XmlReadOptions& reading,
                 XmlPrologue& outside) {
  XmlWindow window(source, windowSize);
  return reading.lenient ? Reader<true>(tree, window, outside).read()
                         : Reader<false>(tree, window, outside).read();
}

uint32_t readXml(XmlTree& tree, std::string_view text, const XmlReadOptions& reading,
                 XmlPrologue& outside) {
  const size_t size = std::min(text.size() + 1, XmlWindow::kUsualSize);
  return readXml(tree, XmlSource::of(text), size, reading, outside);
}

}  // namespace vgps
