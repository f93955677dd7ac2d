#include "app/session/recording_hooks.h"

#include <utility>

#include "app/session/app_state.h"
#include "app/session/library.h"
#include "app/session/timers.h"
#include "base/texts.h"

namespace vgps {
namespace {

bool isSamePoint(const TrackPoint& a, const TrackPoint& b) {
  return a.longitude == b.longitude && a.latitude == b.latitude && a.utcTime == b.utcTime;
}

// By its ends: what a person does to a track changes one of them.
bool beginsWith(const PointList& points, const PointList& first) {
  if (first.empty()) return true;
  return first.size() <= points.size() && isSamePoint(points[0], first[0]) &&
         isSamePoint(points[first.size() - 1], first.back());
}

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

bool AppRecordingHooks::askToSave() { return askQuestion(app_, Text::askToSave); }

bool AppRecordingHooks::save(Track& track) { return addToLibrary(app_, track); }

void AppRecordingHooks::trackChanged(Track&) { repaintThrottled(app_); }

void AppRecordingHooks::beginJournal() {
  journalRefused_ = false;
  if (journal_->isOpen() || app_.paths.journal.empty()) return;
  journal_ = std::make_unique<Journal>(journalSettings());
  if (createFreeJournal(*journal_, app_.paths.journal) != JournalResult::open) {
    journalRefused_ = true;
    showNotice(app_, textWith(Text::noJournal, app_.paths.journal));
    return;
  }
  for (const TrackPoint& point : app_.track.points) journal_->append(point);
  inMemoryOnly_ = false;
}

// A pause that is ended while nothing was being recorded begins a recording too.
void AppRecordingHooks::pointRecorded(const TrackPoint& point) {
  if (journal_->isOpen()) {
    journal_->append(point);
  } else if (!journalRefused_) {
    beginJournal();
  }
  if (!journal_->isOpen()) inMemoryOnly_ = true;
}

void AppRecordingHooks::flushPoints() {
  if (journal_->isOpen()) journal_->flush();
}

void AppRecordingHooks::pointsSettled() {
  if (journal_->isOpen()) journal_->discard();
  inMemoryOnly_ = false;
}

bool AppRecordingHooks::closeJournal() { return journal_->close(); }

// A track that was changed since is another one than the journal's, which is left as it is.
size_t AppRecordingHooks::resumeJournal() {
  const PointList& points = app_.track.points;
  const std::string path = journal_->path();
  RecoveredTrack written;
  inMemoryOnly_ = journal_->recover(path, written) != JournalResult::open;
  if (inMemoryOnly_) return points.size();
  const size_t there = written.points.size();
  if (!beginsWith(points, written.points)) {
    journal_->close();
    inMemoryOnly_ = true;
    return points.size();
  }
  for (size_t i = there; i < points.size(); ++i) journal_->append(points[i]);
  return points.size() - there;
}

void AppRecordingHooks::continueJournal(std::unique_ptr<Journal> journal) {
  journal_ = std::move(journal);
  journalRefused_ = inMemoryOnly_ = false;
}

}  // namespace vgps
