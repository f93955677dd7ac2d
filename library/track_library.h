#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_time.h"
#include "library/track_store.h"
#include "track/options.h"
#include "track/track.h"
#include "xml/document.h"

// The tracks that were kept: in one document "tracks.xml", or each in a file of its own in a
// folder.
namespace vgps {

// The name beside the settings document.
inline constexpr const char* kTrackLibraryName = "tracks.xml";

// Where the library lies: what the setting names (a document, or a folder that is there), counted
// from the settings' folder unless it begins at a root; by default kTrackLibraryName there.
std::string trackLibraryPath(std::string_view setting, const std::string& settingsFolder);

struct Editable;

// A library that is open. It holds what a list shows of each track and no points, and reads the
// document again when another program has changed it. Every change is on the disk when its call
// returns. Calls come from one thread at a time; the first opening of a large library reads all of
// it and takes its time, and so does each change, which copies the document.
class TrackLibrary {
 public:
  explicit TrackLibrary(LibraryDisk disk = {});
  ~TrackLibrary();
  TrackLibrary(TrackLibrary&&) noexcept;
  TrackLibrary& operator=(TrackLibrary&&) noexcept;

  // A document, which need not be there yet, or an existing folder.
  LibraryState open(const std::string& path);
  // Looks for changes by others. Numbers of tracks may mean others then.
  LibraryState refresh();

  bool isOpen() const { return store_ != nullptr; }
  bool isFolder() const;
  const std::string& path() const;
  LibraryState state() const;
  std::span<const TrackSummary> tracks() const;
  // The copy that was made of a damaged document before it was first written over; empty when
  // there is none.
  const std::string& backupPath() const;
  // What a person is to know about the state after `open`; empty when everything is well.
  std::string message() const;

  // Replaces `track` by that one. `damaged` of its summary says that only the good points came.
  LibraryResult load(size_t index, int32_t speedUnit, Track& track);

  // At the end, under its name or "Track NUMBER"; in a folder under its name or one made of
  // `local`. What was written of its attachments the track no longer has.
  LibraryResult add(Track& track, const RecordingOptions& options, const DateTime& local);
  // A track element of another program.
  LibraryResult import(XmlElement element);

  LibraryResult rename(size_t index, std::string_view name);
  LibraryResult remove(size_t index);
  // The points of `other` behind those of `index`, which keeps its name; `other` goes.
  LibraryResult join(size_t index, size_t other, const RecordingOptions& options);
  // The points from `point` on become a track of their own behind it, "Split NUMBER".
  LibraryResult split(size_t index, size_t point, const RecordingOptions& options);
  LibraryResult reverse(size_t index, const RecordingOptions& options);
  LibraryResult thin(size_t index, const RecordingOptions& options);
  // Puts a changed track in the place of an old one. The name stays when the track has none.
  LibraryResult replace(size_t index, const Track& track, const RecordingOptions& options);

  // Of the last change that was made through this object, as long as nobody else changed anything.
  bool canUndo() const;
  LibraryResult undo();

 private:
  using Edit = std::function<void(Track&)>;

  LibraryResult change(const LibraryChange& change);
  LibraryResult readForEditing(size_t index, Editable& out);
  TrackText rendered(const Track& track, const RecordingOptions& writing, std::string name) const;
  TrackText edited(const Editable& old) const;
  LibraryResult rewrite(size_t index, const RecordingOptions& options, const Edit& edit);

  LibraryDisk disk_;
  std::unique_ptr<TrackStore> store_;
  LibraryChange undo_;
  uint64_t undoRevision_ = 0;  // of the store when `undo_` was made
};

// One sentence for a person, naming the file; empty for `done` and for a library that is whole.
std::string libraryMessage(LibraryResult result, const std::string& path);
std::string libraryMessage(LibraryState state, const std::string& path);

}  // namespace vgps
