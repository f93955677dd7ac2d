#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "library/tag_reader.h"
#include "library/track_store.h"

// Files as a library reads and writes them: too long to be held in memory, and shared with other
// programs.
namespace vgps {

// A file opened for reading; closed with it.
class InputFile {
 public:
  explicit InputFile(const std::string& path);
  explicit operator bool() const { return file_ != nullptr; }
  void close() { file_.reset(); }
  // Its bytes in their order.
  TagReader::Source source();
  // False when these bytes cannot all be read.
  bool readAt(uint64_t offset, uint64_t size, std::string& out);
  // Calls `write` with all these bytes in their order; false when it, or reading, fails.
  bool copy(uint64_t begin, uint64_t end, const std::function<bool(std::string_view)>& write);
  // A fault of the disk was met.
  bool failed() const;

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  bool seek(uint64_t offset);
  std::unique_ptr<std::FILE, Close> file_;
};

bool readWholeFile(const std::string& path, std::string& out);

// Writes a file beside its place, and gives it its name in the end: until then nothing has changed.
class OutputFile {
 public:
  OutputFile(std::string path, const ExclusiveOpener& open);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();
  bool write(std::string_view bytes);
  uint64_t written() const { return written_; }
  // Everything is on the disk and has its name. False when nothing has changed.
  bool finish();

 private:
  bool sendBuffer();

  const std::string path_;
  const std::string beside_;
  std::unique_ptr<ExclusiveFile> file_;
  std::string buffer_;
  uint64_t written_ = 0;  // with the buffer
  bool good_ = false;
};

// Held while a library is changed, so that two programs do not write over each other's change. The
// system gives it free when its program ends.
class LibraryLock {
 public:
  LibraryLock(const std::string& path, const LibraryDisk& disk);
  LibraryLock(const LibraryLock&) = delete;
  LibraryLock& operator=(const LibraryLock&) = delete;
  ~LibraryLock();
  // `done` when it is held.
  LibraryResult result() const { return result_; }

 private:
  std::unique_ptr<ExclusiveFile> file_;
  LibraryResult result_ = LibraryResult::notWritten;
};

// Copies a damaged file beside itself: "NAME.bad", or "NAME-2.bad" to "NAME-99.bad" where there are
// earlier ones. The copy's path; empty when that failed.
std::string copyAsBad(const std::string& path, const ExclusiveOpener& open);

}  // namespace vgps
