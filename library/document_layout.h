#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/track_store.h"
#include "track/options.h"
#include "xml/tags.h"

// The positions of all elements in a library document, so that unchanged parts can be copied byte
// for byte.
namespace vgps {

struct TrackRange {
  uint64_t blanksBegin = 0;      // of the blanks in front of its tag
  uint64_t begin = 0;            // of its tag
  uint64_t end = 0;              // behind its end tag
  uint32_t checksum = 0;         // CRC-32 of the bytes from `begin` to `end`
  bool missingStartTag = false;  // its first points lie there without the tag around them
};

// Where a track is added at the end: what lies between the places is replaced by the texts with
// the track between them.
struct InsertionPoint {
  uint64_t begin = 0;
  uint64_t end = 0;
  std::string before;
  std::string after;
};

struct DocumentLayout {
  LibraryState state = LibraryState::missing;
  std::vector<TrackRange> places;
  std::vector<TrackSummary> tracks;  // one for each place
  InsertionPoint end;
};

// Reads the whole document. `state` is never `unreadable`.
DocumentLayout readLayout(TagReader::Source source);

// Reads the readable points of a track element, or of points without one. Returns false if it is
// damaged. Sets `foreign` if it contains attributes or elements of other programs.
bool parseTrack(std::string_view text, int32_t speedUnit, Track& track, bool* foreign = nullptr);

// The recording options that a track element was written with, so that writing it again loses
// nothing.
RecordingOptions optionsUsedIn(std::string_view text);

// The summary of a track element for lists; `number` names a track without a name.
TrackSummary summaryOfText(std::string_view text, size_t number);

}  // namespace vgps
