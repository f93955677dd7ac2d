#pragma once

#include <string>
#include <vector>

#include "library/document_layout.h"
#include "library/library_index.h"
#include "library/track_store.h"

namespace vgps {

// Stores all tracks in one document. A change copies the bytes of unchanged parts.
class DocumentStore : public TrackStore {
 public:
  DocumentStore(std::string path, LibraryDisk disk);

  const std::string& path() const override { return path_; }
  const std::string& backupPath() const override { return backupPath_; }
  const std::string& damagedPath() const override { return path_; }
  bool isFolder() const override { return false; }
  LibraryState state() const override { return layout_.state; }
  uint64_t revision() const override { return revision_; }
  LibraryState refresh() override;
  const std::vector<TrackSummary>& tracks() const override { return layout_.tracks; }
  LibraryResult read(size_t index, TrackText& out) override;
  LibraryResult apply(const LibraryChange& change, LibraryChange& inverse) override;

 private:
  bool readFile();
  bool readIndexFile();
  void writeIndexFile();
  LibraryResult reread();
  LibraryResult prepare();
  LibraryResult repair();
  LibraryResult invert(const LibraryChange& change, LibraryChange& inverse);
  bool endIsWhereItWas();
  LibraryResult write(const LibraryChange& change);

  const std::string path_;
  const std::string indexPath_;
  const LibraryDisk disk_;
  std::string backupPath_;
  bool known_ = false;  // whether the members below describe the document with this stamp
  FileStamp stamp_;
  FileStamp backedUpStamp_;  // of the document that was copied to `backupPath_`
  uint64_t revision_ = 0;
  DocumentLayout layout_;
};

}  // namespace vgps
