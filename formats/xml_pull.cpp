#include "formats/xml_pull.h"

#include <algorithm>
#include <cstring>

#include "base/scan.h"
#include "base/text.h"
#include "xml/escape.h"
#include "xml/tags.h"

namespace vgps {
namespace {

constexpr size_t kXmlBlock = size_t{1} << 17;
constexpr size_t kLongest = size_t{1} << 26;  // maximum size of a tag
constexpr size_t kMostNames = size_t{1} << 20;
constexpr std::string_view kCdata = "<![CDATA[";
constexpr std::string_view kComment = "<!--";
constexpr std::string_view kDoctype = "<!DOCTYPE";

std::string_view between(const char* begin, const char* end) {
  return {begin, static_cast<size_t>(end - begin)};
}

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kXmlBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kXmlBlanks) + 1 - first);
}

uint32_t hashOf(std::string_view name) {
  uint32_t hash = static_cast<uint32_t>(name.size());
  for (const char c : name) hash = hash * 31 + static_cast<unsigned char>(c);
  return hash;
}

constexpr bool isHigh(char c) { return static_cast<unsigned char>(c) >= 0x80; }
bool isAscii(std::string_view text) {
  unsigned char all = 0;
  for (const char c : text) all |= static_cast<unsigned char>(c);
  return all < 0x80;
}

// Windows-1252 from 0x80 on; from 0xA0 on it is Latin-1, which is Unicode.
constexpr char32_t kWindows1252[32] = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

void appendSingleByte(std::string& out, char c) {
  const auto byte = static_cast<unsigned char>(c);
  appendUtf8(out, byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : byte);
}

// The length of the first character of `text` in bytes; 0 if it is not UTF-8.
size_t utf8Length(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  const std::string_view bytes = text.substr(0, length);
  return validUtf8(bytes) == bytes ? length : 0;
}

// Files that declare Latin-1 but contain UTF-8 are common; other text is almost never valid UTF-8
// by chance.
bool isUtf8Text(std::string_view block) {
  const auto lastAscii = std::find_if_not(block.rbegin(), block.rend(), isHigh);
  block.remove_suffix(static_cast<size_t>(lastAscii - block.rbegin()));
  return !isAscii(block) && validUtf8(block) == block;
}

std::string declaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return {};
  text = text.substr(0, text.find("?>"));
  size_t at = text.find("encoding");
  if (at == std::string_view::npos) return {};
  at = text.find_first_of("\"'", at);
  if (at == std::string_view::npos) return {};
  const size_t end = text.find(text[at], at + 1);
  if (end == std::string_view::npos) return {};
  std::string name(text.substr(at + 1, end - at - 1));
  for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c;
  return name;
}

constexpr std::string_view kUtf8Names[] = {"", "utf-8", "utf8", "us-ascii", "ascii"};
constexpr std::string_view kSingleByteNames[] = {"iso-8859-1",   "iso8859-1", "latin1", "latin-1",
                                                 "windows-1252", "cp1252",    "cp-1252"};

}  // namespace

XmlBytes::XmlBytes(ByteSource source)
    : source_(std::move(source)), decoder_(XmlSource{readMarked, this}) {}

// UTF-16 without a byte order mark gets one.
size_t XmlBytes::readMarked(void* from, char* to, size_t size) {
  auto& self = *static_cast<XmlBytes*>(from);
  if (self.started_ || size < 4) return self.source_(to, size);
  self.started_ = true;
  constexpr size_t kMark = 2;
  size_t got = 0;
  while (got < kMark) {
    const size_t count = self.source_(to + kMark + got, size - kMark - got);
    if (count == 0) break;
    got += count;
  }
  const std::string_view start(to + kMark, std::min(got, kMark));
  const bool little = start == std::string_view("<\0", 2);
  if (little || start == std::string_view("\0<", 2)) {
    std::memcpy(to, little ? "\xFF\xFE" : "\xFE\xFF", kMark);
    return got + kMark;
  }
  std::memmove(to, to + kMark, got);
  return got;
}

