#include "app/recording_hooks.h"

#include <utility>

#include "app/app_state.h"
#include "app/commands.h"
#include "app/library.h"
#include "app/timers.h"
#include "base/texts.h"

namespace vgps {
namespace {

constexpr uint32_t kTrackChanged = 1286;

constexpr uint32_t kAskToSave = 711;
constexpr uint32_t kNoJournal = 715;

}  // namespace

AppRecordingHooks::AppRecordingHooks(AppState& app)
    : app_(app), journal_(std::make_unique<Journal>(journalSettings())) {}

JournalSettings AppRecordingHooks::journalSettings() {
  return {.open = app_.platform.disk.open, .failed = [this] { noteJournalFailure(); }};
}

void AppRecordingHooks::startTimer() {
  app_.platform.window.setTimer(kTurnTimer, kTurnRecordingMs);
}

void AppRecordingHooks::stopTimer() { app_.platform.window.killTimer(kTurnTimer); }

void AppRecordingHooks::playSound(const char* name) { app_.platform.sounds.play(name); }

void AppRecordingHooks::resetDrawnPath() { app_.drawnPath.clear(); }

void AppRecordingHooks::appendToDrawnPath(double longitude, double latitude) {
  app_.drawnPath.emplace_back(longitude, latitude);
}

bool AppRecordingHooks::askToSave() { return askQuestion(app_, kAskToSave); }

bool AppRecordingHooks::save(Track& track) { return addToLibrary(app_, track); }

void AppRecordingHooks::trackChanged(Track&) { runCommand(app_, kTrackChanged); }

void AppRecordingHooks::beginJournal() {
  journalRefused_ = false;
  if (journal_->isOpen() || app_.paths.journal.empty()) return;
  journal_ = std::make_unique<Journal>(journalSettings());
  if (createFreeJournal(*journal_, app_.paths.journal) != JournalResult::open) {
    journalRefused_ = true;
    showNotice(app_, textWith(kNoJournal, app_.paths.journal));
    return;
  }
  for (const TrackPoint& point : app_.track.points) journal_->append(point);
}

// A pause that is ended while nothing was being recorded begins a recording too.
void AppRecordingHooks::pointRecorded(const TrackPoint& point) {
  if (journal_->isOpen()) {
    journal_->append(point);
  } else if (!journalRefused_) {
    beginJournal();
  }
}

void AppRecordingHooks::flushPoints() {
  if (journal_->isOpen()) journal_->flush();
}

void AppRecordingHooks::pointsSettled() {
  if (journal_->isOpen()) journal_->discard();
}

void AppRecordingHooks::closeJournal() {
  if (journal_->isOpen()) journal_->close();
}

void AppRecordingHooks::continueJournal(std::unique_ptr<Journal> journal) {
  journal_ = std::move(journal);
  journalRefused_ = false;
}

}  // namespace vgps
