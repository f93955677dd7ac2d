#pragma once

#include <string>

#include "gps/sentence_stats.h"

namespace vgps {

// "GNRMC 6 (GP is used), IIRMC 3 (unknown talker)": which sentences were not parsed and why; empty
// when all were. `lastingOnly` leaves out those that were waiting for GP.
std::string leftOutText(const SentenceStats& stats, bool lastingOnly = false);

}  // namespace vgps
