#include <cstdio>
#include <string>

#include "cli/commands.h"
#include "files/whole_file.h"
#include "platform/files.h"
#include "xml/document.h"

namespace vgps {
namespace {

std::string complaint(const std::string& file, const XmlLoadResult& result) {
  switch (result.status) {
    case XmlLoadStatus::loaded: break;
    case XmlLoadStatus::noFile: return "cannot open " + file;
    case XmlLoadStatus::unreadable: return "cannot read " + file;
    case XmlLoadStatus::empty: return file + ": line 1, column 1: the file is empty";
    case XmlLoadStatus::tooLarge: return file + " is too large";
    case XmlLoadStatus::noElement:
      return file + ": line " + std::to_string(result.place.line) + ", column " +
             std::to_string(result.place.column) + ": an XML element was expected here";
  }
  return {};
}

// A pipe or a device is written into; a file gets the whole document or stays as it was.
int saveAs(XmlDocument& document, const std::string& path) {
  if (fileExists(path) && fileKind(path) == FileKind::other && !isFolder(path)) {
    return document.Save(path) != 0 ? 0 : fail("cannot write " + path);
  }
  const XmlBuffer text = document.saveToMemory();
  if (!text) return fail("cannot write " + path + ": the document is too large");
  OutputFile file(path);
  if (file.write(text.view()) && file.finish()) return 0;
  return fail("cannot write " + path + file.reason());
}

}  // namespace

int runXml(const XmlOptions& options) {
  XmlDocument document;
  const XmlLoadResult result = document.Load(options.file, XmlLoadMode::file);
  if (!result) return fail(complaint(options.file, result));
  if (!options.output.empty()) return saveAs(document, options.output);
  XmlElement root = document.GetRootElement();
  std::printf("%s: <%s> with %zu children\n", options.file.c_str(), root.GetElementName().c_str(),
              root.GetChildrenNum());
  return finishOutput();
}

}  // namespace vgps
