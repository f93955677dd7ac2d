#pragma once

#include <string>
#include <vector>

#include "library/library_index.h"
#include "library/track_store.h"

namespace vgps {

// Each track in a file of its own, which has its name.
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
  // A file before and after a change; an absent one has no bytes.
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
  std::vector<IndexEntry> files_;     // all that were looked at, by name
  std::vector<size_t> trackFiles_;    // those of them that are tracks
  std::vector<TrackSummary> tracks_;  // one for each of these
};

}  // namespace vgps
