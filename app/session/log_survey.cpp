#include "app/session/log_survey.h"

#include "app/session/log_clock.h"
#include "gps/stray_start.h"

namespace vgps {

LogSurvey surveyLog(const std::function<bool(LogPiece&)>& next, bool untilDate) {
  LogSurvey survey;
  LogClock clock(0);
  const uint32_t start = clock.tick();
  LogPiece piece;
  bool beginning = true;
  while ((beginning || (untilDate && !clock.firstDay())) && next(piece)) {
    if (piece.binary) continue;
    const std::string_view line = withoutStrayStart(piece.text);
    clock.advanceTo(line);
    beginning = beginning && clock.tick() - start < kTalkerSilenceMs;
    if (beginning) survey.talkers.listen(Sentence(line), clock.tick());
  }
  survey.firstDay = clock.firstDay();
  return survey;
}

}  // namespace vgps
