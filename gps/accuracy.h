#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vgps {

// What a receiver says about its own errors: standard deviations in meters.
struct GstReport {
  double latitude = 0;
  double longitude = 0;
  double altitude = 0;
};

// Of a GST line of any talker; none for other lines and for one without these values.
std::optional<GstReport> gstOf(std::string_view line);

// How far off a position probably is, in meters: one standard deviation, an estimate in any case.
struct Accuracy {
  double horizontal = 0;
  double vertical = 0;      // 0: unknown
  bool byReceiver = false;  // from its GST; otherwise from the dilution of precision
};

// The receiver's own figures where it sends them. Otherwise DOP times the error of one range, the
// usual product: a DOP is by definition the ratio of the two. The range errors are assumptions of
// ours, not measured: 4 m for a fix without corrections, which makes 8 m (95 %, two deviations) at
// an HDOP of 1, and 1.5 m for corrected ones (quality 2). A dilution says nothing about RTK, dead
// reckoning and simulated fixes: none without GST.
// `quality` is GGA's; a dilution of 0 is unknown.
std::optional<Accuracy> estimateAccuracy(int32_t quality, double hdop, double vdop,
                                         const std::optional<GstReport>& gst);

}  // namespace vgps
