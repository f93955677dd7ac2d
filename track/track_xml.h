#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "track/options.h"
#include "track/track.h"
#include "track/track_statistics.h"
#include "xml/document.h"

// A track as an element:
//
//   <t n="Ride" start="2010-07-05T07:03:04Z">             n only in the library
//     <p x="11.516667" y="48.117300" z="545.000000"       degrees, metres
//        s="2" c="0" spd="41.48" time="05-07-2010 09:03:04" br="84.4" m="1" n="Gate"
//        utc="2010-07-05T07:03:04Z" unknown="z">
//       <ass>
//         <n n="Item 1" f="photo.jpg"/>                   attachments of the point
//       </ass>
//     </p>
//   </t>
//
// s and m stand where they are not 0, n where the point has a name, c, spd, time (local) and br
// where the options say so, time where the point has one. `utc` is the receiver's beside the
// computer's `time`, with milliseconds where it has some; `unknown` names those of z, spd and br
// that stand there although the receiver did not give them. `start` is left out where it is not
// known. Points without a position are left out.
namespace vgps {

// Greater numbers are written as 0 and taken for damage: no value of a track is near it.
inline constexpr double kGreatestNumber = 1e9;

// What a library calls the track: its name, or "Track %u" where it has none.
std::string libraryName(const Track& track, uint32_t number);

// The element, each line indented by `depth` tabs and more; without a name when that is empty.
std::string trackText(const Track& track, const RecordingOptions& options, std::string_view name,
                      size_t depth);

// The same as an element of the document, not yet placed.
XmlElement trackElement(XmlDocument& document, const Track& track, const RecordingOptions& options,
                        std::string_view name);

// Whether a point's or a track's attribute is one of this program's. Those beside the oldest ones
// are, as long as they have the form in which this program writes them.
bool isPointAttribute(std::string_view name, std::string_view value);
bool isTrackAttribute(std::string_view name, std::string_view value);

// A track that was written keeps no attachments but those of points that were left out: they are
// in the file now.
void dropWrittenAttachments(Track& track);

// Replaces the track's name, points and attachments by those of the element. `speedUnit` is that
// of the display: the element's speeds are taken to be in it. False when something in it was no
// track's; then the good points are there. With `foreign`, attributes and elements of other
// programs are no fault: it becomes true for them.
bool readTrack(XmlElement element, int32_t speedUnit, Track& track, bool* foreign = nullptr);

// Sums up the points at the start of `text` without making a tree of them, as far as they stand
// there as this program writes them, whole and without attachments. Gives the number of bytes up to
// the end of the last of them: what follows is for `readTrack` to judge.
size_t readPlainPoints(std::string_view text, TrackSums& sums);

}  // namespace vgps
