#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "track/track.h"

// Attributes, elements, and comments that other programs added to a track element. When an edited
// track is rewritten, these bytes are written with it.
namespace vgps {

struct ForeignPart {
  std::string attributes;  // " hr=\"130\""
  std::string inside;      // elements, comments, and text
};

struct ForeignParts {
  ForeignPart track;
  std::vector<ForeignPart> points;
};

// Collects the foreign parts of an undamaged track element, which contains the points of `track`,
// and appends them to `parts`. Stores the number of each point's part (from 1) in the point's
// `fixStatus`, which a file does not use, so that it stays with the point through every edit.
void takeForeignParts(std::string_view text, Track& track, ForeignParts& parts);

// Adds the foreign parts back to `text`, the freshly written element of `track`: those of each
// point and, if `ofTrack` is set, those of the track itself.
std::string withForeignParts(std::string_view text, const Track& track, const ForeignParts& parts,
                             bool ofTrack = true);

}  // namespace vgps
