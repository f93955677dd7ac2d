#pragma once

#include <string>

namespace vgps {

// One epoch of a receiver; the bytes are the lines with their ends.
inline const std::string kGgaLine =
    "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47";
inline const std::string kRmcLine =
    "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A";
inline const std::string kGgaBytes = kGgaLine + "\r\n";
inline const std::string kRmcBytes = kRmcLine + "\r\n";

}  // namespace vgps
