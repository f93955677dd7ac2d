#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/date_time.h"
#include "files/input_file.h"
#include "files/whole_file.h"

// ZIP archives, as KMZ files are.
namespace vgps {

// An entry that unpacks to more is refused: a few kilobytes can hold terabytes.
inline constexpr uint64_t kMostUnpacked = uint64_t{1} << 30;

// Packs entries into a file that is being written. Names are UTF-8.
class ArchiveWriter {
 public:
  // `out` outlives it.
  explicit ArchiveWriter(OutputFile& out);
  ~ArchiveWriter();
  ArchiveWriter(const ArchiveWriter&) = delete;
  ArchiveWriter& operator=(const ArchiveWriter&) = delete;

  // Deflated. False when the disk did not take it.
  bool add(const std::string& name, const ByteSource& bytes, const DateTime& local);
  // The directory at the end; the file is the caller's to finish.
  bool finish();

 private:
  struct Zip;
  std::unique_ptr<Zip> zip_;
};

// Reads one entry of an archive. Nothing is ever unpacked to the disk, so the names in it lead
// nowhere.
class ArchiveReader {
 public:
  enum class State {
    ready,
    notOpened,  // no such file, or not an archive
    noEntry,
    unreadable,  // damaged, encrypted or packed in another way
    tooLarge,    // more than kMostUnpacked
  };

  explicit ArchiveReader(const std::string& path);
  ~ArchiveReader();
  ArchiveReader(const ArchiveReader&) = delete;
  ArchiveReader& operator=(const ArchiveReader&) = delete;

  // Opens the first entry whose name ends so, in letters of any case.
  State openFirst(std::string_view ending);
  // Of that entry. An end before the entry's is told by `state`.
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
