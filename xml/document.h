#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/element.h"
#include "xml/files.h"
#include "xml/reader.h"

namespace vgps {

// The XML library's version, shown in the About box.
constexpr std::string_view kXmlVersion = "15-07-2010";

constexpr std::string_view kXmlDeclaration =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes" ?>)";

enum class XmlLoadMode { file = 0, text = 1, utf16Named = 7 };
enum class XmlSaveMode { utf8 = 0, text = 1, nothing = 2, utf16 = 3 };

enum class XmlLoadStatus {
  loaded,
  noFile,      // does not exist or could not be opened
  unreadable,  // opened but could not be read: a folder, a disk error
  empty,
  noElement,  // `place` says where the first one was expected
  tooLarge,
};

// The result of a load, for reporting it to the user. The document is valid in any case.
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

// One XML file in memory. It always has a root element; that of a new document is called "root".
class XmlDocument {
 public:
  // `files` must outlive the document.
  explicit XmlDocument(const XmlFiles& files = systemFiles());
  ~XmlDocument();
  XmlDocument(XmlDocument&&) noexcept;
  XmlDocument& operator=(XmlDocument&&) noexcept;

  // Replaces the contents; existing handles become invalid. If no element can be read, the document
  // becomes an empty "root", so it is always usable. A file's name is remembered even if the file
  // does not exist.
  XmlLoadResult Load(std::string_view source, XmlLoadMode mode = XmlLoadMode::file,
                     const XmlReadOptions& reading = {});
  XmlLoadResult Load(std::u16string_view fileName, const XmlReadOptions& reading = {});

  // Returns 1, or 0 if nothing was saved; the document does not change. Without a name, uses the
  // remembered one. Renders everything first and checks that memory and disk have enough space,
  // then overwrites the file in place. Modes `text` and `nothing` fail here.
  int Save(std::string_view fileName = {}, XmlSaveMode mode = XmlSaveMode::utf8);
  int Save(std::u16string_view fileName, XmlSaveMode mode = XmlSaveMode::utf8);
  // Mode `text`: the document as UTF-8 in memory. If there is not enough memory, saveToMemory
  // returns an empty buffer and saveText returns 0.
  XmlBuffer saveToMemory();
  int saveText(std::string& out);
  // The size of the document in UTF-8 bytes.
  uint64_t savedSize() const;

  XmlElement GetRootElement() const;
  // Moves `element` from its place, or copies it if it belongs to another document. The old root
  // and everything under it are deleted.
  void SetRootElement(XmlElement element);
  XmlHeader& GetHeader() { return header_; }
  const XmlHeader& GetHeader() const { return header_; }

  // Creates an element of this document, without a parent yet, from text such as "<p x=\"1\" />";
  // the final ">" may be missing. The result is false if the text contains no element.
  XmlElement createElement(std::string_view literal);

  // UTF-8, even if it was passed as UTF-16.
  const std::string& fileName() const { return fileName_; }
  bool fileNameIsUtf16() const { return fileNameIsUtf16_; }
  void setFileName(std::string_view name);

 private:
  void reset();
  XmlLoadResult loadFile(const XmlReadOptions& reading);
  XmlLoadResult read(XmlSource source, size_t windowSize, const XmlReadOptions& reading);
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
