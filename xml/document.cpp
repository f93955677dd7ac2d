#include "xml/document.h"

#include <algorithm>
#include <cstring>

#include "base/text.h"
#include "xml/encoding.h"
#include "xml/writer.h"

namespace vgps {
namespace {

constexpr std::string_view kUtf16Declaration =
    R"(<?xml version="1.0" encoding="UTF-16" standalone="yes" ?>)";
constexpr std::string_view kLineEnd = "\r\n";
constexpr uint64_t kUsualRoom = 1024 * 1024;  // any system has this much; no need to check

struct OpenFile {
  const XmlFiles& files;
  void* handle;
};

size_t readFromFile(void* from, char* to, size_t size) {
  const auto& file = *static_cast<OpenFile*>(from);
  return file.files.read(file.handle, to, size);
}

char* append(char* out, std::string_view text) {
  if (!text.empty()) std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

uint64_t commentSize(const XmlComment& comment) {
  return comment.text.size() + std::string_view("<!---->\r\n").size();
}

char* appendComments(char* out, const std::vector<XmlComment>& comments, bool afterRoot) {
  for (const XmlComment& comment : comments) {
    if ((comment.position != 0) != afterRoot) continue;
    out = append(append(append(out, "<!--"), comment.text), "-->\r\n");
  }
  return out;
}

}  // namespace

XmlDocument::XmlDocument(const XmlFiles& files) : files_(&files) { reset(); }
XmlDocument::~XmlDocument() = default;
XmlDocument::XmlDocument(XmlDocument&&) noexcept = default;
XmlDocument& XmlDocument::operator=(XmlDocument&&) noexcept = default;

void XmlDocument::reset() {
  tree_ = std::make_unique<XmlTree>();
  tree_->root = tree_->newElement(tree_->names.number(tree_->text, "root"));
  header_ = {};
}

void XmlDocument::setFileName(std::string_view name) {
  fileName_ = name;
  fileNameIsUtf16_ = false;
}

XmlLoadResult XmlDocument::Load(std::string_view source, XmlLoadMode mode,
                                const XmlReadOptions& reading) {
  if (mode == XmlLoadMode::text) {
    setFileName({});
    const size_t window = std::min(source.size() + 1, XmlWindow::kUsualSize);
    return read(XmlSource::of(source), window, reading);
  }
  setFileName(source);
  fileNameIsUtf16_ = mode == XmlLoadMode::utf16Named;
  return loadFile(reading);
}

XmlLoadResult XmlDocument::Load(std::u16string_view fileName, const XmlReadOptions& reading) {
  return Load(utf8FromUtf16(fileName), XmlLoadMode::utf16Named, reading);
}

XmlLoadResult XmlDocument::loadFile(const XmlReadOptions& reading) {
  OpenFile file{*files_, files_->open(fileName_, XmlFiles::Access::read)};
  if (file.handle == nullptr) {
    reset();
    return {XmlLoadStatus::noFile, {}, false};
  }
  XmlLoadResult result = read({readFromFile, &file}, XmlWindow::kUsualSize, reading);
  // Data from a disk that reported an error later must not be used.
  if (!files_->close(file.handle)) {
    reset();
    result.status = XmlLoadStatus::unreadable;
  }
  return result;
}

XmlLoadResult XmlDocument::read(XmlSource source, size_t windowSize,
                                const XmlReadOptions& reading) {
  auto tree = std::make_unique<XmlTree>();
  tree->text.open();
  XmlPrologue outside;
  XmlDecoder decoder(source);
  tree->root = readXml(*tree, decoder.source(), windowSize, reading, outside);
  tree->text.seal();
  if (tree->root == kNoRow) {
    reset();
    if (outside.outOfMemory) return {XmlLoadStatus::tooLarge, {}, false};
    if (!outside.anyText) return {XmlLoadStatus::empty, {}, false};
    return {XmlLoadStatus::noElement, outside.stray, false};
  }
  tree_ = std::move(tree);
  header_ = {};
  if (!outside.declaration.empty()) header_.text = std::move(outside.declaration);
  header_.comments = std::move(outside.comments);
  return {XmlLoadStatus::loaded, {}, outside.rootEnds};
}

uint64_t XmlDocument::savedSize() const {
  uint64_t size = kXmlDeclaration.size() + kLineEnd.size() + renderedSize(*tree_, tree_->root);
  for (const XmlComment& comment : header_.comments) size += commentSize(comment);
  return size;
}

int XmlDocument::Save(std::string_view fileName, XmlSaveMode mode) {
  const std::string path(fileName.empty() ? std::string_view(fileName_) : fileName);
  if (path.empty() || (mode != XmlSaveMode::utf8 && mode != XmlSaveMode::utf16)) return 0;
  return saveFile(path, mode);
}

int XmlDocument::Save(std::u16string_view fileName, XmlSaveMode mode) {
  return Save(utf8FromUtf16(fileName), mode);
}

// Empty if the result exceeds `most` bytes or the memory could not be allocated.
XmlBuffer XmlDocument::renderInto(uint64_t size, uint64_t most,
                                  std::string_view declaration) const {
  uint64_t outside = declaration.size() + kLineEnd.size();
  for (const XmlComment& comment : header_.comments) outside += commentSize(comment);
  if (outside > most) return {};
  XmlBuffer text = XmlBuffer::ofSize(std::min(size + outside, most));
  if (!text) return {};
  char* const before = append(append(text.data(), declaration), kLineEnd);
  size_t used = static_cast<size_t>(appendComments(before, header_.comments, false) - text.data());
  used = renderXml(*tree_, tree_->root, text, used, most);
  if (used == 0 || !text.resize(used + outside)) return {};
  char* const end = appendComments(text.data() + used, header_.comments, true);
  text.resize(static_cast<size_t>(end - text.data()));
  return text;
}

// Only a deeply nested document is much larger written than in memory, because of its indentation.
// Its size is computed before allocating.
XmlBuffer XmlDocument::renderAll(std::string_view declaration) const {
  constexpr uint64_t kLine = 32;
  const uint64_t held = tree_->text.used() + kLine * tree_->elements.size() +
                        kLine / 2 * (tree_->attributes.size() + tree_->items.size());
  uint64_t room = held <= kUsualRoom ? UINT64_MAX : files_->roomInMemory();
  if (held > room) return {};
  XmlBuffer text = renderInto(held, std::min(room, held * 4 + kUsualRoom), declaration);
  if (text) return text;
  const uint64_t size = savedSize() + kUsualRoom;
  room = files_->roomInMemory();
  return size > room ? XmlBuffer() : renderInto(size, size, declaration);
}

int XmlDocument::saveFile(const std::string& path, XmlSaveMode mode) {
  const bool wide = mode == XmlSaveMode::utf16;
  const std::string_view declaration = wide ? kUtf16Declaration : kXmlDeclaration;
  XmlBuffer text = renderAll(declaration);
  if (text && wide) text = utf16File(text.view());
  if (!text || text.size() > files_->roomOnDisk(path)) return 0;
  void* const file = files_->open(path, XmlFiles::Access::overwrite);
  if (file == nullptr) return 0;
  const bool whole = files_->write(file, text.data(), text.size()) == text.size();
  if (!files_->close(file) || !whole) return 0;
  header_.text = declaration;
  return 1;
}

XmlBuffer XmlDocument::saveToMemory() {
  XmlBuffer text = renderAll(kXmlDeclaration);
  if (text) header_.text = kXmlDeclaration;
  return text;
}

int XmlDocument::saveText(std::string& out) {
  const XmlBuffer text = saveToMemory();
  if (!text) return 0;
  out = text.view();
  return 1;
}

XmlElement XmlDocument::GetRootElement() const { return {tree_.get(), tree_->root}; }

void XmlDocument::SetRootElement(XmlElement element) {
  if (!element || element == GetRootElement()) return;
  const bool own = element.tree() == tree_.get();
  const uint32_t root = own ? element.index() : tree_->copyFrom(*element.tree(), element.index());
  if (own) tree_->detach(root);
  tree_->destroy(tree_->root);
  tree_->root = root;
}

XmlElement XmlDocument::createElement(std::string_view literal) {
  XmlPrologue outside;
  return {tree_.get(), readXml(*tree_, literal, {}, outside)};
}

}  // namespace vgps
