#pragma once

#include <string>
#include <vector>

#include "library/library_index.h"
#include "library/track_store.h"

namespace vgps {

// Stores each track in a separate file, named after the track.
class FolderStore : public TrackStore {
 public:
  FolderStore(std::string folder, LibraryDisk disk);

  const std::string& path() const override { return folder_; }
  const std::string& backupPath() const override { return backupPath_; }
  const std::string& damagedPath() const override { return damagedPath_; }
  bool isFolder() const override { return true; }
  LibraryState state() const override { return state_; }
  uint64_t revision() const override { return revision_; }
  LibraryState refresh() override;
  const std::vector<TrackSummary>& tracks() const override { return tracks_; }
  LibraryResult read(size_t index, TrackText& out) override;
  LibraryResult apply(const LibraryChange& change, LibraryChange& inverse) override;

 private:
  // A file before and after a change. `old` or `bytes` is empty if the file does not exist then.
  struct FileChange {
    std::string path{};
    TrackText old{};
    std::string bytes{};
    bool wasThere = false;
    bool stays = false;
  };

  std::string pathOf(const IndexEntry& entry) const;
  bool look();
  LibraryResult collect(const LibraryChange& change, std::vector<FileChange>& files);
  LibraryResult collectEdit(const TrackEdit& edit, std::vector<FileChange>& files);
  LibraryResult keepDamaged(const LibraryChange& change);
  bool write(const FileChange& file);
  void takeBack(const std::vector<FileChange>& files, size_t count);
  LibraryChange inverseOf(std::vector<FileChange> files) const;

  const std::string folder_;
  const std::string indexPath_;
  const LibraryDisk disk_;
  std::string backupPath_;
  std::string damagedPath_;
  LibraryState state_ = LibraryState::missing;
  bool looked_ = false;
  uint64_t revision_ = 0;
  std::vector<IndexEntry> files_;     // all examined files, sorted by name
  std::vector<size_t> trackFiles_;    // indices of those that are tracks
  std::vector<TrackSummary> tracks_;  // one per track file
};

}  // namespace vgps
