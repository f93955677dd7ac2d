#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/track_store.h"
#include "platform/files.h"

// What a list of tracks shows, kept beside the library, so that opening one does not read every
// point again. It says nothing that the library itself does not say: a damaged or outdated index is
// made anew, and whoever writes looks at the bytes themselves.
//
// All numbers are little-endian, decimal numbers 64-bit IEEE 754, texts their length in 32 bits and
// their bytes:
//
//   0  8  "VGPSINDX"
//   8  4  version, 2
//  12  8  size of the document, 0 of a folder
//  20  8  its time
//  28  8  where the next track goes
//  36  4  number of entries
//  40     entries: file name, size and time (of a folder's), lead, begin, end, checksum (of a
//         document's), flags, points, kilometres, seconds, date (8 x 16 bits), west, south, east,
//         north, name
//  end 4  CRC-32 of everything before
namespace vgps {

struct IndexEntry {
  std::string file{};
  FileStamp stamp{};
  uint64_t blanksBegin = 0;
  uint64_t begin = 0;
  uint64_t end = 0;
  uint32_t checksum = 0;
  bool other = false;  // a file that is no track
  TrackSummary summary{};
};

struct LibraryIndex {
  FileStamp document;
  uint64_t endPlace = 0;
  std::vector<IndexEntry> entries{};
};

std::string indexText(const LibraryIndex& index);
// Puts the index there; one that cannot be written is dropped. A file that is no index stays.
void writeIndex(const std::string& path, const LibraryIndex& index, const LibraryDisk& disk);
void dropIndex(const std::string& path);
// False when the bytes are no whole index.
bool readIndex(std::string_view bytes, LibraryIndex& index);

}  // namespace vgps
