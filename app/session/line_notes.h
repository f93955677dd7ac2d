#pragma once

#include <string>

#include "gps/sentence_stats.h"

namespace vgps {

// "GP"
std::string nameOfTalker(uint32_t talker);

// "GNRMC 6 (GP is used), IIRMC 3 (unknown talker)": which sentences were not parsed and why; empty
// when all were. `lastingOnly` leaves out those that were waiting for GP.
std::string leftOutText(const SentenceStats& stats, bool lastingOnly = false);

// What the user has been told about the lines of the source.
struct LinesTold {
  size_t leftOutKinds = 0;
  bool strayStarts = false;
};

// A notice about the lines of the source, once per source: sentences that were left out, or that
// were repaired before parsing. Empty if there is nothing new.
std::string newsOfLines(const SentenceStats& stats, LinesTold& told);

}  // namespace vgps
