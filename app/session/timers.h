#pragma once

#include <cstdint>
#include <span>

namespace vgps {

struct AppState;

enum TimerNumber : uint32_t {
  kBackupTimer = 1,
  kStatisticsTimer = 2,
  kReportTimer = 3,
  kTurnTimer = 4,
  kPursueTimer = 5,
  kSmsTimer = 6,
  kTapTimer = 7,  // set and handled by a front end with a window
};

inline constexpr uint32_t kTurnRecordingMs = 7000;
inline constexpr uint32_t kTurnPlayingMs = 3000;

struct TimerRow {
  uint32_t number;
  // The period in milliseconds, used when the program starts; 0: do not start it then.
  uint32_t (*startPeriod)(const AppState& app);
  void (*duty)(AppState& app);
};
std::span<const TimerRow> timerRows();

// Starts the timers in the order 1, 2, 3, 6, 5. Changed intervals take effect at the next start.
void armStartTimers(AppState& app);

// Called when a timer of `Window::setTimer` fires. Unknown numbers are ignored.
void onTimer(AppState& app, uint32_t number);

// Fine mode of the statistics: counts every second.
void setFineStatistics(AppState& app, bool fine);

}  // namespace vgps
