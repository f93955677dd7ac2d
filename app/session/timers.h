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
  kTapTimer = 7,  // of a front end with a window, which sets it and looks after it
};

inline constexpr uint32_t kTurnRecordingMs = 7000;
inline constexpr uint32_t kTurnPlayingMs = 3000;

struct TimerRow {
  uint32_t number;
  // The period in milliseconds with which the start of the program arms it; 0: not at the start.
  uint32_t (*startPeriod)(const AppState& app);
  void (*duty)(AppState& app);
};
std::span<const TimerRow> timerRows();

// In the order of the start: 1, 2, 3, 6, 5. Intervals that change later count from the next start.
void armStartTimers(AppState& app);

// What `Window::setTimer` brings; other numbers do nothing.
void onTimer(AppState& app, uint32_t number);

// The fine mode of the statistics: counts each second.
void setFineStatistics(AppState& app, bool fine);

}  // namespace vgps
