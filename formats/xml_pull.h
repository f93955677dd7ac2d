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
  wrongClosing,  // a closing tag of another name than the open element's
  tooLong,       // a tag or text beyond all measure
};

// The bytes of an XML text as UTF-8 where they are UTF-16, with a byte order mark or without;
// others as they are.
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

// Walks over the elements of an XML text of any length without keeping them: memory for one tag or
// one text at a time. Files of other programs are read as the document reader reads them leniently:
// values in either quotes and with ">" inside, blanks around "=", references decoded, CDATA as
// text, closing names not compared. What a cut text leaves half is not given.
//
//   XmlPull xml(source);
//   if (xml.nextChild(0)) ...                the root; its level is 1
//   while (xml.nextChild(level)) {           the children of an element of that level
//     if (xml.is("ele")) xml.text() ...      or nextChild(level + 1) for what is inside
//   }
//
// Names and values are UTF-8 whatever the file holds: UTF-16, Latin-1 and Windows-1252 are
// converted, and a byte that is not UTF-8 is taken for Windows-1252.
class XmlPull {
 public:
  explicit XmlPull(ByteSource source) : bytes_(std::move(source)) {}

  // On to the next child of the open element of `level`; false behind the last one, when that
  // element is closed. What was not read of a child before is passed over.
  bool nextChild(uint32_t level);
  // Of the element that `nextChild` gave: 1 for the root.
  uint32_t level() const { return depth_; }

  // As it stands in the file, without the root's own prefix: in a text that begins with
  // "<gpx:gpx" the name of "<gpx:wpt" is "wpt". Until the next call.
  std::string_view name() const { return name_; }
  bool is(std::string_view name) const { return name_ == name; }
  // Likewise without any prefix.
  std::string_view localName() const;

  // The value of the first attribute of that name. Until the next call for a child or text.
  std::optional<std::string_view> attribute(std::string_view name);
  // The element's own text, trimmed; it is closed then. Nothing when the file ends before it does.
  // Until the next call.
  std::string_view text();
  // Calls `take(piece)` with the text piece by piece, untrimmed and cut only behind blanks: for
  // texts that are too long to be held. False when the file ends before the element does.
  bool textPieces(const std::function<bool(std::string_view)>& take);

  // The first damage, and how many bytes of the text (as UTF-8) stand before it.
  XmlDamage damage() const { return damage_; }
  uint64_t damagePlace() const { return damagePlace_; }
  // No text at all, or one without an element.
  bool isEmpty() const { return !anyElement_; }
  // An encoding that is not known here; its letters are taken for those of Windows-1252.
  const std::string& unknownEncoding() const { return unknownEncoding_; }

 private:
  struct Attribute {
    std::string_view name, value;
  };
  enum class Tag { open, empty, close, ended };

  void start();
  // Takes in more text behind `keep`, which moves to the front, and `p` with it.
  bool more(char*& p, const char* keep);
  char* end() { return block_.data() + filled_; }
  char* find(char* p, char*& keep, std::string_view mark);
  // The next tag; what stands in front of it goes to `take`, unless that is null.
  template <class Take>
  Tag nextTag(Take take);
  template <class Take>
  bool passText(Take take);
  template <class Take>
  bool passBang(Take take);
  bool passDoctype();
  Tag readTag();
  Tag openTag();
  // Where the tag ends that `p` is in, behind its name; null when more text is needed.
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
  uint64_t passed_ = 0;  // bytes in front of the block
  bool started_ = false;
  bool allRead_ = false;
  bool anyElement_ = false;
  bool singleByte_ = false;  // Latin-1 or Windows-1252
  bool emptyOpen_ = false;   // the element at `depth_` closed itself
  uint32_t depth_ = 0;
  std::vector<uint32_t> openNames_;
  std::string_view name_;
  std::string rootPrefix_;  // with its colon
  std::vector<Attribute> attributes_;
  std::string scratch_[4];
  size_t nextScratch_ = 0;
  std::string text_;
  XmlDamage damage_ = XmlDamage::none;
  uint64_t damagePlace_ = 0;
  std::string unknownEncoding_;
};

// The line and column of a byte of the text (as UTF-8) that `source` gives from its start.
XmlPlace placeInText(ByteSource source, uint64_t offset);

}  // namespace vgps
