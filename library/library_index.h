#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/track_store.h"
#include "platform/files.h"

// The summaries of all tracks, stored next to the library so that opening it does not read every
// point again. The index has no data of its own: a damaged or outdated one is rebuilt, and writers
// always check the library itself.
//
// All numbers are little-endian, decimal numbers 64-bit IEEE 754, texts their length in 32 bits and
// their bytes:
//
//   0  8  "VGPSINDX"
//   8  4  version, 4
//  12  8  size of the document, 0 of a folder
//  20  8  its time
//  28  8  where the next track goes
//  36  4  number of entries
//  40     entries: file name, size and time (of a folder's), blanks, begin, end, checksum (of a
//         document's), flags, points, kilometers, seconds, date (8 x 16 bits), start, recording,
//         west, south, east, north, name
//  end 4  CRC-32 of everything before
namespace vgps {

struct IndexEntry {
  std::string file{};
  FileStamp stamp{};
  uint64_t blanksBegin = 0;
  uint64_t begin = 0;
  uint64_t end = 0;
  uint32_t checksum = 0;
  bool other = false;  // not a track file
  TrackSummary summary{};
};

struct LibraryIndex {
  FileStamp document;
  uint64_t endPlace = 0;
  std::vector<IndexEntry> entries{};
};

std::string indexText(const LibraryIndex& index);
// Writes the index, or drops it if it cannot be written. A file that is not an index is left
// unchanged.
void writeIndex(const std::string& path, const LibraryIndex& index, const LibraryDisk& disk);
void dropIndex(const std::string& path);
// No index is larger: a million tracks.
inline constexpr uint64_t kLargestIndex = uint64_t{256} << 20;
// Returns false if the bytes are not a complete index.
bool readIndex(std::string_view bytes, LibraryIndex& index);

}  // namespace vgps
