#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace vgps {

// One tag of a text.
struct TagMark {
  enum class Kind { open, close, empty };
  Kind kind = Kind::open;
  std::string_view name;    // until the next tag is asked for
  uint64_t begin = 0;       // of "<"
  uint64_t end = 0;         // behind ">"
  uint64_t lead = 0;        // where the blanks in front of it begin
  bool textBefore = false;  // something else than blanks stands in front of it
};

// Finds the tags of a text of any length, and where they stand: what the XML reader's tree does not
// know. As there, ">" ends a tag wherever it stands. Comments, declarations and CDATA are passed
// over.
class TagReader {
 public:
  // Fills the room it is given as far as it can; 0 at the end.
  using Source = std::function<size_t(char*, size_t)>;
  explicit TagReader(Source source) : source_(std::move(source)) {}

  // False at the end of the text.
  bool next(TagMark& tag);

  // The bytes from `place`, which is in the last tag or its lead, stay at hand until `release`.
  void keepFrom(uint64_t place) { keep_ = place; }
  void release() { keep_ = kNothing; }
  // Bytes from the kept place to at most the last tag's end.
  std::string_view kept(uint64_t begin, uint64_t end) const {
    return std::string_view(bytes_).substr(begin - start_, end - begin);
  }

  // How far the text was read: its length after the end.
  uint64_t place() const { return start_ + at_; }
  // A tag or comment without an end, or text behind the last tag, was seen.
  bool isBroken() const { return broken_; }

 private:
  static constexpr uint64_t kNothing = UINT64_MAX;
  enum class Piece { tag, passed, broken };

  bool fill();
  bool toTag();
  Piece readPiece(TagMark& tag);
  Piece passOver(std::string_view terminator, bool& noneFollows);
  Piece passDeclaration(size_t end);
  size_t behindBrackets();
  void finishTag(TagMark& tag, size_t close);

  Source source_;
  std::string bytes_;
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

}  // namespace vgps
