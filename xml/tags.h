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

// One tag of a text.
struct TagMark {
  enum class Kind { open, close, empty, other };  // other: a comment, a declaration or CDATA
  Kind kind = Kind::open;
  std::string_view name;     // until the next tag is asked for; empty of `other`
  uint64_t begin = 0;        // of "<"
  uint64_t end = 0;          // behind ">"
  uint64_t blanksBegin = 0;  // where the blanks in front of it begin
  bool textBefore = false;   // something else than blanks stands in front of it
};

// Finds the tags of a text of any length, and where they stand: what the XML reader's tree does not
// know. As there, ">" ends a tag wherever it stands.
class TagReader {
 public:
  // Fills the room it is given as far as it can; 0 at the end.
  using Source = std::function<size_t(char*, size_t)>;
  explicit TagReader(Source source) : source_(std::move(source)) {}
  // `text` stays where it is.
  explicit TagReader(std::string_view text);

  // The next tag. False at the end of the text.
  bool next(TagMark& tag);
  // Likewise, and also what is not a tag.
  bool nextPiece(TagMark& piece);

  // Lets `take` go over the bytes behind the last tag as long as it can make something of them: it
  // gets those that are at hand and says how many of them it has taken, up to the end of a tag.
  template <class Take>
  void pass(Take take);

  // The bytes from `place`, which is in the last tag or its blanks, stay at hand until `release`.
  void keepFrom(uint64_t place) { keep_ = place; }
  void release() { keep_ = kNothing; }
  // Bytes from the kept place to at most the last tag's end.
  std::string_view kept(uint64_t begin, uint64_t end) const {
    return std::string_view(bytes_.data(), filled_).substr(begin - start_, end - begin);
  }

  // How far the text was read: its length after the end.
  uint64_t place() const { return start_ + at_; }
  // A tag or comment without an end, or text behind the last tag, was seen.
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
  std::vector<char> bytes_;  // longer than what it holds by what the scanning reads too far
  size_t filled_ = 0;
  uint64_t start_ = 0;  // place of the first of them
  size_t at_ = 0;       // in them
  uint64_t keep_ = kNothing;
  uint64_t lastEnd_ = 0;  // of the last tag, comment or declaration
  bool text_ = false;     // something else than blanks was seen since
  bool broken_ = false;
  bool ended_ = false;
  // The rest of the text was searched for such an end; it is not searched again.
  bool noCommentEnd_ = false;
  bool noCDataEnd_ = false;
  bool noSubsetEnd_ = false;
};

template <class Take>
void TagReader::pass(Take take) {
  constexpr size_t kLongestTag = 4096;  // what is not taken of more than that never will be
  do {
    const size_t taken = take(rest());
    if (taken == 0) continue;
    at_ += taken;
    lastEnd_ = place();
  } while (filled_ - at_ < kLongestTag && fill());
}

// `take(name, value, bytes)` for each attribute of a tag; the bytes begin with the blanks in front
// of it.
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
