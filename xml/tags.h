#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

namespace vgps {

inline constexpr std::string_view kXmlBlanks = " \t\r\n";
inline bool isXmlBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// One tag in a text.
struct TagMark {
  enum class Kind { open, close, empty, other };  // other: a comment, a declaration or CDATA
  Kind kind = Kind::open;
  std::string_view name;     // valid until the next tag is read; empty for `other`
  uint64_t begin = 0;        // of "<"
  uint64_t end = 0;          // after ">"
  uint64_t blanksBegin = 0;  // start of the blanks before the tag
  bool textBefore = false;   // something other than blanks comes before the tag
};

// Finds the tags of a text of any length and their positions, which the XML reader's tree does not
// record. As in that reader, ">" always ends a tag.
class TagReader {
 public:
  // Fills the given buffer as far as possible; returns 0 at the end.
  using Source = std::function<size_t(char*, size_t)>;
  explicit TagReader(Source source) : source_(std::move(source)) {}
  // `text` must stay valid.
  explicit TagReader(std::string_view text);

  // Reads the next tag. Returns false at the end of the text.
  bool next(TagMark& tag);
  // Likewise, but also returns comments, declarations, and CDATA.
  bool nextPiece(TagMark& piece);

  // Lets the caller process the bytes after the last tag directly: calls `take` with the buffered
  // bytes for as long as it consumes some. `take` returns how many it consumed, up to the end of a
  // tag.
  template <class Take>
  void pass(Take take);

  // Keeps the bytes from `place` on (in the last tag or the blanks before it) in memory until
  // `release`.
  void keepFrom(uint64_t place) { keep_ = place; }
  void release() { keep_ = kNothing; }
  // The bytes from `begin`, at or after the kept place, to `end`, at most the end of the last tag.
  std::string_view kept(uint64_t begin, uint64_t end) const {
    return std::string_view(bytes_.data(), filled_).substr(begin - start_, end - begin);
  }

  // How far the text was read; at the end, its length.
  uint64_t place() const { return start_ + at_; }
  // Whether there was an unterminated tag or comment, or text after the last tag.
  bool isBroken() const { return broken_; }

 private:
  static constexpr uint64_t kNothing = UINT64_MAX;
  enum class Piece { found, broken };

  std::string_view rest() const { return {bytes_.data() + at_, filled_ - at_}; }
  bool fill();
  bool toTag();
  Piece readPiece(TagMark& piece);
  Piece skipTo(std::string_view terminator, bool& noneFollows, TagMark& piece);
  Piece passDeclaration(size_t end, TagMark& piece);
  size_t afterBrackets();
  void finishTag(TagMark& tag, size_t close);
  void finishOther(TagMark& piece, size_t end);

  Source source_;
  std::vector<char> bytes_;  // larger than the data, so that scans may read past the end
  size_t filled_ = 0;
  uint64_t start_ = 0;  // position of bytes_[0] in the text
  size_t at_ = 0;       // current index into bytes_
  uint64_t keep_ = kNothing;
  uint64_t lastEnd_ = 0;  // end of the last tag, comment, or declaration
  bool text_ = false;     // something other than blanks was seen since
  bool broken_ = false;
  bool ended_ = false;
  // Set when a search found no such end in the rest of the text, so that it is not repeated.
  bool noCommentEnd_ = false;
  bool noCDataEnd_ = false;
  bool noSubsetEnd_ = false;
};

template <class Take>
void TagReader::pass(Take take) {
  constexpr size_t kLongestTag = 4096;  // what `take` refuses beyond this length it will never take
  do {
    const size_t taken = take(rest());
    if (taken == 0) continue;
    at_ += taken;
    lastEnd_ = place();
  } while (filled_ - at_ < kLongestTag && fill());
}

// Calls `take(name, value, bytes)` for each attribute of a tag. `bytes` includes the blanks before
// the attribute.
template <class Take>
void forTagAttributes(std::string_view tag, Take take) {
  size_t at = tag.find_first_of(kXmlBlanks);
  while (at < tag.size()) {
    const size_t name = tag.find_first_not_of(kXmlBlanks, at);
    const size_t equals = tag.find('=', at);
    if (equals == std::string_view::npos) return;
    const size_t quote = tag.find_first_of("\"'", equals);
    if (quote == std::string_view::npos) return;
    const size_t value = quote + 1;
    const size_t end = tag.find(tag[quote], value);
    if (end == std::string_view::npos) return;
    const size_t nameEnd = std::min(equals, tag.find_first_of(kXmlBlanks, name));
    take(tag.substr(name, nameEnd - name), tag.substr(value, end - value),
         tag.substr(at, end + 1 - at));
    at = end + 1;
  }
}

}  // namespace vgps
