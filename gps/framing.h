#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace vgps {

class Lines;
struct GpsState;

inline constexpr size_t kCarrySize = 5000;

// Splits received bytes into complete lines or complete binary messages. Incomplete ones are kept
// for the next call.
//
//   text    $GPGGA,...*47 CR LF $GPRMC,...           up to the last LF; the rest is carried
//   binary  A0 A2 ... B0 B3                          gps/sirf.h
class Framing {
 public:
  Framing(Lines& lines, GpsState& state) : lines_(lines), state_(state) {}

  // Returns true if the bytes ended as text.
  bool receive(std::string_view bytes);

  // The number of bytes kept, and the first of them (0: none).
  size_t carried() const { return carried_; }
  char carriedStart() const { return carried_ > 0 ? carry_[0] : '\0'; }
  void dropCarried() { carried_ = 0; }

 private:
  void carryOver(std::string_view rest);

  Lines& lines_;
  GpsState& state_;
  std::array<char, kCarrySize> carry_{};
  size_t carried_ = 0;
  std::string joined_;
};

}  // namespace vgps
