#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "app/session/log_reader.h"
#include "gps/talkers.h"

namespace vgps {

// What reading ahead in a log tells about its beginning; with a live receiver, this is only known
// later.
struct LogSurvey {
  std::optional<int64_t> firstDay;  // date of the first line, in days since 1970
  TalkerTranslation talkers;        // the talkers of the first seconds
};

// Reads to the end of the first seconds and, with `untilDate`, to the first date. `next` returns
// the log piece by piece, and false at its end.
LogSurvey surveyLog(const std::function<bool(LogPiece&)>& next, bool untilDate);

}  // namespace vgps
