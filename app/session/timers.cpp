#include "app/session/timers.h"

#include <array>
#include <utility>

#include "app/session/app_state.h"
#include "app/session/connection.h"
#include "base/date_time.h"
#include "base/texts.h"
#include "formats/exports.h"

namespace vgps {
namespace {

constexpr int32_t kTurnRepeats = 3;

uint32_t everyMinute(const AppState&) { return kMinuteMs; }
uint32_t never(const AppState&) { return 0; }
uint32_t statisticsPeriod(const AppState& app) {
  return statisticsStepSeconds(app.statistics) * kSecondMs;
}
uint32_t periodOf(int32_t seconds) {
  return seconds > 0 ? static_cast<uint32_t>(seconds) * kSecondMs : 0;
}
uint32_t reportPeriod(const AppState& app) { return periodOf(app.settings.trackingSeconds); }
uint32_t pursuePeriod(const AppState& app) { return periodOf(app.settings.pursueSeconds); }
uint32_t smsPeriod(const AppState& app) { return periodOf(app.settings.smsTrackingSeconds); }

void backUp(AppState& app) {
  const ExportPlace place{.clock = app.platform.clock, .open = app.platform.disk.open};
  if (BackupTrackGpx(app.recorder.track, app.paths.backup, place) == ExportResult::done) return;
  showNotice(app, textWith(Text::backupNotWritten, app.paths.backup));
}

void onBackupTimer(AppState& app) {
  const int32_t state = app.recorder.track.state;
  if (app.settings.backupMinutes == 0 || (state != kRecording && state != kPaused)) return;
  if (--app.backupCountdown > 0) return;
  app.backupCountdown = app.settings.backupMinutes;
  backUp(app);
}

void onStatisticsTimer(AppState& app) {
  countStatistics(app.statistics, {.connected = app.fix.running,
                                   .trackState = app.recorder.track.state,
                                   .speedKmh = app.shown.fix.speedKmh,
                                   .speedKnown = hasCurrentFix(app)});
  ++app.shown.fix.ticksWithoutData;  // for display only
  if (app.insideForbiddenZone) app.platform.sounds.play("FORBIDDEN");
  measureLog(app);
  checkConnection(app);
  if (app.recorderHooks.takeJournalFailure()) showNotice(app, textOf(Text::journalFailing));
  if (app.recorderHooks.takeJournalWorks()) showNotice(app, textOf(Text::journalWorks));
  const size_t jumps = app.recorder.recording().jumps();
  if (std::exchange(app.jumpsTold, jumps) < jumps) {
    showNotice(app, textWith(Text::jumpsLeftOut, std::to_string(jumps)));
  }
  if (app.currentScreen == Screen::statistics) repaintThrottled(app);
}

void onReportTimer(AppState& app) {
  if (app.settings.trackingOn && app.extensions.reportPosition) app.extensions.reportPosition();
}

bool turnIsNear(const AppState& app) {
  const FixRecord& fix = app.shown.fix;
  return app.settings.warnTurns && fix.speedKmh > 0 && fix.fixStatus == 1 &&
         app.recorder.track.state == kPlaying && app.turnWarning.raised && !app.turnWarning.done;
}

void onTurnTimer(AppState& app) {
  TurnWarning& warning = app.turnWarning;
  if (!turnIsNear(app)) {
    warning.repeatCount = 0;
    return;
  }
  app.platform.sounds.play("TURN");
  if (++warning.repeatCount >= kTurnRepeats) warning.done = true;
}

void onPursueTimer(AppState& app) {
  if (app.settings.pursueOn && app.extensions.updatePursue) app.extensions.updatePursue();
}

void onSmsTimer(AppState&) {}  // handled elsewhere

// In the order in which they are started.
constexpr auto kRows = std::to_array<TimerRow>({
    {kBackupTimer, everyMinute, onBackupTimer},
    {kStatisticsTimer, statisticsPeriod, onStatisticsTimer},
    {kReportTimer, reportPeriod, onReportTimer},
    {kSmsTimer, smsPeriod, onSmsTimer},
    {kPursueTimer, pursuePeriod, onPursueTimer},
    {kTurnTimer, never, onTurnTimer},
});

}  // namespace

std::span<const TimerRow> timerRows() { return kRows; }

void armStartTimers(AppState& app) {
  for (const TimerRow& row : kRows) {
    const uint32_t period = row.startPeriod(app);
    if (period > 0) app.platform.window.setTimer(row.number, period);
  }
}

void onTimer(AppState& app, uint32_t number) {
  for (const TimerRow& row : kRows) {
    if (row.number == number) row.duty(app);
  }
}

void setFineStatistics(AppState& app, bool fine) {
  if (fine == app.statistics.fine) return;
  app.statistics.fine = fine;
  app.platform.window.setTimer(kStatisticsTimer, statisticsPeriod(app));
}

}  // namespace vgps
