#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "files/input_file.h"
#include "track/track.h"

// The file format of a journal. All numbers are little-endian, times are eight 16-bit fields in the
// order of DateTime, and decimal numbers are 64-bit IEEE 754.
//
//   header   0  8  "VGPSJRNL"
//            8  4  version, 1
//           12  4  CRC-32 of the bytes 0 to 11
//
//   record   0  4  length of the body
//            4  4  CRC-32 of the length and the body
//            8     body
//
//   body of  0  1  kind, 1; other kinds are skipped
//   a point  1  4  fix status
//            5 24  longitude, latitude, altitude
//           29 16  UTC of the computer
//           45 16  local time of the computer
//           61 32  speed in knots, m/s, km/h, mph
//           93 16  course, magnetic variation
//          109 12  m, s, c
//
//   body of  0  1  kind, 2; precedes the point that it describes
//   a note   1  4  unknown values of the point: Unknown bits
//            5  8  UTC of the receiver, milliseconds since 1970; 0: unknown
namespace vgps {

inline constexpr size_t kJournalHeader = 16;
inline constexpr size_t kJournalRecordHead = 8;
inline constexpr size_t kJournalPointBody = 121;
inline constexpr size_t kJournalNoteBody = 13;
inline constexpr size_t kJournalIdBody = 9;
// No kind of record is longer: reading past a damaged length stays cheap.
inline constexpr size_t kJournalLongestBody = 4096;
inline constexpr size_t kJournalPoint = kJournalRecordHead + kJournalPointBody;
// A journal of this size or less has no point.
inline constexpr size_t kJournalStart = kJournalHeader + kJournalRecordHead + kJournalIdBody;

// These functions append to `out`.
void writeJournalHeader(std::vector<uint8_t>& out);
void writeJournalId(uint64_t id, std::vector<uint8_t>& out);
void writeJournalPoint(const TrackPoint& point, std::vector<uint8_t>& out);

struct JournalContents {
  PointList points;
  uint64_t id = 0;  // Track::recording; 0: written before journals had one
  // End of the last good record, or of the header; 0: not a journal. A note counts with its point.
  uint64_t goodEnd = 0;
  // Set if there is damage other than a truncated last record, which is normal after a crash.
  bool damaged = false;
};

// Reads every readable record, in blocks. After a damaged one, it searches for the next good point,
// but not further than 64 MB: what follows such a hole was never written by this program.
JournalContents readJournal(const ByteSource& source);
JournalContents readJournal(std::span<const uint8_t> bytes);

}  // namespace vgps
