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
//   <t n="Ride" start="2010-07-05T07:03:04Z"              n only in the library
//      recording="0123456789abcdef">
//     <p x="11.516667" y="48.117300" z="545.000000"       degrees, meters
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
// that stand there although the receiver did not give them. `start` and `recording` are left
// out where they are not known. Points without a position are left out.
namespace vgps {

// Larger numbers are written as 0 and read as damage: no real value of a track comes close.
inline constexpr double kMaxNumber = 1e9;

// The track's name in a library: its own, or "Track %u" if it has none.
std::string libraryName(const Track& track, uint32_t number);

// The element as text, indented by at least `depth` tabs; without a name attribute if `name` is
// empty.
std::string trackText(const Track& track, const RecordingOptions& options, std::string_view name,
                      size_t depth);

// The same as an element of the document, without a parent yet.
XmlElement trackElement(XmlDocument& document, const Track& track, const RecordingOptions& options,
                        std::string_view name);

// Whether a point's or a track's attribute is one of this program's. Those beside the oldest ones
// are, as long as they have the form in which this program writes them.
bool isPointAttribute(std::string_view name, std::string_view value);
bool isTrackAttribute(std::string_view name, std::string_view value);

// A track that was written keeps no attachments but those of points that were left out: they are
// in the file now.
void dropWrittenAttachments(Track& track);

// Replaces the track's name, points, and attachments by those of the element. Its speeds are
// interpreted in `speedUnit`, the display's. Returns false if any part was invalid; then the track
// has the readable points. If `foreign` is not null, attributes and elements of other programs are
// accepted, and set it to true.
bool readTrack(XmlElement element, int32_t speedUnit, Track& track, bool* foreign = nullptr);

// Sums up the points at the start of `text` without building a tree, as long as they are exactly as
// this program writes them, complete and without attachments. Returns the number of bytes up to the
// end of the last of them; the rest is for `readTrack`.
size_t readPlainPoints(std::string_view text, TrackSums& sums);

}  // namespace vgps
