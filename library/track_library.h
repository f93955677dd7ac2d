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

// The track library: saved tracks in one document, "tracks.xml", or in a folder with one file per
// track.
namespace vgps {

// Its file name, in the folder of the settings document.
inline constexpr const char* kTrackLibraryName = "tracks.xml";

// The path of the library: a document or an existing folder named by the setting, relative to the
// settings' folder unless absolute; by default kTrackLibraryName there.
std::string trackLibraryPath(std::string_view setting, const std::string& settingsFolder);

// The attributes that a track file needs for these points; one that is always zero is omitted.
RecordingOptions attributesIn(const Track& track);
// The folder of its files: the library's own, or the one that contains the document.
std::string trackFolder(std::string_view setting, const std::string& settingsFolder);

// Whether the file has the root of a library document. Reads only its first bytes.
bool isLibraryFile(const std::string& path);

struct Editable;

// An open library. It keeps the summary of each track in memory, not its points, and reads the
// document again when another program has changed it. Every change is on disk when its call
// returns. Calls come from one thread at a time. The first opening of a large library reads all of
// it, and each change copies the document, so both take time.
class TrackLibrary {
 public:
  explicit TrackLibrary(LibraryDisk disk = {});
  ~TrackLibrary();
  TrackLibrary(TrackLibrary&&) noexcept;
  TrackLibrary& operator=(TrackLibrary&&) noexcept;

  // `path` is a document, which need not exist yet, or an existing folder.
  LibraryState open(const std::string& path);
  // Checks for changes by other programs. This may change track numbers.
  LibraryState refresh();

  bool isOpen() const { return store_ != nullptr; }
  bool isFolder() const;
  const std::string& path() const;
  LibraryState state() const;
  std::span<const TrackSummary> tracks() const;
  // The copy of a damaged document, made before it was first overwritten; empty if there is none.
  const std::string& backupPath() const;
  // A message for the user about the state after `open`; empty if there is no problem.
  std::string message() const;

  // Reads a track into `track`. If its summary says `damaged`, only the readable points are loaded.
  LibraryResult load(size_t index, int32_t speedUnit, Track& track);

  // Appends a track under its name or, without one, as "Track NUMBER"; in a folder, under a name
  // made from the time `local`. Removes the attachments that were written from `track`. A recording
  // that is there already is not added again; if it was shorter then, it is replaced. When another
  // program changes the library meanwhile, it is read again, up to ten times.
  LibraryResult add(Track& track, const RecordingOptions& options, const DateTime& local);
  // The name under which the last track was added.
  const std::string& addedName() const { return addedName_; }
  // Adds a track element written by another program.
  LibraryResult import(XmlElement element);
  // Adds several tracks in one change: all or none. In a folder each is a file, and those written
  // before a failure stay.
  LibraryResult import(std::span<const XmlElement> elements);

  LibraryResult rename(size_t index, std::string_view name);
  LibraryResult remove(size_t index);
  // Appends the points of `other` to those of `index`, which keeps its name, and removes `other`.
  LibraryResult join(size_t index, size_t other, const RecordingOptions& options);
  // Moves the points from `point` on into a new track after this one, named "Split NUMBER".
  LibraryResult split(size_t index, size_t point, const RecordingOptions& options);
  LibraryResult reverse(size_t index, const RecordingOptions& options);
  LibraryResult thin(size_t index, const RecordingOptions& options);
  // Replaces a track. The old name stays if the new track has none.
  LibraryResult replace(size_t index, const Track& track, const RecordingOptions& options);

  // Undoes the last change made through this object, unless another program has changed the library
  // since.
  bool canUndo() const;
  LibraryResult undo();

 private:
  using Edit = std::function<void(Track&)>;

  LibraryResult change(const LibraryChange& change);
  LibraryResult addOnce(Track& track, const RecordingOptions& options, const DateTime& local);
  LibraryResult importOnce(std::span<const XmlElement> elements);
  size_t indexOf(uint64_t recording) const;
  bool isBeginning(size_t index, const Track& track);
  LibraryResult imported(XmlElement element, uint32_t number, TrackText& text) const;
  LibraryResult readForEditing(size_t index, Editable& out);
  TrackText rendered(const Track& track, const RecordingOptions& writing, std::string name) const;
  TrackText edited(const Editable& old) const;
  LibraryResult rewrite(size_t index, const RecordingOptions& options, const Edit& edit);

  LibraryDisk disk_;
  std::unique_ptr<TrackStore> store_;
  std::string addedName_;
  LibraryChange undo_;
  uint64_t undoRevision_ = 0;  // the store's revision when `undo_` was recorded
};

// A one-sentence message for the user that names the file; empty for `done` and for an undamaged
// library.
std::string libraryMessage(LibraryResult result, const std::string& path);
std::string libraryMessage(LibraryState state, const std::string& path);

}  // namespace vgps
