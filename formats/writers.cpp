#include "formats/writers.h"

#include "formats/gpx_writer.h"

namespace vgps {

std::unique_ptr<ExchangeWriter> makeWriter(ExchangeFormat format, const WriterOptions& options,
                                           TextSink sink, TextPatch patch) {
  switch (format) {
    case ExchangeFormat::gpx:
      return options.gpx10 ? makeGpx10Writer(std::move(sink)) : makeGpx11Writer(std::move(sink));
    case ExchangeFormat::kml: return makeKmlWriter(std::move(sink));
    case ExchangeFormat::loc: return makeLocWriter(std::move(sink));
    case ExchangeFormat::geojson: return makeGeoJsonWriter(std::move(sink), std::move(patch));
    case ExchangeFormat::csv: return makeCsvWriter(std::move(sink));
    default: return nullptr;
  }
}

}  // namespace vgps
