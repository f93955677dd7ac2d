#include "library/library_index.h"

#include <bit>
#include <cstddef>

#include "files/crc32.h"
#include "files/input_file.h"
#include "files/whole_file.h"
#include "library/document_layout.h"

namespace vgps {
namespace {

constexpr std::string_view kIndexMagic = "VGPSINDX";
constexpr uint32_t kIndexVersion = 4;
constexpr uint32_t kOther = 1;  // flags
constexpr uint32_t kDamaged = 2;
constexpr size_t kLeastEntry = 136;  // bytes; more entries than that many fit are none

class IndexWriter {
 public:
  template <class Unsigned>
  void number(Unsigned value) {
    for (size_t i = 0; i < sizeof value; ++i) bytes_ += static_cast<char>(value >> (8 * i));
  }
  void decimal(double value) { number(std::bit_cast<uint64_t>(value)); }
  void text(std::string_view text) {
    number(static_cast<uint32_t>(text.size()));
    bytes_ += text;
  }
  void raw(std::string_view text) { bytes_ += text; }
  std::string take() {
    number(crc32Of(bytes_));
    return std::move(bytes_);
  }

 private:
  std::string bytes_;
};

// Reading past the end returns 0 and sets a flag.
class IndexReader {
 public:
  explicit IndexReader(std::string_view bytes) : left_(bytes) {}
  template <class Unsigned>
  Unsigned number() {
    const std::string_view bytes = raw(sizeof(Unsigned));
    Unsigned value = 0;
    for (size_t i = 0; i < bytes.size(); ++i) {
      const auto byte = static_cast<unsigned char>(bytes[i]);
      value = static_cast<Unsigned>(value | static_cast<Unsigned>(Unsigned{byte} << (8 * i)));
    }
    return value;
  }
  double decimal() { return std::bit_cast<double>(number<uint64_t>()); }
  std::string text() { return std::string(raw(number<uint32_t>())); }
  std::string_view raw(size_t size) {
    if (size > left_.size()) {
      failed_ = true;
      left_ = {};
    }
    const std::string_view bytes = left_.substr(0, failed_ ? 0 : size);
    left_.remove_prefix(bytes.size());
    return bytes;
  }
  size_t left() const { return left_.size(); }
  bool failed() const { return failed_; }

 private:
  std::string_view left_;
  bool failed_ = false;
};

void writeDate(IndexWriter& out, const DateTime& t) {
  for (const uint16_t field :
       {t.year, t.month, t.dayOfWeek, t.day, t.hour, t.minute, t.second, t.millisecond}) {
    out.number(field);
  }
}

void readDate(IndexReader& in, DateTime& t) {
  for (uint16_t* field :
       {&t.year, &t.month, &t.dayOfWeek, &t.day, &t.hour, &t.minute, &t.second, &t.millisecond}) {
    *field = in.number<uint16_t>();
  }
}

void writeStamp(IndexWriter& out, const FileStamp& stamp) {
  out.number(stamp.size);
  out.number(static_cast<uint64_t>(stamp.time));
}

FileStamp readStamp(IndexReader& in) {
  FileStamp stamp;
  stamp.size = in.number<uint64_t>();
  stamp.time = static_cast<int64_t>(in.number<uint64_t>());
  return stamp;
}

void writeEntry(IndexWriter& out, const IndexEntry& entry) {
  const TrackSummary& summary = entry.summary;
  out.text(entry.file);
  writeStamp(out, entry.stamp);
  for (const uint64_t place : {entry.blanksBegin, entry.begin, entry.end}) out.number(place);
  out.number(entry.checksum);
  out.number((entry.other ? kOther : 0) | (summary.damaged ? kDamaged : 0));
  out.number(summary.points);
  out.decimal(summary.kilometers);
  out.number(static_cast<uint64_t>(summary.seconds));
  writeDate(out, summary.date);
  out.number(static_cast<uint64_t>(summary.startUtc));
  out.number(summary.recording);
  const TrackBounds& bounds = summary.bounds;
  for (const double edge : {bounds.west, bounds.south, bounds.east, bounds.north}) {
    out.decimal(edge);
  }
  out.text(summary.name);
}

IndexEntry readEntry(IndexReader& in) {
  IndexEntry entry;
  TrackSummary& summary = entry.summary;
  entry.file = in.text();
  entry.stamp = readStamp(in);
  for (uint64_t* place : {&entry.blanksBegin, &entry.begin, &entry.end})
    *place = in.number<uint64_t>();
  entry.checksum = in.number<uint32_t>();
  const auto flags = in.number<uint32_t>();
  entry.other = (flags & kOther) != 0;
  summary.damaged = (flags & kDamaged) != 0;
  summary.points = in.number<uint64_t>();
  summary.kilometers = in.decimal();
  summary.seconds = static_cast<int64_t>(in.number<uint64_t>());
  readDate(in, summary.date);
  summary.startUtc = static_cast<int64_t>(in.number<uint64_t>());
  summary.recording = in.number<uint64_t>();
  TrackBounds& bounds = summary.bounds;
  for (double* edge : {&bounds.west, &bounds.south, &bounds.east, &bounds.north}) {
    *edge = in.decimal();
  }
  summary.name = in.text();
  return entry;
}

// Whether the path is unused or its file starts like an index.
bool mayBeReplaced(const std::string& path) {
  FileStamp stamp;
  if (!fileStamp(path, stamp)) return !fileExists(path);
  std::string magic;
  InputFile file(path);
  const bool same = file && file.readAt(0, kIndexMagic.size(), magic) && magic == kIndexMagic;
  return same || stamp.size == 0;
}

}  // namespace

void dropIndex(const std::string& path) {
  if (mayBeReplaced(path)) removeFile(path);
}

void writeIndex(const std::string& path, const LibraryIndex& index, const LibraryDisk& disk) {
  if (mayBeReplaced(path) && !writeWholeFile(path, indexText(index), disk.open)) removeFile(path);
}

std::string indexText(const LibraryIndex& index) {
  IndexWriter out;
  out.raw(kIndexMagic);
  out.number(kIndexVersion);
  writeStamp(out, index.document);
  out.number(index.endPlace);
  out.number(static_cast<uint32_t>(index.entries.size()));
  for (const IndexEntry& entry : index.entries) writeEntry(out, entry);
  return out.take();
}

bool readIndex(std::string_view bytes, LibraryIndex& index) {
  constexpr size_t kChecksum = 4;
  if (bytes.size() < kChecksum) return false;
  const std::string_view body = bytes.substr(0, bytes.size() - kChecksum);
  if (IndexReader(bytes.substr(body.size())).number<uint32_t>() != crc32Of(body)) return false;
  IndexReader in(body);
  if (in.raw(kIndexMagic.size()) != kIndexMagic || in.number<uint32_t>() != kIndexVersion)
    return false;
  LibraryIndex read;
  read.document = readStamp(in);
  read.endPlace = in.number<uint64_t>();
  const auto count = in.number<uint32_t>();
  if (count > in.left() / kLeastEntry) return false;
  read.entries.reserve(count);
  for (uint32_t i = 0; i < count; ++i) read.entries.push_back(readEntry(in));
  if (in.failed() || in.left() != 0) return false;
  index = std::move(read);
  return true;
}

}  // namespace vgps
