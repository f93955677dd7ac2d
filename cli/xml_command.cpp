#include <cstdio>
#include <string>

#include "cli/commands.h"
#include "files/file_lock.h"
#include "files/input_file.h"
#include "files/whole_file.h"
#include "library/track_library.h"
#include "platform/files.h"
#include "xml/document.h"
#include "xml/foreign.h"

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

// Pipes and devices are written to directly; a file is either replaced completely or left
// unchanged.
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

// Reads another program's file by the rules of XML instead of those for this program's own files.
int loadLeniently(const std::string& file, XmlDocument& document, XmlLoadResult& result) {
  std::string bytes;
  if (!readWholeFile(file, bytes)) {
    return fail((fileExists(file) ? "cannot read " : "cannot open ") + file);
  }
  if (isBinary(bytes)) return fail(file + " is a binary file, not text");
  std::string text;
  if (!expandEntities(bytes, text)) return fail(file + ": its entities expand without limit");
  result = document.Load(text, XmlLoadMode::text, {.lenient = true});
  return 0;
}

// Warns if the file was read differently from what its author meant.
void warnOfChanges(const XmlOptions& options, const XmlDocument& document) {
  const std::string advice = options.lenient ? "" : "; try --lenient";
  const std::string fault = whyNotWellFormed(document);
  if (!fault.empty()) {
    return warn(options.file + ": the result is not well-formed: " + fault + advice);
  }
  if (options.lenient) return;
  XmlDocument meant;
  if (!meant.Load(options.file, XmlLoadMode::file, {.lenient = true})) return;
  if (haveSameNames(document, meant)) return;
  warn(options.file + ": names of elements or attributes are lost or changed" + advice);
}

int rewriteXml(const XmlOptions& options) {
  constexpr uint64_t kMostIndentation = uint64_t{64} << 20;
  if (isNotAFile(options.file)) return fail(options.file + " is not a regular file");
  XmlDocument document;
  XmlLoadResult result;
  if (options.lenient) {
    if (const int failed = loadLeniently(options.file, document, result)) return failed;
  } else {
    result = document.Load(options.file, XmlLoadMode::file);
  }
  if (!result) return fail(complaint(options.file, result));
  if (!options.output.empty() && indentationOf(document) > kMostIndentation) {
    return fail(options.file + " is nested too deeply: its indentation alone would exceed 64 MB");
  }
  if (!options.output.empty()) {
    if (const int failed = saveAs(document, options.output)) return failed;
    warnOfChanges(options, document);
    return 0;
  }
  warnOfChanges(options, document);
  XmlElement root = document.GetRootElement();
  const size_t children = root.GetChildrenNum();
  std::printf("%s: <%s> with %zu %s\n", options.file.c_str(), root.GetElementName().c_str(),
              children, children == 1 ? "child" : "children");
  return finishOutput();
}

}  // namespace

// Between reading a library or the settings and replacing them no other program may change them.
int runXml(const XmlOptions& options) {
  constexpr int kWaitMs = 5000;
  constexpr int kInUse = 2;  // exit status
  if (options.output.empty() || !isLibraryFile(options.output)) return rewriteXml(options);
  const FileLock lock(lockPathOf(options.output), openExclusive, kWaitMs);
  if (lock.state() != FileOpening::inUse) return rewriteXml(options);
  fail(options.output + " is in use by another program");
  return kInUse;
}

}  // namespace vgps