size_t XmlBytes::read(char* to, size_t size) {
  const XmlSource source = decoder_.source();
  return source.read(source.from, to, size);
}

void XmlPull::start() {
  started_ = true;
  block_.resize(2 * kXmlBlock + kScanSlack);
  at_ = block_.data();
  while (filled_ < kXmlBlock / 2 && more(at_, at_)) {
  }
  const std::string_view text(block_.data(), filled_);
  const std::string encoding = declaredEncoding(text);
  const auto isOneOf = [&](const auto& names) {
    return std::find(std::begin(names), std::end(names), encoding) != std::end(names);
  };
  if (isOneOf(kUtf8Names) || encoding.starts_with("utf-16")) return;
  singleByte_ = !isUtf8Text(text);
  if (!isOneOf(kSingleByteNames) && singleByte_) unknownEncoding_ = encoding;
}

bool XmlPull::more(char*& p, const char* keep) {
  if (allRead_) return false;
  const auto given = static_cast<size_t>(keep - block_.data());
  const auto offset = static_cast<size_t>(p - keep);
  if (given > 0) std::memmove(block_.data(), keep, filled_ - given);
  filled_ -= given;
  passed_ += given;
  if (filled_ > kLongest) {
    broken(XmlDamage::tooLong, block_.data());
    allRead_ = true;
  } else {
    if (block_.size() < filled_ + kXmlBlock + kScanSlack) block_.resize(2 * block_.size());
    const size_t got = bytes_.read(block_.data() + filled_, kXmlBlock);
    filled_ += got;
    allRead_ = got == 0;
  }
  // A sentinel that ends every scan.
  block_[filled_] = '<';
  block_[filled_ + 1] = '>';
  p = block_.data() + offset;
  return !allRead_;
}

void XmlPull::broken(XmlDamage damage, const char* p) {
  if (damage_ != XmlDamage::none) return;
  damage_ = damage;
  damagePlace_ = passed_ + static_cast<uint64_t>(p - block_.data());
}

// Nothing more can be read: open elements stay incomplete.
XmlPull::Tag XmlPull::endAt(const char* p) {
  if (depth_ > 0) broken(XmlDamage::cutOff, p);
  at_ = end();
  allRead_ = true;
  depth_ = 0;
  return Tag::ended;
}

// The start of `mark` at or after `p`, null if there is none. The text from `keep` on stays in
// memory.
char* XmlPull::find(char* p, char*& keep, std::string_view mark) {
  for (;;) {
    const size_t found = between(p, end()).find(mark);
    if (found != std::string_view::npos) return p + found;
    const size_t rest = static_cast<size_t>(end() - p);
    p += rest - std::min(rest, mark.size() - 1);
    const auto back = static_cast<size_t>(p - keep);
    const bool any = more(p, keep);
    keep = p - back;
    if (!any) return nullptr;
  }
}

// Passes on the text up to the next "<".
template <class Take>
bool XmlPull::passText(Take take) {
  for (;;) {
    char* const tag = scanTo<'<'>(at_);
    if (tag < end()) {
      if (tag != at_) take(between(at_, tag), true);
      at_ = tag;
      return true;
    }
    // References are never split.
    char* cut = end();
    const size_t reference = between(at_, cut).rfind('&');
    constexpr size_t kLongestReference = 16;
    if (!allRead_ && reference != std::string_view::npos &&
        static_cast<size_t>(cut - at_) - reference < kLongestReference) {
      cut = at_ + reference;
    }
    if (cut != at_) take(between(at_, cut), true);
    at_ = cut;
    if (!more(at_, at_) && at_ == end()) return false;
  }
}

