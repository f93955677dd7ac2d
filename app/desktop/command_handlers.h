#pragma once

#include <cstdint>

#include "app/desktop/command.h"
#include "app/session/app_state.h"

// The handlers that the command table points at, by family; and the predicates of its menu items.
namespace vgps {

// commands_gps.cpp: the receiver, its log, the simulation
void connectFromSettings(AppState& app, Command command);
void connectSimulation(AppState& app, Command command);
void disconnect(AppState& app, Command command);
void gpsTimeToSystem(AppState& app, Command command);
void switchLog(AppState& app, Command command);
void chooseSimulationMode(AppState& app, Command command);
void loadSimulation(AppState& app, Command command);
void stepSimulation(AppState& app, Command command);
void clearRawLog(AppState& app, Command command);
bool isDisconnected(const AppState& app, Command command);
bool isConnected(const AppState& app, Command command);
bool isSimulating(const AppState& app, Command command);
bool hasFix(const AppState& app, Command command);
bool isLogState(const AppState& app, Command command);
bool isSimulationMode(const AppState& app, Command command);

// commands_view.cpp: screens, colours, projections
void showScreen(AppState& app, Command command);
void ignoreView(AppState& app, Command command);
void show3dMap(AppState& app, Command command);
void chooseProjection(AppState& app, Command command);
void showNextScreen(AppState& app, Command command);
void goBack(AppState& app, Command command);
void switchDayAndNight(AppState& app, Command command);
void chooseColours(AppState& app, Command command);
bool isScreen(const AppState& app, Command command);
bool isProjection(const AppState& app, Command command);
bool isColourScheme(const AppState& app, Command command);

// commands_program.cpp: the program and its window, dialogs
void showAbout(AppState& app, Command command);
void closeProgram(AppState& app, Command command);
void resizeScreen(AppState& app, Command command);
void confirmPopup(AppState& app, Command command);
void openOptionDialog(AppState& app, Command command);

// commands_recording.cpp: the track that is being recorded
void startRecording(AppState& app, Command command);
void pauseOrResumeRecording(AppState& app, Command command);
void endRecording(AppState& app, Command command);
void markPoint(AppState& app, Command command);
void recordPointNow(AppState& app, Command command);
void choosePreset(AppState& app, Command command);
void wanderAround(AppState& app, Command command);
bool isIdle(const AppState& app, Command command);
bool isNotIdle(const AppState& app, Command command);
bool isNotPlaying(const AppState& app, Command command);
bool isPaused(const AppState& app, Command command);
bool takesMarks(const AppState& app, Command command);
bool isPreset(const AppState& app, Command command);

// commands_track.cpp: the current track while nothing is being recorded
void thinTrack(AppState& app, Command command);
void reverseTrack(AppState& app, Command command);
void joinTrack(AppState& app, Command command);
void saveTrack(AppState& app, Command command);
void openTrack(AppState& app, Command command);
void discardTrack(AppState& app, Command command);
void trackChanged(AppState& app, Command command);
bool hasFinishedTrack(const AppState& app, Command command);

}  // namespace vgps
