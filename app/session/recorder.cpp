#include "app/session/recorder.h"

#include <algorithm>
#include <utility>

#include "base/texts.h"
#include "library/discarded_recordings.h"
#include "platform/files.h"
#include "track/track_file.h"

namespace vgps {
namespace {

bool isSamePoint(const TrackPoint& a, const TrackPoint& b) {
  return a.longitude == b.longitude && a.latitude == b.latitude && a.utcTime == b.utcTime;
}

// Compares only the first and the last point, because every edit of a track changes one of them.
bool beginsWith(const PointList& points, const PointList& first) {
  if (first.empty()) return true;
  return first.size() <= points.size() && isSamePoint(points[0], first[0]) &&
         isSamePoint(points[first.size() - 1], first.back());
}

LibraryOpening::Place placeAt(const RecorderPaths& places) {
  if (isSameFile(places.library, places.settings)) return LibraryOpening::Place::holdsSettings;
  for (const std::string& journal : journalNames(places.journal)) {
    if (isSameFile(places.library, journal)) return LibraryOpening::Place::holdsRecording;
  }
  return LibraryOpening::Place::free;
}

}  // namespace

std::string placeMessage(const LibraryOpening& opening) {
  switch (opening.place) {
    case LibraryOpening::Place::free: break;
    case LibraryOpening::Place::holdsSettings:
      return textWith(Text::pathHoldsSettings, opening.path);
    case LibraryOpening::Place::holdsRecording:
      return textWith(Text::pathHoldsRecording, opening.path);
  }
  return {};
}

Recorder::Recorder(RecorderHooks& hooks, const Clock& clock, const LibraryDisk& disk)
    : library(disk),
      hooks_(hooks),
      clock_(clock),
      recording_(track, options, *this, clock),
      journal_(std::make_unique<Journal>()) {}

bool Recorder::start() {
  if (!recording_.start()) return false;
  beginJournal();
  return true;
}

SaveResult Recorder::stop(bool ask) {
  keeping_ = {};
  const bool hadPoints = !track.points.empty() && track.state != kPlaying;
  recording_.stop(nullptr, ask);
  if (hadPoints && keeping_.outcome == SaveResult::Outcome::nothing) {
    keeping_.outcome = SaveResult::Outcome::declined;
  }
  return std::exchange(keeping_, {});
}

LibraryOpening Recorder::openLibrary() {
  const RecorderPaths places = hooks_.places();
  LibraryOpening opening{.path = places.library};
  if (library.isOpen() && library.path() == places.library) {
    opening.state = library.state();
    return opening;
  }
  opening.place = placeAt(places);
  if (opening.place != LibraryOpening::Place::free) return opening;
  opening.state = library.open(places.library);
  opening.isNew = true;
  return opening;
}

bool Recorder::save(Track& ended) {
  const std::string file = hooks_.places().file;
  if (file.empty()) {
    ended.recording = journal_->isOpen() ? journal_->recording() : 0;
    keeping_ = saveToLibrary([&] { return library.add(ended, options, clock_.local()); });
  } else {
    const bool written = writeTrackFile(ended, file, options);
    keeping_.outcome = written ? SaveResult::Outcome::saved : SaveResult::Outcome::refused;
    if (!written) keeping_.result = LibraryResult::notWritten;
  }
  return keeping_.outcome == SaveResult::Outcome::saved;
}

// `add` changes the opened library.
SaveResult Recorder::saveToLibrary(const std::function<LibraryResult()>& add) {
  SaveResult keeping{.outcome = SaveResult::Outcome::refused, .library = openLibrary()};
  if (!keeping.library.usable()) return keeping;
  const std::string backupBefore = library.backupPath();
  keeping.result = add();
  if (library.backupPath() != backupBefore) keeping.damagedBackupPath = library.backupPath();
  if (keeping.result != LibraryResult::done) return keeping;
  keeping.outcome = SaveResult::Outcome::saved;
  keeping.name = lastSavedName_ = library.addedName();
  return keeping;
}

LibraryResult Recorder::renameLastSaved(std::string_view name) {
  if (!openLibrary().usable()) return LibraryResult::unreadable;
  library.refresh();
  const auto tracks = library.tracks();
  size_t at = tracks.size();
  while (at > 0 && tracks[at - 1].name != lastSavedName_) --at;
  if (at == 0) return LibraryResult::notFound;
  const LibraryResult result = library.rename(at - 1, name);
  if (result == LibraryResult::done) lastSavedName_ = library.tracks()[at - 1].name;
  return result;
}

JournalSettings Recorder::journalSettings() {
  return {.open = hooks_.opener(),
          .failed = [this] { hooks_.journalFailed(); },
          .works = [this] { hooks_.journalWorks(); }};
}

void Recorder::beginJournal() {
  journalRefused_ = false;
  const std::string path = hooks_.places().journal;
  if (journal_->isOpen() || path.empty()) return;
  journal_ = std::make_unique<Journal>(journalSettings());
  if (createFreeJournal(*journal_, path) != JournalResult::open) {
    journalRefused_ = true;
    hooks_.journalRefused(path);
    return;
  }
  for (const TrackPoint& point : track.points) journal_->append(point);
  inMemoryOnly_ = false;
}

// Recording also begins when a pause ends without an earlier recording.
void Recorder::pointRecorded(const TrackPoint& point) {
  if (journal_->isOpen()) {
    journal_->append(point);
  } else if (!journalRefused_) {
    beginJournal();
  }
  if (!journal_->isOpen()) inMemoryOnly_ = true;
}

void Recorder::flushPoints() {
  if (journal_->isOpen()) journal_->flush();
}

bool Recorder::askToSave() {
  const bool wanted = hooks_.askToSave();
  discarding_ = !wanted;
  return wanted;
}

void Recorder::pointsSavedOrDiscarded() {
  if (std::exchange(discarding_, false)) keepDiscarded();
  if (journal_->isOpen()) journal_->discard();
  inMemoryOnly_ = false;
}

// A journal that does not get its new name stays where it is, for the next start to ask about.
void Recorder::keepDiscarded() {
  const std::string folder = hooks_.places().discarded;
  if (folder.empty() || (!journal_->isOpen() && !inMemoryOnly_)) return;
  const std::string path = freeDiscardedPath(folder, clock_.utc());
  if (path.empty()) return;
  if (!journal_->isOpen()) {
    if (journal_->create(path) != JournalResult::open) return;
    for (const TrackPoint& point : track.points) journal_->append(point);
    journal_->close();
  } else if (!track.points.empty()) {
    journal_->keepAs(path);
  }
  pruneDiscarded(folder, clock_.utc());
}

void Recorder::discardTrack() {
  discarding_ = true;
  pointsSavedOrDiscarded();
  track = Track();
}

// A track that was changed since is another one than the journal's, which is left as it is.
size_t Recorder::resumeJournal() {
  const std::string path = journal_->path();
  RecoveredTrack written;
  JournalResult result = journal_->recover(path, written);
  if (result == JournalResult::missing) {
    journal_ = std::make_unique<Journal>(journalSettings());
    result = journal_->create(path);
  }
  inMemoryOnly_ = result != JournalResult::open;
  if (inMemoryOnly_) return track.points.size();
  const size_t there = written.points.size();
  if (!beginsWith(track.points, written.points)) {
    journal_->close();
    inMemoryOnly_ = true;
    return track.points.size();
  }
  for (size_t i = there; i < track.points.size(); ++i) journal_->append(track.points[i]);
  return track.points.size() - there;
}

void Recorder::continueFrom(UnfinishedRecording& unfinished) {
  journal_ = unfinished.continueInto(track);
  journalRefused_ = inMemoryOnly_ = false;
  recording_.continueRecovered();
}

SaveResult Recorder::saveUnfinished(UnfinishedRecording& unfinished) {
  return saveToLibrary([&] { return unfinished.save(library, options, clock_.local()); });
}

// Reopens the journal, because what it actually contains counts, not what was passed to it.
RecordingEnd Recorder::end() {
  RecordingEnd ended;
  const std::string path = journal_->path();
  journal_->close();
  UnfinishedRecording whole(journalSettings());
  ended.journal = whole.open(path);
  whole.replaceTrack(std::exchange(track, {}));
  ended.keeping = saveUnfinished(whole);
  if (ended.keeping.outcome == SaveResult::Outcome::saved) return ended;
  whole.continueInto(track);
  const size_t unsavedPoints = resumeJournal();
  if (!closeJournal()) ended.unsavedPoints = unsavedPoints;
  return ended;
}

}  // namespace vgps
