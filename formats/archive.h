#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/date_time.h"
#include "files/input_file.h"
#include "files/whole_file.h"

// ZIP archives; KMZ files are such archives.
namespace vgps {

// Larger unpacked entries are rejected: a few kilobytes can expand to terabytes.
inline constexpr uint64_t kMostUnpacked = uint64_t{1} << 30;

// Adds compressed entries to a file that is being written. Names are UTF-8.
class ArchiveWriter {
 public:
  // `out` must outlive this object.
  explicit ArchiveWriter(OutputFile& out);
  ~ArchiveWriter();
  ArchiveWriter(const ArchiveWriter&) = delete;
  ArchiveWriter& operator=(const ArchiveWriter&) = delete;

  // Adds a deflated entry. Returns false if writing failed.
  bool add(const std::string& name, const ByteSource& bytes, const DateTime& local);
  // Writes the directory at the end; the caller must finish the file.
  bool finish();

 private:
  struct Zip;
  std::unique_ptr<Zip> zip_;
};

// Reads one entry of an archive. Nothing is ever extracted to disk, so the names in the archive
// cannot do any harm.
class ArchiveReader {
 public:
  enum class State {
    ready,
    notOpened,  // no such file, or not an archive
    noEntry,
    unreadable,  // damaged, encrypted, or an unsupported compression method
    tooLarge,    // more than kMostUnpacked
  };

  explicit ArchiveReader(const std::string& path);
  ~ArchiveReader();
  ArchiveReader(const ArchiveReader&) = delete;
  ArchiveReader& operator=(const ArchiveReader&) = delete;

  // Opens the first entry whose name has this ending, ignoring case.
  State openFirst(std::string_view ending);
  // Reads from that entry. `state` tells if the data ended early.
  ByteSource source();
  State state() const { return state_; }
  const std::string& entryName() const { return name_; }

 private:
  struct Unzip;
  size_t read(char* to, size_t size);

  std::unique_ptr<Unzip> unzip_;
  State state_ = State::notOpened;
  std::string name_;
  uint64_t unpacked_ = 0;
};

}  // namespace vgps