// After "<!": a comment, CDATA, or a declaration.
template <class Take>
bool XmlPull::passBang(Take take) {
  while (static_cast<size_t>(end() - at_) < kCdata.size() && more(at_, at_)) {
  }
  const std::string_view mark = between(at_, end()).substr(0, kCdata.size());
  if (mark.starts_with(kDoctype)) return passDoctype();
  const bool cdata = mark == kCdata;
  const bool comment = mark.starts_with(kComment);
  const std::string_view closing = cdata ? "]]>" : comment ? "-->" : ">";
  if (!cdata) take({}, true);  // ends a piece of text
  at_ += cdata ? kCdata.size() : comment ? kComment.size() : 1;
  for (;;) {
    const size_t found = between(at_, end()).find(closing);
    const bool last = found != std::string_view::npos;
    const size_t rest = static_cast<size_t>(end() - at_);
    const size_t taken = last ? found : rest - std::min(rest, closing.size() - 1);
    if (cdata && taken > 0 && (last || !allRead_)) take({at_, taken}, false);
    at_ += taken;
    if (last) break;
    if (!more(at_, at_)) return false;
  }
  at_ += closing.size();
  return true;
}

// The internal subset may contain tags, quoted text, and comments, each with ">" and "]" inside.
bool XmlPull::passDoctype() {
  char* keep = at_;
  while (static_cast<size_t>(end() - at_) < kLongest && more(at_, at_) &&
         between(at_, end()).find('>') == std::string_view::npos) {
  }
  char* p = at_;
  while (p < end() && *p != '[' && *p != '>') ++p;
  if (p < end() && *p == '[') {
    // If the quotes do not match, the tag ends at its first ">".
    keep = at_;
    constexpr size_t kMost = size_t{1} << 16;
    while (static_cast<size_t>(end() - keep) < kMost && more(p, keep)) keep = at_ = block_.data();
    const char* q = p + 1;
    while (q < end() && *q != ']') {
      const std::string_view rest = between(q, end());
      const bool comment = rest.starts_with(kComment);
      const bool quote = *q == '"' || *q == '\'';
      const size_t close = comment ? rest.find("-->", kComment.size())
                           : quote ? rest.find(*q, 1)
                                   : 0;
      if (close == std::string_view::npos) break;
      q += close + 1;
    }
    if (q < end() && *q == ']') p += q - p;
  }
  at_ = find(p, p, ">");
  if (at_ == nullptr) {
    at_ = end();
    return false;
  }
  ++at_;
  return true;
}

template <class Take>
XmlPull::Tag XmlPull::nextTag(Take take) {
  if (!started_) start();
  for (;;) {
    if (!passText(take)) return endAt(end());
    if (at_ + 1 >= end()) {
      if (more(at_, at_)) continue;
      return endAt(at_);
    }
    if (at_[1] == '!') {
      const uint64_t place = passed_ + static_cast<uint64_t>(at_ - block_.data());
      if (passBang(take)) continue;
      if (depth_ > 0 && damage_ == XmlDamage::none) {
        damage_ = XmlDamage::cutOff;
        damagePlace_ = place;
      }
      return endAt(end());
    }
    take({}, true);
    if (at_[1] == '?') {
      char* const close = find(at_, at_, "?>");
      if (close == nullptr) return endAt(at_);
      at_ = close + 2;
      continue;
    }
    return readTag();
  }
}

XmlPull::Tag XmlPull::readTag() {
  if (at_[1] != '/') return openTag();
  for (;;) {
    char* const close = scanTo<'>'>(at_);
    if (close < end()) break;
    if (!more(at_, at_)) return endAt(at_);
  }
  closeTag();
  return Tag::close;
}

void XmlPull::closeTag() {
  const char* const name = at_ + 2;
  const char* const nameEnd = scanTo<' ', '\t', '\r', '\n', '>'>(at_ + 2);
  if (depth_ > 0) {
    if (depth_ <= kMostNames && openNames_[depth_ - 1] != hashOf(between(name, nameEnd))) {
      broken(XmlDamage::wrongClosing, at_);
    }
    --depth_;
    if (depth_ < kMostNames) openNames_.resize(depth_);
  }
  at_ = scanTo<'>'>(at_) + 1;
}

