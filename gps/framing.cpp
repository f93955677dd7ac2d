#include "gps/framing.h"

#include <algorithm>
#include <cstring>

#include "gps/gps_state.h"
#include "gps/lines.h"
#include "gps/sirf.h"

namespace vgps {

// If too much is carried, only its end is kept; the start, and with it the line, is lost.
void Framing::carryOver(std::string_view rest) {
  if (rest.size() > carry_.size()) rest.remove_prefix(rest.size() - carry_.size());
  std::memmove(carry_.data(), rest.data(), rest.size());
  carried_ = rest.size();
}

bool Framing::receive(std::string_view bytes) {
  std::string_view work = bytes;
  if (carried_ > 0) {
    joined_.assign(carry_.data(), carried_);
    joined_.append(bytes);
    work = joined_;
    carried_ = 0;
  }
  while (!work.empty()) {
    if (work[0] == '$') {
      state_.inputProtocol = kNmeaText;
      const size_t lineFeed = work.rfind('\n');
      const size_t whole = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
      if (whole > 0) lines_.process(work.substr(0, whole));
      carryOver(work.substr(whole));
      return true;
    }
    if (work.starts_with(kSirfStart)) {
      state_.inputProtocol = kSirfBinary;
      const size_t length = sirfFrameLength(work);
      if (length == 0 || work.size() < length) {
        carryOver(work);
        return false;
      }
      lines_.process(work.substr(0, length));
      work.remove_prefix(length);
      continue;
    }
    // Not a supported protocol, or the middle of something: shown and dropped as a whole.
    state_.stats.rejected += static_cast<uint64_t>(std::count(work.begin(), work.end(), '\n'));
    state_.hooks.unknownBytes(work);
    return false;
  }
  return false;
}

}  // namespace vgps
