#include "library/journal_format.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>

#include "files/crc32.h"

namespace vgps {
namespace {

constexpr std::string_view kMagic = "VGPSJRNL";
constexpr uint32_t kVersion = 1;
constexpr uint8_t kPoint = 1;
constexpr uint8_t kNote = 2;  // about the point behind it; older programs pass over it
constexpr uint8_t kId = 3;    // likewise
constexpr size_t kLongestRecord = kJournalRecordHead + kJournalLongestBody;
constexpr uint64_t kLongestHole = uint64_t{64} << 20;

// Writes into a buffer that is known to be large enough.
class Writer {
 public:
  explicit Writer(uint8_t* at) : at_(at) {}
  template <class Unsigned>
  void number(Unsigned value) {
    for (size_t i = 0; i < sizeof value; ++i) *at_++ = static_cast<uint8_t>(value >> (8 * i));
  }
  void decimal(double value) { number(std::bit_cast<uint64_t>(value)); }
  void time(const DateTime& t) {
    for (const uint16_t field :
         {t.year, t.month, t.dayOfWeek, t.day, t.hour, t.minute, t.second, t.millisecond}) {
      number(field);
    }
  }

 private:
  uint8_t* at_;
};

// Reads from a buffer that is known to be large enough.
class Reader {
 public:
  explicit Reader(const uint8_t* at) : at_(at) {}
  template <class Unsigned>
  Unsigned number() {
    Unsigned value = 0;
    for (size_t i = 0; i < sizeof value; ++i) {
      value = static_cast<Unsigned>(value | static_cast<Unsigned>(Unsigned{*at_++} << (8 * i)));
    }
    return value;
  }
  double decimal() { return std::bit_cast<double>(number<uint64_t>()); }
  DateTime time() {
    DateTime t;
    for (uint16_t* field :
         {&t.year, &t.month, &t.dayOfWeek, &t.day, &t.hour, &t.minute, &t.second, &t.millisecond}) {
      *field = number<uint16_t>();
    }
    return t;
  }

 private:
  const uint8_t* at_;
};

TrackPoint pointFrom(const uint8_t* body) {
  Reader in(body + 1);
  TrackPoint point;
  point.fixStatus = static_cast<int32_t>(in.number<uint32_t>());
  point.longitude = in.decimal();
  point.latitude = in.decimal();
  point.altitude = in.decimal();
  point.utcTime = in.time();
  point.localTime = in.time();
  point.speedKnots = in.decimal();
  point.speedMps = in.decimal();
  point.speedKmh = in.decimal();
  point.speedMph = in.decimal();
  point.course = in.decimal();
  point.magneticVariation = in.decimal();
  point.m = in.number<uint32_t>();
  point.s = in.number<uint32_t>();
  point.c = in.number<uint32_t>();
  return point;
}

bool isNote(std::span<const uint8_t> record) {
  return record.size() == kJournalRecordHead + kJournalNoteBody &&
         record[kJournalRecordHead] == kNote;
}

void takeNote(std::span<const uint8_t> record, TrackPoint& point) {
  Reader in(record.data() + kJournalRecordHead + 1);
  point.unknown = in.number<uint32_t>() & kAllUnknown;
  point.receiverUtc = static_cast<int64_t>(in.number<uint64_t>());
}

bool isPoint(std::span<const uint8_t> record) {
  return record.size() == kJournalPoint && record[kJournalRecordHead] == kPoint;
}

bool isId(std::span<const uint8_t> record) {
  return record.size() == kJournalRecordHead + kJournalIdBody && record[kJournalRecordHead] == kId;
}

uint32_t recordChecksum(std::span<const uint8_t> record) {
  return crc32Of(record.subspan(kJournalRecordHead), crc32Of(record.first(4)));
}

// The valid record at the start of `bytes`; empty if there is none.
std::span<const uint8_t> recordAt(std::span<const uint8_t> bytes) {
  if (bytes.size() < kJournalRecordHead + 1) return {};
  Reader head(bytes.data());
  const auto length = head.number<uint32_t>();
  const auto crc = head.number<uint32_t>();
  if (length == 0 || length > kJournalLongestBody) return {};
  if (length > bytes.size() - kJournalRecordHead) return {};
  const auto record = bytes.first(kJournalRecordHead + length);
  return recordChecksum(record) == crc ? record : std::span<const uint8_t>();
}

// The bytes of a journal from the current place on, read in blocks.
class JournalWindow {
 public:
  explicit JournalWindow(const ByteSource& source) : source_(source), buffer_(kRoom) {}

  // At least `size` bytes, fewer only at the end.
  std::span<const uint8_t> ahead(size_t size) {
    if (end_ - begin_ < size && !ended_) fill(size);
    return std::span(buffer_).subspan(begin_, end_ - begin_);
  }
  void skip(size_t size) {
    begin_ += size;
    place_ += size;
  }
  uint64_t place() const { return place_; }

 private:
  static constexpr size_t kRoom = size_t{1} << 18;

  void fill(size_t size) {
    std::copy(buffer_.begin() + static_cast<ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<ptrdiff_t>(end_), buffer_.begin());
    end_ -= begin_;
    begin_ = 0;
    while (end_ < size && !ended_) {
      const size_t got = source_(reinterpret_cast<char*>(&buffer_[end_]), buffer_.size() - end_);
      ended_ = got == 0;
      end_ += got;
    }
  }