XmlPull::Tag XmlPull::openTag() {
  char* close = nullptr;
  char* nameEnd = nullptr;
  for (;;) {
    nameEnd = scanTo<' ', '\t', '\r', '\n', '/', '>', '"', '\'', '='>(at_ + 1);
    if (nameEnd < end()) close = readAttributes(nameEnd);
    if (close != nullptr) break;
    if (!more(at_, at_)) return endAt(at_);
  }
  const std::string_view whole = between(at_ + 1, nameEnd);
  if (depth_ < kMostNames) openNames_.push_back(hashOf(whole));
  ++depth_;
  if (!anyElement_) {
    anyElement_ = true;
    rootPrefix_ = whole.substr(0, whole.rfind(':') + 1);
  }
  const bool own = !rootPrefix_.empty() && whole.starts_with(rootPrefix_);
  name_ = whole.substr(own ? rootPrefix_.size() : 0);
  at_ = close + 1;
  return close[-1] == '/' ? Tag::empty : Tag::open;
}

char* XmlPull::readAttributes(char* p) {
  attributes_.clear();
  for (;;) {
    p = scanPast<' ', '\t', '\r', '\n'>(p);
    if (p >= end()) return nullptr;
    if (*p == '>') return p;
    if (*p == '/' && p[1] == '>') return p + 1 < end() ? p + 1 : nullptr;
    char* const name = p;
    char* const nameEnd = scanTo<' ', '\t', '\r', '\n', '/', '>', '"', '\'', '='>(p);
    p = scanPast<' ', '\t', '\r', '\n'>(nameEnd);
    if (p >= end()) return nullptr;
    if (*p != '=') {
      if (p == name) ++p;  // a stray quote or slash
      continue;
    }
    p = scanPast<' ', '\t', '\r', '\n'>(p + 1);
    if (p >= end()) return nullptr;
    if (*p != '"' && *p != '\'') continue;
    char* const value = p + 1;
    p = *p == '"' ? scanTo<'"', '<'>(value) : scanTo<'\'', '<'>(value);
    if (p >= end()) return nullptr;
    if (*p == '<') {  // never closed: the tag ends at the next ">"
      p = scanTo<'>'>(value);
      return p < end() ? p : nullptr;
    }
    attributes_.push_back({between(name, nameEnd), between(value, p)});
    ++p;
  }
}

bool XmlPull::nextChild(uint32_t level) {
  for (;;) {
    if (emptyOpen_) {
      emptyOpen_ = false;
      --depth_;
      if (depth_ < kMostNames) openNames_.resize(depth_);
    }
    if (depth_ < level || (level == 0 && anyElement_ && depth_ == 0)) return false;
    switch (nextTag([](std::string_view, bool) {})) {
      case Tag::ended: return false;
      case Tag::close: break;
      case Tag::empty: emptyOpen_ = true; [[fallthrough]];
      case Tag::open:
        if (depth_ == level + 1) return true;
        break;
    }
  }
}

std::string_view XmlPull::localName() const {
  const size_t colon = name_.rfind(':');
  return colon == std::string_view::npos ? name_ : name_.substr(colon + 1);
}

void XmlPull::appendUtf8Text(std::string_view bytes, std::string& out) const {
  while (!bytes.empty()) {
    const size_t length = singleByte_ && isHigh(bytes[0]) ? 0 : utf8Length(bytes);
    if (length == 0) {
      appendSingleByte(out, bytes[0]);
    } else {
      out += bytes.substr(0, length);
    }
    bytes.remove_prefix(std::max<size_t>(length, 1));
  }
}

std::string_view XmlPull::plain(std::string_view stored, std::string& scratch) const {
  const bool ascii = isAscii(stored);
  const bool references = stored.find('&') != std::string_view::npos;
  if (ascii && !references) return stored;
  scratch.clear();
  if (ascii) {
    scratch = stored;
  } else {
    appendUtf8Text(stored, scratch);
  }
  if (references) scratch = unescapeXml(decodeReferences(scratch));
  return scratch;
}

