#pragma once

#include <memory>

#include "formats/writers.h"

namespace vgps {

// GPX 1.1: children in the order of its schema, values that are unknown left out, times in UTC,
// speed in meters per second and course in degrees in each point's extensions:
//
//   <trkpt lat="48.1173000" lon="11.5166670">
//     <ele>545</ele> <time>2010-07-15T10:00:00Z</time> <name>...</name>
//     <extensions> <vexa:speed>11.52</vexa:speed> <vexa:course>84.4</vexa:course> </extensions>
//   </trkpt>
std::unique_ptr<ExchangeWriter> makeGpx11Writer(TextSink sink);

// GPX 1.0 as the exports write it: one segment for each track.
std::unique_ptr<ExchangeWriter> makeGpx10Writer(TextSink sink);

}  // namespace vgps
