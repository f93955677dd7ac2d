#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "formats/exchange.h"

namespace vgps {

// Called with the bytes that were read so far, of how many; false: stop.
using ReadingProgress = std::function<bool(uint64_t done, uint64_t total)>;

// By what a file begins with: an archive, JSON, a line of column names, or an XML document, which
// is `unknown` until its root is read.
ExchangeFormat formatOfStart(std::string_view start);
// By the extension of its name: ".gpx" and so on; `unknown` for any other.
ExchangeFormat formatOfName(std::string_view path);

// Reads a file of any format that is known here; of an archive the first ".kml" in it. A track file
// is handed on too. `speedUnit` is that of the display, in which track files hold their speeds.
ReadingNotes readExchangeFile(const std::string& path, ExchangeSink& sink, int32_t speedUnit = 0,
                              int32_t utcOffsetMinutes = 0, const ReadingProgress& progress = {});

// The points of a track in order, as one path with one segment.
bool handTrack(const struct Track& track, int32_t utcOffsetMinutes, ExchangeSink& sink);

}  // namespace vgps
