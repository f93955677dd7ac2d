#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/input_file.h"
#include "xml/encoding.h"
#include "xml/reader.h"

namespace vgps {

enum class XmlDamage {
  none,
  cutOff,        // the text ends inside an element or a tag
  wrongClosing,  // a closing tag whose name differs from the open element
  tooLong,       // a tag or text of excessive length
};

// Returns the bytes of an XML text, converting UTF-16 (with or without a byte order mark) to UTF-8;
// other text is returned unchanged.
class XmlBytes {
 public:
  explicit XmlBytes(ByteSource source);
  XmlBytes(const XmlBytes&) = delete;
  XmlBytes& operator=(const XmlBytes&) = delete;
  size_t read(char* to, size_t size);

 private:
  static size_t readMarked(void* self, char* to, size_t size);

  ByteSource source_;
  XmlDecoder decoder_;
  bool started_ = false;
};

// Walks through the elements of an XML text of any length without storing them, with memory for one
// tag or text at a time. Other programs' files are read like the document reader does leniently:
// values in single or double quotes and with ">" inside, spaces around "=", references decoded,
// CDATA as text, names of closing tags not compared. Incomplete elements of a truncated text are
// not returned.
//
//   XmlPull xml(source);
//   if (xml.nextChild(0)) ...                the root; its level is 1
//   while (xml.nextChild(level)) {           the children of an element of that level
//     if (xml.is("ele")) xml.text() ...      or nextChild(level + 1) for what is inside
//   }
//
// Names and values are always UTF-8: UTF-16, Latin-1, and Windows-1252 are converted, and bytes
// that are not UTF-8 are treated as Windows-1252.
class XmlPull {
 public:
  explicit XmlPull(ByteSource source) : bytes_(std::move(source)) {}

  // Moves to the next child of the open element at `level`. Returns false after the last one, when
  // that element is closed. Unread parts of the previous child are skipped.
  bool nextChild(uint32_t level);
  // The level of the element that `nextChild` found: 1 for the root.
  uint32_t level() const { return depth_; }

  // The name as written, but without the prefix of the root: in a text that starts with "<gpx:gpx",
  // the name of "<gpx:wpt" is "wpt". Valid until the next call.
  std::string_view name() const { return name_; }
  bool is(std::string_view name) const { return name_ == name; }
  // The name without any prefix. Valid until the next call.
  std::string_view localName() const;

  // The value of the first attribute of that name. Valid until the next child or text is read.
  std::optional<std::string_view> attribute(std::string_view name);
  // Returns the element's own text, trimmed, and closes the element. None if the file ends first.
  // Valid until the next call.
  std::string_view text();
  // Calls `take(piece)` with the text piece by piece, untrimmed and split only after spaces: for
  // texts that are too long to keep in memory. Returns false if the file ends before the element
  // does.
  bool textPieces(const std::function<bool(std::string_view)>& take);

  // The first damage, and the number of bytes of the text (as UTF-8) before it.
  XmlDamage damage() const { return damage_; }
  uint64_t damagePlace() const { return damagePlace_; }
  // No text, or text without an element.
  bool isEmpty() const { return !anyElement_; }
  // An unknown encoding; its letters are read as Windows-1252.
  const std::string& unknownEncoding() const { return unknownEncoding_; }

 private:
  struct Attribute {
    std::string_view name, value;
  };
  enum class Tag { open, empty, close, ended };

  void start();
  // Reads more text after `keep`, which moves to the start of the block, and `p` with it.
  bool more(char*& p, const char* keep);
  char* end() { return block_.data() + filled_; }
  char* find(char* p, char*& keep, std::string_view mark);
  // Finds the next tag. The text before it is passed to `take` unless that is null.
  template <class Take>
  Tag nextTag(Take take);
  template <class Take>
  bool passText(Take take);
  template <class Take>
  bool passBang(Take take);
  bool passDoctype();
  Tag readTag();
  Tag openTag();
  // The end of the tag whose name ends at `p`; null if more text is needed.
  char* readAttributes(char* p);
  void closeTag();
  Tag endAt(const char* p);
  void broken(XmlDamage damage, const char* p);
  std::string_view plain(std::string_view stored, std::string& scratch) const;
  void appendUtf8Text(std::string_view bytes, std::string& out) const;
  void endRun(std::string& run);

  XmlBytes bytes_;
  std::vector<char> block_;  // larger than the data, so that scans may read past the end
  size_t filled_ = 0;
  char* at_ = nullptr;
  uint64_t passed_ = 0;  // bytes before the block
  bool started_ = false;
  bool allRead_ = false;
  bool anyElement_ = false;
  bool singleByte_ = false;  // Latin-1 or Windows-1252
  bool emptyOpen_ = false;   // the element at `depth_` has a self-closing tag
  uint32_t depth_ = 0;
  std::vector<uint32_t> openNames_;
  std::string_view name_;
  std::string rootPrefix_;  // including its colon
  std::vector<Attribute> attributes_;
  std::string scratch_[4];
  size_t nextScratch_ = 0;
  std::string text_;
  XmlDamage damage_ = XmlDamage::none;
  uint64_t damagePlace_ = 0;
  std::string unknownEncoding_;
};

// The line and column of a byte of the text (as UTF-8) that `source` returns from its start.
XmlPlace placeInText(ByteSource source, uint64_t offset);

}  // namespace vgps
