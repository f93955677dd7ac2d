#include "xml/tags.h"

#include <algorithm>
#include <cstring>

#include "base/scan.h"

namespace vgps {
namespace {

constexpr size_t kBlock = size_t{1} << 17;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kCData = "<![CDATA[";

}  // namespace

TagReader::TagReader(std::string_view text)
    : TagReader([text](char* to, size_t size) mutable {
        const size_t count = std::min(size, text.size());
        text.copy(to, count);
        text.remove_prefix(count);
        return count;
      }) {}

// Reads more text and discards what is no longer needed. Returns false at the end.
bool TagReader::fill() {
  if (ended_) return false;
  const auto unneeded = static_cast<size_t>(std::min(keep_, place()) - start_);
  if (unneeded > 0) std::memmove(bytes_.data(), bytes_.data() + unneeded, filled_ - unneeded);
  start_ += unneeded;
  at_ -= unneeded;
  filled_ -= unneeded;
  const size_t wanted = filled_ + kBlock + kScanSlack;
  if (bytes_.size() < wanted) bytes_.resize(std::max(wanted, 2 * bytes_.size()));
  const size_t got = source_(bytes_.data() + filled_, kBlock);
  filled_ += got;
  bytes_[filled_] = '<';  // stops every scan
  ended_ = got == 0;
  return !ended_;
}

// Skips the text up to the next "<".
bool TagReader::toTag() {
  do {
    const std::string_view left = rest();
    const size_t found = std::min(left.find('<'), left.size());
    if (!text_) text_ = !std::all_of(left.begin(), left.begin() + found, isXmlBlank);
    at_ += found;
    if (at_ < filled_) return true;
  } while (fill());
  return false;
}

// Skips a comment or similar, which ends with `terminator`.
TagReader::Piece TagReader::skipTo(std::string_view terminator, bool& noneFollows, TagMark& piece) {
  size_t searched = 0;  // after at_
  while (!noneFollows) {
    const size_t found = rest().find(terminator, searched);
    if (found != std::string_view::npos) {
      finishOther(piece, at_ + found + terminator.size());
      return Piece::found;
    }
    searched = filled_ - at_;
    searched -= std::min(searched, terminator.size());
    noneFollows = !fill();
  }
  ++at_;  // without an end it hides nothing
  return Piece::broken;
}

// Skips a declaration, which ends with ">".
TagReader::Piece TagReader::passDeclaration(size_t end, TagMark& piece) {
  const bool processing = bytes_[at_ + 1] == '?';
  const bool good = !processing || bytes_[end - 1] == '?';
  finishOther(piece, end + 1);
  return good ? Piece::found : Piece::broken;
}

void TagReader::finishOther(TagMark& piece, size_t end) {
  piece = {.kind = TagMark::Kind::other, .name = {}, .begin = place(), .end = start_ + end};
  piece.textBefore = text_;
  piece.blanksBegin = text_ ? piece.begin : lastEnd_;
  at_ = end;
  lastEnd_ = piece.end;
}

void TagReader::finishTag(TagMark& tag, size_t close) {
  const bool closing = bytes_[at_ + 1] == '/';
  const size_t nameAt = at_ + (closing ? 2 : 1);
  const bool empty = !closing && bytes_[close - 1] == '/' && close - 1 >= nameAt;
  const size_t limit = empty ? close - 1 : close;
  size_t nameEnd = nameAt;
  while (nameEnd < limit && !isXmlBlank(bytes_[nameEnd]) && bytes_[nameEnd] != '/') ++nameEnd;
  tag.kind = closing ? TagMark::Kind::close : empty ? TagMark::Kind::empty : TagMark::Kind::open;
  tag.name = {bytes_.data() + nameAt, nameEnd - nameAt};
  tag.begin = place();
  tag.end = start_ + close + 1;
  tag.textBefore = text_;
  tag.blanksBegin = text_ ? tag.begin : lastEnd_;
  at_ = close + 1;
  lastEnd_ = tag.end;
  text_ = false;
}

// The length from the current "<" to the end of the document type's "[...]"; 1 if it has none.
size_t TagReader::afterBrackets() {
  constexpr size_t kMost = size_t{1} << 16;
  while (filled_ - at_ < kMost && fill()) {
  }
  const std::string_view tag = rest().substr(0, kMost);
  const size_t open = tag.find_first_of("[>");
  if (open == std::string_view::npos || tag[open] == '>' || noSubsetEnd_) return 1;
  const size_t close = tag.find(']', open);
  noSubsetEnd_ = close == std::string_view::npos;
  return noSubsetEnd_ ? 1 : close;
}

// Reads whatever starts at the current "<".
TagReader::Piece TagReader::readPiece(TagMark& piece) {
  while (filled_ - at_ < kCData.size() && fill()) {
  }
  const std::string_view mark = rest().substr(0, kCData.size());
  if (mark.starts_with("<!--")) return skipTo("-->", noCommentEnd_, piece);
  if (mark.starts_with(kCData)) return skipTo("]]>", noCDataEnd_, piece);
  const bool declaration = mark.starts_with("<?") || mark.starts_with("<!");
  // A document type may contain other declarations in brackets.
  size_t searched = rest().starts_with("<!DOCTYPE") ? afterBrackets() : 1;
  for (;;) {
    char* const end = scanTo<'<', '>'>(bytes_.data() + at_ + searched);
    const auto found = static_cast<size_t>(end - bytes_.data());
    if (found < filled_ && *end == '>') {
      if (declaration) return passDeclaration(found, piece);
      finishTag(piece, found);
      return Piece::found;
    }
    if (found < filled_) {  // the next tag starts inside this one
      at_ = found;
      return Piece::broken;
    }
    searched = filled_ - at_;
    if (!fill()) break;
  }
  at_ = filled_;
  return Piece::broken;
}

bool TagReader::next(TagMark& tag) {
  while (nextPiece(tag)) {
    if (tag.kind != TagMark::Kind::other) return true;
  }
  return false;
}

bool TagReader::nextPiece(TagMark& piece) {
  if (start_ == 0 && at_ == 0 && fill() && rest().starts_with(kByteOrderMark)) {
    at_ = kByteOrderMark.size();
    lastEnd_ = at_;
  }
  while (toTag()) {
    if (readPiece(piece) == Piece::found) return true;
    broken_ = true;
    text_ = true;
  }
  if (text_) broken_ = true;
  return false;
}

}  // namespace vgps
