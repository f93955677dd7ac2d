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
  std::optional<int64_t> firstDay;  // of the first line, in days since 1970
  TalkerTimeline talkers;
};

// `next` gives the pieces of the log, false at its end.
LogSurvey surveyLog(const std::function<bool(LogPiece&)>& next);

}  // namespace vgps
