#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include "app/desktop/desktop.h"
#include "app/desktop/start_options.h"

// The start of the program and its end, in the steps that no window is needed for. The program
// with the window calls them in this order:
//
//   another instance?        kInstanceQueryName, isOwnAnswer
//   the font of the program
//   startClocks              night colours, UTC offset
//   startSettings            vgps.xml, every key
//   the language library     setTextSource
//   the window
//   startWork                timers, start options, reminder of updates, connecting
//   the tray icon, the message loop
//   endProgram
namespace vgps {

inline constexpr const char* kInstanceQueryName = "VGPS_INSTANCE_QUERY";
inline constexpr uint32_t kInstanceAnswer = 0xFEFEFEFE;
inline constexpr uint32_t kInstanceQueryMs = 2000;

// Whether what came back for the query is the answer of a running copy; its lower 32 bits count.
constexpr bool isOwnAnswer(uint64_t answer) {
  return static_cast<uint32_t>(answer) == kInstanceAnswer;
}

void startClocks(AppState& app);

// Loads the settings document of `app.paths` and takes every value over. One that is damaged is
// told, and so is one that another program does not let go of for so long; the defaults hold then.
void startSettings(AppState& app,
                   std::chrono::milliseconds patience = std::chrono::milliseconds(1000));

void applyStartOptions(Desktop& app, const StartOptions& options);

// Counts the starts down; asks at the end and at the very first one. Nothing while the settings
// cannot be read.
void remindOfUpdates(Desktop& app);

// Connects when the settings say so. Nothing when the start options have connected already.
void autoConnect(Desktop& app);

// What the program does as soon as its window is there, in this order: the timers, the recording
// that a crash has left behind (app/desktop/keeping.h), the start options, the reminder of updates,
// connecting. False when the user closed the window at one of the questions: `isOpen` is asked
// behind them.
bool startWork(Desktop& app, const StartOptions& options, const std::function<bool()>& isOpen);

// Handles a request to close the program. Returns false, with nothing changed, if the user cancels.
bool closeRequested(Desktop& app);

// After the message loop: what was changed is written. False when that failed; it is told unless it
// was before.
bool endProgram(AppState& app);

}  // namespace vgps
