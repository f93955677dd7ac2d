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
constexpr uint8_t kNote = 2;  // about the next point; older versions skip it

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

uint32_t recordChecksum(std::span<const uint8_t> record) {
  return crc32Of(record.subspan(kJournalRecordHead), crc32Of(record.first(4)));
}

// The valid record at the start of `bytes`; empty if there is none.
std::span<const uint8_t> recordAt(std::span<const uint8_t> bytes) {
  if (bytes.size() < kJournalRecordHead + 1) return {};
  Reader head(bytes.data());
  const auto length = head.number<uint32_t>();
  const auto crc = head.number<uint32_t>();
  if (length == 0 || length > bytes.size() - kJournalRecordHead) return {};
  const auto record = bytes.first(kJournalRecordHead + length);
  return recordChecksum(record) == crc ? record : std::span<const uint8_t>();
}

// The position of the next valid point; the size of `bytes` if there is none. Computes checksums
// only where the length and kind are those of a point, so that noise is skipped in linear time.
size_t nextPoint(std::span<const uint8_t> bytes, size_t from) {
  for (size_t at = from; at + kJournalPoint <= bytes.size(); ++at) {
    if (Reader(bytes.data() + at).number<uint32_t>() != kJournalPointBody) continue;
    if (isPoint(recordAt(bytes.subspan(at, kJournalPoint)))) return at;
  }
  return bytes.size();
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

JournalContents readJournal(std::span<const uint8_t> bytes) {
  JournalContents contents;
  const bool good = headerIsGood(bytes);
  size_t at = good ? kJournalHeader : nextPoint(bytes, 0);
  contents.damaged = !good && bytes.size() > kJournalHeader;
  if (good) contents.goodEnd = kJournalHeader;
  std::span<const uint8_t> note;  // the preceding record, if it is a note
  while (at < bytes.size()) {
    const std::span<const uint8_t> record = recordAt(bytes.subspan(at));
    if (!record.empty()) {
      if (isPoint(record)) {
        contents.points.push_back(pointFrom(record.data() + kJournalRecordHead));
        if (!note.empty()) takeNote(note, contents.points.back());
      }
      note = isNote(record) ? record : std::span<const uint8_t>();
      at += record.size();
      contents.goodEnd = at;
      continue;
    }
    note = {};
    const size_t next = nextPoint(bytes, at + 1);
    if (next < bytes.size() || bytes.size() - at >= kJournalPoint) contents.damaged = true;
    at = next;
  }
  return contents;
}

}  // namespace vgps
