#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include "app/desktop/desktop.h"
#include "app/desktop/start_options.h"

// The steps of startup and shutdown that do not need a window. The desktop program runs them in
// this order:
//
//   another instance?        kInstanceQueryName, isOwnAnswer
//   the font of the program
//   startClocks              night colors, UTC offset
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

// Whether the reply to the query came from a running copy; only its lower 32 bits count.
constexpr bool isOwnAnswer(uint64_t answer) {
  return static_cast<uint32_t>(answer) == kInstanceAnswer;
}

void startClocks(AppState& app);

// Loads the settings document of `app.paths` and applies every value. Tells the user if it is
// damaged or if another program keeps it locked for longer than `patience`; then the defaults
// apply.
void startSettings(AppState& app,
                   std::chrono::milliseconds patience = std::chrono::milliseconds(1000));

void applyStartOptions(Desktop& app, const StartOptions& options);

// Counts down program starts; asks about updates when the countdown ends and at the very first
// start. Does nothing while the settings cannot be read.
void remindOfUpdates(Desktop& app);

// Connects if the settings say so, unless the start options have already connected.
void autoConnect(Desktop& app);

// What the program does once its window exists, in this order: the timers, unfinished recordings
// (app/desktop/save_messages.h), the start options, the update reminder, connecting. Returns false
// if the user closed the window during one of the questions; `isOpen` is checked after them.
bool startWork(Desktop& app, const StartOptions& options, const std::function<bool()>& isOpen);

// Handles a request to close the program. Returns false, with nothing changed, if the user cancels.
bool closeRequested(Desktop& app);

// After the message loop: saves what was changed. Returns false if that failed; the user is told
// unless that was done before.
bool endProgram(AppState& app);

}  // namespace vgps
