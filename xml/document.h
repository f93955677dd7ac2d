#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/element.h"
#include "xml/files.h"
#include "xml/reader.h"

namespace vgps {

// The mark of the library that the About box shows.
constexpr std::string_view kXmlVersion = "15-07-2010";

constexpr std::string_view kXmlDeclaration =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes" ?>)";

enum class XmlLoadMode { file = 0, text = 1, utf16Named = 7 };
enum class XmlSaveMode { utf8 = 0, text = 1, nothing = 2, utf16 = 3 };

enum class XmlLoadStatus {
  loaded,
  noFile,      // the system did not open it
  unreadable,  // it was opened and could not be read: a folder, a fault of the disk
  empty,
  noElement,  // `place` says where the first should have begun
  tooLarge,
};

// What became of a load, for those who want to tell the user; the document is valid anyway.
struct XmlLoadResult {
  XmlLoadStatus status = XmlLoadStatus::loaded;
  XmlPlace place;
  bool rootEnds = false;  // the text holds the root to its end
  explicit operator bool() const { return status == XmlLoadStatus::loaded; }
};

struct XmlHeader {
  std::string text{kXmlDeclaration};
  std::vector<XmlComment> comments;
};

// One XML file in memory. There is always a root; a new document's is called "root".
class XmlDocument {
 public:
  // `files` outlives the document.
  explicit XmlDocument(const XmlFiles& files = systemFiles());
  ~XmlDocument();
  XmlDocument(XmlDocument&&) noexcept;
  XmlDocument& operator=(XmlDocument&&) noexcept;

  // Replaces what the document holds; handles to it end. Never fails: without a readable element
  // the document is an empty "root". A file's name is remembered even when it does not exist.
  XmlLoadResult Load(std::string_view source, XmlLoadMode mode = XmlLoadMode::file,
                     const XmlReading& reading = {});
  XmlLoadResult Load(std::u16string_view fileName, const XmlReading& reading = {});

  // 1, or 0 when nothing was saved; the document stays as it is. Without a name the remembered
  // one is taken. The file is overwritten in place, after everything has been rendered and when
  // memory and disk have room for it. Modes text and nothing fail here.
  int Save(std::string_view fileName = {}, XmlSaveMode mode = XmlSaveMode::utf8);
  int Save(std::u16string_view fileName, XmlSaveMode mode = XmlSaveMode::utf8);
  // Mode text: the document as UTF-8 in memory; false when that has no room for it.
  XmlBuffer saveToMemory();
  int saveText(std::string& out);
  // The bytes of the document as UTF-8.
  uint64_t savedSize() const;

  XmlElement GetRootElement() const;
  // `element` leaves its place, or is copied when it is another document's. The old root is gone
  // with everything under it.
  void SetRootElement(XmlElement element);
  XmlHeader& GetHeader() { return header_; }
  const XmlHeader& GetHeader() const { return header_; }

  // An element of this document, not yet placed, from a text such as "<p x=\"1\" />"; the last
  // ">" may be missing. False when there is no element in it.
  XmlElement createElement(std::string_view literal);

  // UTF-8, whichever way it was given.
  const std::string& fileName() const { return fileName_; }
  bool fileNameIsUtf16() const { return fileNameIsUtf16_; }
  void setFileName(std::string_view name);

 private:
  void reset();
  XmlLoadResult loadFile(const XmlReading& reading);
  XmlLoadResult read(XmlSource source, size_t windowSize, const XmlReading& reading);
  int saveFile(const std::string& path, XmlSaveMode mode);
  XmlBuffer renderInto(uint64_t size, uint64_t most, std::string_view declaration) const;
  XmlBuffer renderAll(std::string_view declaration) const;

  const XmlFiles* files_;
  std::unique_ptr<XmlTree> tree_;
  XmlHeader header_;
  std::string fileName_;
  bool fileNameIsUtf16_ = false;
};

}  // namespace vgps
