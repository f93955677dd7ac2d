#pragma once

#include <string>

#include "gps/sentence_stats.h"

namespace vgps {

// "GP"
std::string nameOfTalker(uint32_t talker);

// "GNRMC 6 (GP is used), IIRMC 3 (unknown talker)": which sentences were not parsed and why; empty
// when all were. `lastingOnly` leaves out those that were waiting for GP.
std::string leftOutText(const SentenceStats& stats, bool lastingOnly = false);

// What the user was told of the lines of the source.
struct LinesTold {
  size_t leftOutKinds = 0;
  bool strayStarts = false;
};

// What the lines of the source give to say, once for each source: sentences that are left out, or
// were read only after a repair. Empty when there is nothing new.
std::string newsOfLines(const SentenceStats& stats, LinesTold& told);

}  // namespace vgps
