#include "library/tag_reader.h"

#include <algorithm>
#include <cstring>

namespace vgps {
namespace {

constexpr size_t kBlock = size_t{1} << 17;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kCData = "<![CDATA[";

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

// Takes in more text, giving up what nobody needs any more. False at the end.
bool TagReader::fill() {
  if (ended_) return false;
  const uint64_t needed = std::min(keep_, start_ + at_);
  const auto unneeded = static_cast<size_t>(needed - start_);
  bytes_.erase(0, unneeded);
  start_ += unneeded;
  at_ -= unneeded;
  const size_t before = bytes_.size();
  bytes_.resize(before + kBlock);
  bytes_.resize(before + source_(bytes_.data() + before, kBlock));
  ended_ = bytes_.size() == before;
  return !ended_;
}

// Over the text in front of the next "<".
bool TagReader::toTag() {
  do {
    const char* const from = bytes_.data() + at_;
    const size_t left = bytes_.size() - at_;
    const auto* const found =
        static_cast<const char*>(left == 0 ? nullptr : std::memchr(from, '<', left));
    const char* const end = found != nullptr ? found : bytes_.data() + bytes_.size();
    if (!text_) text_ = !std::all_of(from, end, isBlank);
    at_ = static_cast<size_t>(end - bytes_.data());
    if (found != nullptr) return true;
  } while (fill());
  return false;
}

// Over a comment or the like, which ends with `terminator`.
TagReader::Piece TagReader::passOver(std::string_view terminator, bool& noneFollows) {
  size_t searched = 0;  // behind at_
  while (!noneFollows) {
    const size_t found = bytes_.find(terminator, at_ + searched);
    if (found != std::string::npos) {
      at_ = found + terminator.size();
      lastEnd_ = place();
      return Piece::passed;
    }
    searched = bytes_.size() - at_;
    searched -= std::min(searched, terminator.size());
    noneFollows = !fill();
  }
  ++at_;  // without an end it hides nothing
  return Piece::broken;
}

// Over a declaration, which ends with ">".
TagReader::Piece TagReader::passDeclaration(size_t end) {
  const bool processing = bytes_[at_ + 1] == '?';
  const bool good = !processing || bytes_[end - 1] == '?';
  at_ = end + 1;
  lastEnd_ = place();
  return good ? Piece::passed : Piece::broken;
}

void TagReader::finishTag(TagMark& tag, size_t close) {
  const bool closing = bytes_[at_ + 1] == '/';
  const size_t nameAt = at_ + (closing ? 2 : 1);
  const bool empty = !closing && bytes_[close - 1] == '/' && close - 1 >= nameAt;
  const size_t limit = empty ? close - 1 : close;
  size_t nameEnd = nameAt;
  while (nameEnd < limit && !isBlank(bytes_[nameEnd]) && bytes_[nameEnd] != '/') ++nameEnd;
  tag.kind = closing ? TagMark::Kind::close : empty ? TagMark::Kind::empty : TagMark::Kind::open;
  tag.name = std::string_view(bytes_).substr(nameAt, nameEnd - nameAt);
  tag.begin = place();
  tag.end = start_ + close + 1;
  tag.textBefore = text_;
  tag.lead = text_ ? tag.begin : lastEnd_;
  at_ = close + 1;
  lastEnd_ = tag.end;
  text_ = false;
}

// The "[...]" of a document type, as a length behind the "<" here; 1 when it has none.
size_t TagReader::behindBrackets() {
  constexpr size_t kMost = size_t{1} << 16;
  while (bytes_.size() - at_ < kMost && fill()) {
  }
  const std::string_view tag = std::string_view(bytes_).substr(at_, kMost);
  const size_t open = tag.find_first_of("[>");
  if (open == std::string_view::npos || tag[open] == '>' || noSubsetEnd_) return 1;
  const size_t close = tag.find(']', open);
  noSubsetEnd_ = close == std::string_view::npos;
  return noSubsetEnd_ ? 1 : close;
}

// What begins with the "<" here.
TagReader::Piece TagReader::readPiece(TagMark& tag) {
  while (bytes_.size() - at_ < kCData.size() && fill()) {
  }
  const std::string_view rest = std::string_view(bytes_).substr(at_);
  if (rest.starts_with("<!--")) return passOver("-->", noCommentEnd_);
  if (rest.starts_with(kCData)) return passOver("]]>", noCDataEnd_);
  const bool declaration = rest.starts_with("<?") || rest.starts_with("<!");
  // A document type may hold declarations of its own in brackets.
  size_t searched = rest.starts_with("<!DOCTYPE") ? behindBrackets() : 1;
  for (;;) {
    const size_t found = bytes_.find_first_of("<>", at_ + searched);
    if (found != std::string::npos && bytes_[found] == '>') {
      if (declaration) return passDeclaration(found);
      finishTag(tag, found);
      return Piece::tag;
    }
    if (found != std::string::npos) {  // the next tag begins in the middle of this one
      at_ = found;
      return Piece::broken;
    }
    searched = bytes_.size() - at_;
    if (!fill()) break;
  }
  at_ = bytes_.size();
  return Piece::broken;
}

bool TagReader::next(TagMark& tag) {
  if (start_ == 0 && at_ == 0 && fill() && bytes_.starts_with(kByteOrderMark)) {
    at_ = kByteOrderMark.size();
    lastEnd_ = at_;
  }
  while (toTag()) {
    switch (readPiece(tag)) {
      case Piece::tag: return true;
      case Piece::broken:
        broken_ = true;
        text_ = true;
        break;
      default: break;
    }
  }
  if (text_) broken_ = true;
  return false;
}

}  // namespace vgps