  const ByteSource& source_;
  std::vector<uint8_t> buffer_;
  size_t begin_ = 0;
  size_t end_ = 0;
  uint64_t place_ = 0;
  bool ended_ = false;
};

// Goes to the next valid point, or to the end, and returns how many bytes were passed over.
// Computes checksums only where the length and kind are those of a point, so that noise is skipped
// in linear time.
uint64_t skipToPoint(JournalWindow& in) {
  const uint64_t begin = in.place();
  while (in.place() - begin <= kLongestHole) {
    const std::span<const uint8_t> bytes = in.ahead(kJournalPoint);
    size_t at = 0;
    for (; at + kJournalPoint <= bytes.size(); ++at) {
      if (Reader(bytes.data() + at).number<uint32_t>() != kJournalPointBody) continue;
      if (!isPoint(recordAt(bytes.subspan(at, kJournalPoint)))) continue;
      in.skip(at);
      return in.place() - begin;
    }
    if (bytes.size() < kJournalPoint) at = bytes.size();
    in.skip(at);
    if (at == 0) break;
  }
  return in.place() - begin;
}

bool headerIsGood(std::span<const uint8_t> bytes) {
  return bytes.size() >= kJournalHeader &&
         std::equal(kMagic.begin(), kMagic.end(), bytes.begin(),
                    [](char a, uint8_t b) { return static_cast<uint8_t>(a) == b; }) &&
         Reader(bytes.data() + 8).number<uint32_t>() == kVersion &&
         Reader(bytes.data() + 12).number<uint32_t>() == crc32Of(bytes.first(12));
}

void writeNote(const TrackPoint& point, std::vector<uint8_t>& out) {
  std::array<uint8_t, kJournalRecordHead + kJournalNoteBody> record{};
  Writer(record.data()).number(uint32_t{kJournalNoteBody});
  Writer writer(&record[kJournalRecordHead]);
  writer.number(kNote);
  writer.number(point.unknown);
  writer.number(static_cast<uint64_t>(point.receiverUtc));
  Writer(&record[4]).number(recordChecksum(record));
  out.insert(out.end(), record.begin(), record.end());
}

}  // namespace

void writeJournalHeader(std::vector<uint8_t>& out) {
  std::array<uint8_t, kJournalHeader> header{};
  std::copy(kMagic.begin(), kMagic.end(), header.begin());
  Writer(&header[8]).number(kVersion);
  Writer(&header[12]).number(crc32Of(std::span(header).first(12)));
  out.insert(out.end(), header.begin(), header.end());
}

void writeJournalId(uint64_t id, std::vector<uint8_t>& out) {
  std::array<uint8_t, kJournalRecordHead + kJournalIdBody> record{};
  Writer(record.data()).number(uint32_t{kJournalIdBody});
  Writer writer(&record[kJournalRecordHead]);
  writer.number(kId);
  writer.number(id);
  Writer(&record[4]).number(recordChecksum(record));
  out.insert(out.end(), record.begin(), record.end());
}

void writeJournalPoint(const TrackPoint& point, std::vector<uint8_t>& out) {
  if (point.unknown != 0 || point.receiverUtc != 0) writeNote(point, out);
  std::array<uint8_t, kJournalPoint> record{};
  Writer(record.data()).number(uint32_t{kJournalPointBody});
  Writer writer(&record[kJournalRecordHead]);
  writer.number(kPoint);
  writer.number(static_cast<uint32_t>(point.fixStatus));
  for (const double value : {point.longitude, point.latitude, point.altitude}) {
    writer.decimal(value);
  }
  writer.time(point.utcTime);
  writer.time(point.localTime);
  for (const double value : {point.speedKnots, point.speedMps, point.speedKmh, point.speedMph,
                             point.course, point.magneticVariation}) {
    writer.decimal(value);
  }
  for (const uint32_t value : {point.m, point.s, point.c}) writer.number(value);
  Writer(&record[4]).number(recordChecksum(record));
  out.insert(out.end(), record.begin(), record.end());
}

JournalContents readJournal(const ByteSource& source) {
  JournalContents contents;
  JournalWindow in(source);
  const bool good = headerIsGood(in.ahead(kJournalHeader));
  if (good) {
    in.skip(kJournalHeader);
    contents.goodEnd = kJournalHeader;
  } else if (skipToPoint(in) > kLongestHole) {
    contents.damaged = true;
    return contents;
  }
  std::array<uint8_t, kJournalRecordHead + kJournalNoteBody> note{};
  bool hasNote = false;  // the record before is one
  for (;;) {
    const std::span<const uint8_t> bytes = in.ahead(kLongestRecord);
    if (bytes.empty()) break;
    const std::span<const uint8_t> record = recordAt(bytes);
    if (record.empty()) {
      hasNote = false;
      const uint64_t skipped = skipToPoint(in);
      const bool ended = in.ahead(1).empty();
      if (!ended || skipped >= kJournalPoint) contents.damaged = true;
      if (skipped > kLongestHole) break;
      continue;
    }
    if (isPoint(record)) {
      contents.points.push_back(pointFrom(record.data() + kJournalRecordHead));
      if (hasNote) takeNote(note, contents.points.back());
    }
    if (isId(record)) contents.id = Reader(&record[kJournalRecordHead + 1]).number<uint64_t>();
    hasNote = isNote(record);
    if (hasNote) std::copy(record.begin(), record.end(), note.begin());
    in.skip(record.size());
    if (!hasNote) contents.goodEnd = in.place();
  }
  if (!good && in.place() > kJournalHeader) contents.damaged = true;
  return contents;
}

JournalContents readJournal(std::span<const uint8_t> bytes) {
  return readJournal([&bytes](char* to, size_t size) {
    const size_t count = std::min(size, bytes.size());
    std::copy_n(bytes.begin(), count, to);
    bytes = bytes.subspan(count);
    return count;
  });
}

}  // namespace vgps
