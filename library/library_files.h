#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "library/tag_reader.h"
#include "library/track_store.h"
#include "track/whole_file.h"

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

// The lock of a document: beside the file itself, so that it is one under every link to it.
std::string lockPathOf(const std::string& document);

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

}  // namespace vgps
