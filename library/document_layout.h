#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/track_store.h"
#include "track/options.h"
#include "xml/tags.h"

// Where everything stands in a library document, so that most of it can be copied as it is.
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

uint32_t checksumOf(std::string_view bytes);

// The good points of a track element, or of points without one. False when it is damaged.
// `foreign` becomes true when it holds attributes or elements of other programs.
bool parseTrack(std::string_view text, int32_t speedUnit, Track& track, bool* foreign = nullptr);

// The options that write what stands in a track element: its points lose none of it when they are
// written again.
RecordingOptions optionsUsedIn(std::string_view text);

// What a list says of a track element; `number` names one without a name.
TrackSummary summaryOfText(std::string_view text, size_t number);

}  // namespace vgps
