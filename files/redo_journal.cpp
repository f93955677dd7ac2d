#include "files/redo_journal.h"

#include <cstdio>

#include "files/crc32.h"
#include "platform/files.h"

// vgps-redo LLLLLLLLLLLLLLLL CCCCCCCC\n      length and CRC-32 of the text, hexadecimal
// the text
namespace vgps {
namespace {

constexpr size_t kHeaderBytes = 36;
constexpr size_t kLargestText = size_t{64} << 20;

std::string headerOf(std::string_view text) {
  char header[kHeaderBytes + 1];
  std::snprintf(header, sizeof header, "vgps-redo %016llx %08lx\n",
                static_cast<unsigned long long>(text.size()),
                static_cast<unsigned long>(crc32Of(text)));
  return header;
}

std::span<const uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

std::string readText(ExclusiveFile& file, uint64_t offset, size_t size) {
  std::string text(size, '\0');
  text.resize(file.readAt(offset, {reinterpret_cast<uint8_t*>(text.data()), size}));
  return text;
}

}  // namespace

RedoJournal::RedoJournal(const std::string& file, const ExclusiveOpener& open)
    : path_(resolveLinks(file) + ".redo"), open_(open) {}

RedoJournal::SaveResult RedoJournal::keep(std::string_view text) {
  FileOpening opening = FileOpening::refused;
  const auto file = open_(path_, OpenMode::orCreate, opening);
  if (file == nullptr) return SaveResult::impossible;
  const std::string header = headerOf(text);
  const bool kept = text.size() <= kLargestText && file->cutAt(0) &&
                    file->writeAt(0, bytesOf(header)) &&
                    file->writeAt(kHeaderBytes, bytesOf(text)) && file->flush();
  if (kept) flushFolderOf(path_);
  if (!kept) file->remove();
  return kept ? SaveResult::kept : SaveResult::failed;
}

std::optional<std::string> RedoJournal::interrupted() {
  if (fileKind(path_) != FileKind::regular) return std::nullopt;
  FileOpening opening = FileOpening::refused;
  const auto file = open_(path_, OpenMode::existing, opening);
  if (file == nullptr) return std::nullopt;
  const uint64_t size = file->size();
  if (size >= kHeaderBytes && size - kHeaderBytes <= kLargestText) {
    std::string text = readText(*file, kHeaderBytes, static_cast<size_t>(size - kHeaderBytes));
    if (readText(*file, 0, kHeaderBytes) == headerOf(text)) return text;
  }
  file->remove();
  return std::nullopt;
}

void RedoJournal::remove() {
  FileOpening opening = FileOpening::refused;
  if (const auto file = open_(path_, OpenMode::existing, opening)) file->remove();
}

}  // namespace vgps
