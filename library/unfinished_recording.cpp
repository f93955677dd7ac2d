#include "library/unfinished_recording.h"

#include <utility>

#include "base/texts.h"
#include "files/bad_copies.h"

namespace vgps {
JournalResult UnfinishedRecording::open(const std::string& path) {
  path_ = path;
  track_ = {};
  auto journal = std::make_unique<Journal>(settings_);
  RecoveredTrack found;
  const JournalResult result = journal->recover(path, found);
  damaged_ = found.damaged;
  backupPath_ = found.backupPath;
  recording_ = found.recording;
  if (result != JournalResult::open) return result;
  if (found.points.empty()) {
    journal->discard();
    return JournalResult::missing;
  }
  track_.points = std::move(found.points);
  track_.startUtc = startOf(track_.points.front());
  journal_ = std::move(journal);
  return result;
}

std::string UnfinishedRecording::question() const {
  const std::string text = textWith(Text::unfinishedTrack, std::to_string(points()));
  if (!damaged_) return text;
  if (backupPath_.empty()) return text + " " + textWith(Text::partDamaged, path_);
  return text + " " + textWith(Text::partDamagedKept, path_, backupPath_);
}

std::string UnfinishedRecording::message(JournalResult result) const {
  return journalMessage(result, path_, backupPath_);
}

std::unique_ptr<Journal> UnfinishedRecording::continueInto(Track& current) {
  current.points = std::exchange(track_.points, {});
  current.startUtc = track_.startUtc;
  current.attachments.clear();
  current.pointNames.clear();
  return std::move(journal_);
}

LibraryResult UnfinishedRecording::save(TrackLibrary& library, const RecordingOptions& options,
                                        const DateTime& local) {
  track_.recording = recording_;
  const LibraryResult result = library.add(track_, options, local);
  if (result != LibraryResult::done) return result;
  if (damaged_ && backupPath_.empty()) {
    journal_.reset();
    backupPath_ = renameToBad(path_);
  } else {
    discard();
  }
  return result;
}

void UnfinishedRecording::keepForLater() { journal_.reset(); }

bool UnfinishedRecording::discard() {
  const bool gone = journal_ == nullptr || journal_->discard();
  journal_.reset();
  return gone;
}

}  // namespace vgps