std::optional<std::string_view> XmlPull::attribute(std::string_view name) {
  for (const Attribute& attribute : attributes_) {
    if (attribute.name != name) continue;
    std::string& scratch = scratch_[nextScratch_++ % std::size(scratch_)];
    return plain(attribute.value, scratch);
  }
  return std::nullopt;
}

// Consecutive text and CDATA sections form one text, which is trimmed.
void XmlPull::endRun(std::string& run) {
  text_ += trimmed(run);
  run.clear();
}

std::string_view XmlPull::text() {
  const uint32_t level = depth_;
  attributes_.clear();
  if (emptyOpen_ || level == 0) return {};
  // Most texts are short, plain, and followed by their closing tag.
  char* const p = scanTo<'<', '&'>(at_);
  if (p + 1 < end() && *p == '<' && p[1] == '/' && scanTo<'>'>(p) < end()) {
    const std::string_view plainText = trimmed(between(at_, p));
    if (isAscii(plainText)) {
      at_ = p;
      closeTag();
      return plainText;
    }
  }
  text_.clear();
  std::string run;
  const auto take = [&](std::string_view piece, bool escaped) {
    if (piece.empty()) return endRun(run);
    if (depth_ != level) return;
    std::string scratch;
    if (escaped) {
      run += plain(piece, scratch);
    } else {
      appendUtf8Text(piece, run);
    }
  };
  while (depth_ >= level) {
    switch (nextTag(take)) {
      case Tag::ended: return {};
      case Tag::close: break;
      case Tag::open: break;
      case Tag::empty: --depth_, openNames_.resize(std::min<size_t>(depth_, kMostNames)); break;
    }
  }
  return text_;
}

bool XmlPull::textPieces(const std::function<bool(std::string_view)>& take) {
  const uint32_t level = depth_;
  attributes_.clear();
  if (emptyOpen_ || level == 0) return true;
  bool wanted = true;
  std::string rest;  // of the last piece, after its last space
  const auto hand = [&](std::string_view piece, bool) {
    if (depth_ != level || !wanted) return;
    const size_t blank = piece.find_last_of(kXmlBlanks);
    if (blank == std::string_view::npos) {
      if (rest.size() < kLongest) rest += piece;
      return;
    }
    const size_t first = rest.empty() ? 0 : piece.find_first_of(kXmlBlanks) + 1;
    if (first > 0) {
      rest += piece.substr(0, first);
      wanted = take(rest);
      rest.clear();
    }
    if (wanted && blank + 1 > first) wanted = take(piece.substr(first, blank + 1 - first));
    rest = piece.substr(blank + 1);
  };
  while (depth_ >= level) {
    switch (nextTag(hand)) {
      case Tag::ended: return false;
      case Tag::close: break;
      case Tag::open: break;
      case Tag::empty: --depth_, openNames_.resize(std::min<size_t>(depth_, kMostNames)); break;
    }
  }
  if (wanted && !rest.empty()) take(rest);
  return true;
}

XmlPlace placeInText(ByteSource source, uint64_t offset) {
  XmlBytes bytes(std::move(source));
  std::vector<char> block(kXmlBlock);
  XmlPlace place;
  char last = 0;
  while (offset > 0) {
    const size_t got = bytes.read(block.data(), block.size());
    const size_t count = static_cast<size_t>(std::min<uint64_t>(got, offset));
    for (size_t i = 0; i < count; ++i) {
      const char c = block[i];
      const bool secondHalf = c == '\n' && last == '\r';
      last = c;
      if (secondHalf) continue;
      ++place.column;
      if (c == '\n' || c == '\r') place = {place.line + 1, 1};
    }
    offset -= count;
    if (got == 0) break;
  }
  return place;
}

}  // namespace vgps
