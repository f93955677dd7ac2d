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

// The receiver's own figures where it sends them. Otherwise DOP times the error of one range, as in
// E. D. Kaplan and C. J. Hegarty (editors), "Understanding GPS" (2006), section 7.3. For a fix
// without corrections the range error is 4 m: the errors of 8 m horizontal and 13 m vertical (95 %,
// two deviations) of the "GPS Standard Positioning Service Performance Standard" (2020) at their
// usual DOPs of 1.0 and 1.6. Corrected fixes (quality 2) count with 1.5 m, a cautious figure of our
// own. A dilution says nothing about RTK, dead reckoning and simulated fixes: none without GST.
// `quality` is GGA's; a dilution of 0 is unknown.
std::optional<Accuracy> estimateAccuracy(int32_t quality, double hdop, double vdop,
                                         const std::optional<GstReport>& gst);

}  // namespace vgps
