#pragma once

#include <cstdint>

#include "app/desktop/command.h"
#include "app/desktop/desktop.h"

// The handlers in the command table, by family, and the predicates of its menu items.
namespace vgps {

// commands_gps.cpp: the receiver, its log, the simulation
void connectFromSettings(Desktop& app, Command command);
void connectSimulation(Desktop& app, Command command);
void disconnect(Desktop& app, Command command);
void gpsTimeToSystem(Desktop& app, Command command);
void switchLog(Desktop& app, Command command);
void chooseSimulationMode(Desktop& app, Command command);
void loadSimulation(Desktop& app, Command command);
void stepSimulation(Desktop& app, Command command);
void clearRawLog(Desktop& app, Command command);
void pauseRawLog(Desktop& app, Command command);
void copyRawLog(Desktop& app, Command command);
void resetTrip(Desktop& app, Command command);
bool isDisconnected(const AppState& app, Command command);
bool isConnected(const AppState& app, Command command);
bool isSimulating(const AppState& app, Command command);
bool hasFix(const AppState& app, Command command);
bool isLogState(const AppState& app, Command command);
bool waitsForStep(const AppState& app, Command command);
bool hasRawLog(const AppState& app, Command command);
bool showsRawLog(const AppState& app, Command command);
bool isRawLogPaused(const AppState& app, Command command);
bool isSimulationMode(const AppState& app, Command command);

// commands_view.cpp: screens, colors, projections
void showScreen(Desktop& app, Command command);
void ignoreView(Desktop& app, Command command);
void show3dMap(Desktop& app, Command command);
void chooseProjection(Desktop& app, Command command);
void showNextScreen(Desktop& app, Command command);
void goBack(Desktop& app, Command command);
void switchDayAndNight(Desktop& app, Command command);
void chooseColors(Desktop& app, Command command);
bool isScreen(const AppState& app, Command command);
bool isProjection(const AppState& app, Command command);
bool isColorScheme(const AppState& app, Command command);
bool isViewDrawn(Command command);
bool isMapDrawn(Command command);

// commands_program.cpp: the program and its window, dialogs
void showAbout(Desktop& app, Command command);
void closeProgram(Desktop& app, Command command);
void resizeScreen(Desktop& app, Command command);
void confirmPopup(Desktop& app, Command command);
void openOptionDialog(Desktop& app, Command command);
void tellAboutUpdates(Desktop& app, Command command);
bool hasDialogInUse(Command command);

// commands_recording.cpp: the current recording
void startRecording(Desktop& app, Command command);
void pauseOrResumeRecording(Desktop& app, Command command);
void endRecording(Desktop& app, Command command);
void markPoint(Desktop& app, Command command);
void recordPointNow(Desktop& app, Command command);
void choosePreset(Desktop& app, Command command);
void wanderAround(Desktop& app, Command command);
bool isIdle(const AppState& app, Command command);
bool isNotIdle(const AppState& app, Command command);
bool isNotPlaying(const AppState& app, Command command);
bool canRecordPoint(const AppState& app, Command command);
bool isPaused(const AppState& app, Command command);
bool takesMarks(const AppState& app, Command command);
bool isPreset(const AppState& app, Command command);

// commands_track.cpp: the current track while not recording
void thinTrack(Desktop& app, Command command);
void reverseTrack(Desktop& app, Command command);
void joinTrack(Desktop& app, Command command);
void saveTrack(Desktop& app, Command command);
void openTrack(Desktop& app, Command command);
void discardTrack(Desktop& app, Command command);
void trackChanged(Desktop& app, Command command);
void renameTrack(Desktop& app, Command command);
void restoreDiscarded(Desktop& app, Command command);
bool hasSavedTrack(const AppState& app, Command command);
bool hasFinishedTrack(const AppState& app, Command command);

// commands_exchange.cpp: tracks and waypoints for other programs and from them
void exportFile(Desktop& app, Command command);
void importFile(Desktop& app, Command command);
void exportTrackFiles(Desktop& app, Command command);

}  // namespace vgps
