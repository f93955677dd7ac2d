#include "gps/accuracy.h"

#include <cmath>

#include "base/number.h"
#include "gps/fields.h"

namespace vgps {
namespace {

constexpr double kRangeErrorAlone = 4;
constexpr double kRangeErrorCorrected = 1.5;
constexpr int32_t kDifferential = 2;
constexpr int32_t kPps = 3;

bool isError(double meters) { return std::isfinite(meters) && meters > 0; }

}  // namespace

// $GPGST,time,rms,major,minor,orientation,latitude,longitude,altitude*hh
//   0     1    2   3     4     5           6        7         8
std::optional<GstReport> gstOf(std::string_view line) {
  constexpr size_t kType = 3;  // behind "$" and the talker
  constexpr std::string_view kGst = "GST,";
  if (line.size() < kType || line[0] != '$' || !line.substr(kType).starts_with(kGst)) {
    return std::nullopt;
  }
  const Fields fields(line);
  if (!fields.has(8)) return std::nullopt;
  const GstReport report = {leadingDouble(fields[6]), leadingDouble(fields[7]),
                            leadingDouble(fields[8])};
  if (!isError(report.latitude) || !isError(report.longitude)) return std::nullopt;
  return report;
}

std::optional<Accuracy> estimateAccuracy(int32_t quality, double hdop, double vdop,
                                         const std::optional<GstReport>& gst) {
  if (quality == 0) return std::nullopt;
  if (gst) {
    return Accuracy{std::hypot(gst->latitude, gst->longitude),
                    isError(gst->altitude) ? gst->altitude : 0, true};
  }
  // A receiver without a solution writes 99.99 and the like.
  constexpr double kUseless = 50;
  if (quality > kPps || !isError(hdop) || hdop >= kUseless) return std::nullopt;
  const double range = quality == kDifferential ? kRangeErrorCorrected : kRangeErrorAlone;
  return Accuracy{hdop * range, isError(vdop) && vdop < kUseless ? vdop * range : 0, false};
}

}  // namespace vgps
