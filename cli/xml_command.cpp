#include <cstdio>
#include <string>

#include "cli/commands.h"
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

}  // namespace

int runXml(const XmlOptions& options) {
  XmlDocument document;
  const XmlLoadResult result = document.Load(options.file, XmlLoadMode::file);
  if (!result) return fail(complaint(options.file, result));
  if (!options.output.empty()) {
    return document.Save(options.output) != 0 ? 0 : fail("cannot write " + options.output);
  }
  XmlElement root = document.GetRootElement();
  std::printf("%s: <%s> with %zu children\n", options.file.c_str(), root.GetElementName().c_str(),
              root.GetChildrenNum());
  return finishOutput();
}

}  // namespace vgps
