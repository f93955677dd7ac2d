#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "formats/reading.h"
#include "formats/writers.h"
#include "platform/exclusive_file.h"

// From files to a file, point by point and complete: every segment, time, speed and course that the
// target can hold.
namespace vgps {

struct ConvertSource {
  // Hands everything to the sink; may be called several times.
  std::function<ReadingNotes(ExchangeSink&)> read;
};

enum class ConvertAs { asItIs, track, route, waypoints };

struct ConvertOptions {
  ExchangeFormat to = ExchangeFormat::gpx;
  bool gpx10 = false;
  ConvertAs as = ConvertAs::asItIs;
  std::string name;  // of the paths, in place of their own; the second one is "name (2)"
};

struct ConvertResult {
  bool written = false;
  size_t failed = SIZE_MAX;         // the source that ended the conversion
  std::vector<ReadingNotes> notes;  // of each source
  Losses losses;
  uint64_t waypoints = 0;
  uint64_t paths = 0;
  uint64_t points = 0;
};

// Writes `output` beside its place and then puts it there. Formats: GPX, KML, KMZ, LOC, GeoJSON,
// CSV; track files are not written here. A source that cannot be read ends it, a damaged one does
// not.
ConvertResult convertToFile(const std::string& output, std::span<const ConvertSource> sources,
                            const ConvertOptions& options,
                            const ExclusiveOpener& open = openExclusive);
// The same to a stream, which gets bytes that are never changed again.
ConvertResult convertToStream(const TextSink& sink, std::span<const ConvertSource> sources,
                              const ConvertOptions& options);

// Whether what was read so is worth using.
constexpr bool isUsable(ReadingEnd end) {
  return end == ReadingEnd::whole || end == ReadingEnd::damaged;
}

// Changes what waypoints and paths are on their way, and counts them.
class ConvertSink : public ExchangeSink {
 public:
  ConvertSink(ExchangeSink& to, const ConvertOptions& options) : to_(to), options_(options) {}

  bool waypoint(const ExchangePoint& point) override;
  bool beginPath(PathKind kind, std::string_view name) override;
  bool beginSegment(bool own) override;
  bool point(const ExchangePoint& point) override;
  bool endPath(std::string_view name) override;
  // Closes what waypoints have opened.
  bool end();

  uint64_t waypoints = 0;
  uint64_t paths = 0;
  uint64_t points = 0;

 private:
  std::string nameFor(std::string_view name);
  PathKind kindFor(PathKind kind) const;

  ExchangeSink& to_;
  const ConvertOptions& options_;
  bool gathering_ = false;  // waypoints as points of a path
  std::string name_;
};

}  // namespace vgps
