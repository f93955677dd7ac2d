#include "app/session/log_survey.h"

#include "app/session/log_clock.h"
#include "gps/stray_start.h"

namespace vgps {

LogSurvey surveyLog(const std::function<bool(LogPiece&)>& next) {
  LogSurvey survey;
  LogClock clock(0);
  LogPiece piece;
  while (next(piece)) {
    if (piece.binary) continue;
    const std::string_view line = withoutStrayStart(piece.text);
    clock.advanceTo(line);
    survey.talkers.listen(Sentence(line), clock.tick());
    // Of the first date: those of later runs in the same file count from their own beginning.
    if (!survey.firstDay) survey.firstDay = clock.firstDay();
  }
  return survey;
}

}  // namespace vgps
