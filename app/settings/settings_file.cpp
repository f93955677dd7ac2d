#include "app/settings/settings_file.h"

#include "files/input_file.h"
#include "files/redo_journal.h"
#include "files/retry.h"
#include "platform/files.h"

namespace vgps {
namespace {

constexpr int kTries = 10;
constexpr uint64_t kLargestSettings = uint64_t{64} << 20;
constexpr std::chrono::milliseconds kPause(20);

}  // namespace

SettingsFile::Reading SettingsFile::readBytes(std::string& bytes) const {
  bytes.clear();
  const FileKind kind = fileKind(path_);
  if (kind == FileKind::none) return Reading::missing;
  // A pipe would make the reader wait for its writer.
  if (kind == FileKind::other) return Reading::unreadable;
  FileStamp stamp;
  if (fileStamp(path_, stamp) && stamp.size > kLargestSettings) return Reading::unreadable;
  void* const file = disk_.files->open(path_, XmlFiles::Access::read);
  if (file == nullptr) return Reading::unreadable;
  readToEnd([&](char* to, size_t size) { return disk_.files->read(file, to, size); }, bytes);
  if (disk_.files->close(file)) return Reading::read;
  bytes.clear();
  return Reading::unreadable;
}

// Also what another program holds for a moment.
SettingsFile::Reading SettingsFile::readWithRetry(std::string& bytes) const {
  Reading reading = Reading::unreadable;
  retry(kTries, kPause, [&] { return (reading = readBytes(bytes)) != Reading::unreadable; });
  return reading;
}

// Over the file, or as a new one.
bool SettingsFile::writeBytes(std::string_view bytes) const {
  void* const file = disk_.files->open(path_, XmlFiles::Access::overwrite);
  if (file == nullptr) return false;
  const bool whole = disk_.files->write(file, bytes.data(), bytes.size()) == bytes.size();
  return disk_.files->close(file) && whole && flushFile(path_);
}

// False, and `text` is what the file should hold, when it cannot be written.
bool SettingsFile::finishInterrupted(std::string& text) {
  RedoJournal journal(path_, disk_.open);
  const std::optional<std::string> interrupted = journal.interrupted();
  if (!interrupted) return true;
  text = *interrupted;
  if (!writeBytes(text)) return false;
  flushFolderOf(path_);
  journal.remove();
  return true;
}

SettingsFile::Reading SettingsFile::read(std::string& bytes) {
  return finishInterrupted(bytes) ? readBytes(bytes) : Reading::read;
}

bool SettingsFile::write(XmlDocument& document, std::string& text) {
  std::string old;
  if (!finishInterrupted(old)) return false;
  const Reading before = readWithRetry(old);
  if (before == Reading::unreadable || document.saveText(text) == 0) return false;
  RedoJournal journal(path_, disk_.open);
  // In a folder that takes no new files the save in place is all that can be done.
  if (journal.keep(text) == RedoJournal::SaveResult::failed) return false;
  const bool saved =
      document.Save(path_) != 0 && retry(kTries, kPause, [&] { return flushFile(path_); });
  // A disk may take the first half and then fail: the old text is put back.
  std::string now;
  const bool whole =
      saved || (before == Reading::missing
                    ? removeFile(path_) || !fileExists(path_)
                    : (readBytes(now) == Reading::read && now == old) || writeBytes(old));
  if (saved && before == Reading::missing) flushFolderOf(path_);
  if (whole) journal.remove();
  return saved;
}

}  // namespace vgps
