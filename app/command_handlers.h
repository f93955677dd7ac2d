#pragma once

#include <cstdint>

#include "app/app_state.h"

// The handlers that the command table points at, by family; and the predicates of its menu items.
namespace vgps {

// commands_gps.cpp: the receiver, its log, the simulation
void connectFromSettings(AppState& app, uint32_t number);
void connectSimulation(AppState& app, uint32_t number);
void disconnect(AppState& app, uint32_t number);
void gpsTimeToSystem(AppState& app, uint32_t number);
void switchLog(AppState& app, uint32_t number);
void chooseSimulationMode(AppState& app, uint32_t number);
void loadSimulation(AppState& app, uint32_t number);
void stepSimulation(AppState& app, uint32_t number);
void clearRawLog(AppState& app, uint32_t number);
bool isDisconnected(const AppState& app, uint32_t number);
bool isConnected(const AppState& app, uint32_t number);
bool isSimulating(const AppState& app, uint32_t number);
bool hasFix(const AppState& app, uint32_t number);
bool isLogState(const AppState& app, uint32_t number);
bool isSimulationMode(const AppState& app, uint32_t number);

// commands_view.cpp: screens, colours, projections
void showScreen(AppState& app, uint32_t number);
void ignoreView(AppState& app, uint32_t number);
void show3dMap(AppState& app, uint32_t number);
void chooseProjection(AppState& app, uint32_t number);
void showNextScreen(AppState& app, uint32_t number);
void goBack(AppState& app, uint32_t number);
void switchDayAndNight(AppState& app, uint32_t number);
void chooseColours(AppState& app, uint32_t number);
bool isScreen(const AppState& app, uint32_t number);
bool isProjection(const AppState& app, uint32_t number);
bool isColourScheme(const AppState& app, uint32_t number);

// commands_program.cpp: the program and its window, dialogs
void showAbout(AppState& app, uint32_t number);
void closeProgram(AppState& app, uint32_t number);
void resizeScreen(AppState& app, uint32_t number);
void confirmPopup(AppState& app, uint32_t number);
void openOptionDialog(AppState& app, uint32_t number);

// commands_recording.cpp: the track that is being recorded
void startRecording(AppState& app, uint32_t number);
void pauseOrResumeRecording(AppState& app, uint32_t number);
void endRecording(AppState& app, uint32_t number);
void markPoint(AppState& app, uint32_t number);
void recordPointNow(AppState& app, uint32_t number);
void choosePreset(AppState& app, uint32_t number);
void wanderAround(AppState& app, uint32_t number);
bool isIdle(const AppState& app, uint32_t number);
bool isNotIdle(const AppState& app, uint32_t number);
bool isNotPlaying(const AppState& app, uint32_t number);
bool isPaused(const AppState& app, uint32_t number);
bool takesMarks(const AppState& app, uint32_t number);
bool isPreset(const AppState& app, uint32_t number);

// commands_track.cpp: the current track while nothing is being recorded
void thinTrack(AppState& app, uint32_t number);
void reverseTrack(AppState& app, uint32_t number);
void joinTrack(AppState& app, uint32_t number);
void saveTrack(AppState& app, uint32_t number);
void openTrack(AppState& app, uint32_t number);
void discardTrack(AppState& app, uint32_t number);
void trackChanged(AppState& app, uint32_t number);
bool hasFinishedTrack(const AppState& app, uint32_t number);

}  // namespace vgps
