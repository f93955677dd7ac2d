#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "formats/exchange.h"
#include "formats/xml_text.h"

// One writer for each format: from what a reader hands over to bytes, point by point.
namespace vgps {

// What a file of that format could not hold.
struct Losses {
  uint64_t waypoints = 0;
  uint64_t paths = 0;
  uint64_t points = 0;
  uint64_t pathNames = 0;
  uint64_t pointNames = 0;
  uint64_t altitudes = 0;
  uint64_t times = 0;
  uint64_t speeds = 0;
  uint64_t courses = 0;
  uint64_t segments = 0;    // that were joined to the one in front
  uint64_t routes = 0;      // that became tracks
  uint64_t noPosition = 0;  // points at 0,0
};

struct WriterOptions {
  bool gpx10 = false;
};

class ExchangeWriter : public ExchangeSink {
 public:
  // What follows would have to stand in front of what was written: the order of a GPX 1.1 file is
  // waypoints, routes, tracks. Then the file is to be written in as many passes.
  bool outOfOrder() const { return outOfOrder_; }
  // Writes the end; false when not everything was taken.
  virtual bool finish() = 0;
  const Losses& losses() const { return losses_; }

 protected:
  Losses losses_;
  bool outOfOrder_ = false;
};

// Goes back over bytes that were written: `offset` from the start.
using TextPatch = std::function<bool(uint64_t offset, std::string_view)>;

// Null for a format that is not written point by point. `patch` is called of GeoJSON only.
std::unique_ptr<ExchangeWriter> makeWriter(ExchangeFormat format, const WriterOptions& options,
                                           TextSink sink, TextPatch patch);

std::unique_ptr<ExchangeWriter> makeGeoJsonWriter(TextSink sink, TextPatch patch);
std::unique_ptr<ExchangeWriter> makeCsvWriter(TextSink sink);
std::unique_ptr<ExchangeWriter> makeKmlWriter(TextSink sink);
std::unique_ptr<ExchangeWriter> makeLocWriter(TextSink sink);

}  // namespace vgps
