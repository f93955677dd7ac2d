#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vgps {

// The receiver's own error estimates: standard deviations in meters.
struct GstReport {
  double latitude = 0;
  double longitude = 0;
  double altitude = 0;
};

// Parses a GST line of any talker; none for other lines or if these values are missing.
std::optional<GstReport> gstOf(std::string_view line);

// The probable error of a position, in meters: one standard deviation. Always an estimate.
struct Accuracy {
  double horizontal = 0;
  double vertical = 0;      // 0: unknown
  bool byReceiver = false;  // from GST; otherwise from the dilution of precision
};

// Uses the receiver's own figures if it sends them; otherwise DOP times the range error, as in E.
// D. Kaplan and C. J. Hegarty (editors), "Understanding GPS" (2006), section 7.3. Without
// corrections the range error is 4 m: the errors of 8 m horizontal and 13 m vertical (95 %, two
// deviations) of the "GPS Standard Positioning Service Performance Standard" (2020), at their usual
// DOPs of 1.0 and 1.6. For corrected fixes (quality 2) it is 1.5 m, our own cautious figure.
// Dilution says nothing about RTK, dead reckoning, and simulated fixes: without GST the result is
// none. `quality` is from GGA; a dilution of 0 is unknown.
std::optional<Accuracy> estimateAccuracy(int32_t quality, double hdop, double vdop,
                                         const std::optional<GstReport>& gst);

}  // namespace vgps
