#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

// Reading files, whole or in parts.
namespace vgps {

// Fills the given buffer as far as possible; returns 0 at the end.
using ByteSource = std::function<size_t(char*, size_t)>;

// A file opened for reading, unless it is not a regular one: reading a pipe would wait for its
// writer. The destructor closes it.
class InputFile {
 public:
  explicit InputFile(const std::string& path);
  explicit operator bool() const { return file_ != nullptr; }
  void close() { file_.reset(); }
  // Reads its bytes from the current position.
  ByteSource source();
  // Returns false if not all of these bytes could be read.
  bool readAt(uint64_t offset, uint64_t size, std::string& out);
  // Calls `write` with these bytes in order. Returns false if reading or `write` fails.
  bool copy(uint64_t begin, uint64_t end, const std::function<bool(std::string_view)>& write);
  // Whether a read error occurred.
  bool failed() const;

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  bool seek(uint64_t offset);
  std::unique_ptr<std::FILE, Close> file_;
};

// Reads the rest of the source.
void readToEnd(const ByteSource& source, std::string& out);

// Returns false if it is not a regular file, has more than `most` bytes, or cannot be read to its
// end.
bool readWholeFile(const std::string& path, std::string& out, uint64_t most = UINT64_MAX);

}  // namespace vgps
