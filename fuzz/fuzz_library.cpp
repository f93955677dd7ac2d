#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>

#include "fuzz/quiet_hooks.h"
#include "library/library_index.h"
#include "library/track_library.h"
#include "library/waypoint_library.h"
#include "platform/files.h"

// Any bytes as a library document, as an index and as a document of waypoints: what is listed can
// be loaded, a track that is added is there afterwards, and the next program finds a whole library.
namespace {

using namespace vgps;

struct Folder {
  Folder() {
    const bool memory = std::filesystem::is_directory("/dev/shm");
    path = std::string(memory ? "/dev/shm" : ".") + "/vgps_fuzz_library_" +
           std::to_string(std::random_device{}());
    std::filesystem::create_directories(path);
  }
  ~Folder() { std::filesystem::remove_all(path); }
  std::string file(const char* name) const { return pathIn(path, name); }
  void clear() const {
    for (const std::string& name : filesIn(path)) removeFile(file(name.c_str()));
  }
  std::string path;
};

void put(const std::string& path, std::string_view bytes) {
  std::FILE* const file = openFile(path, "wb");
  require(file != nullptr);
  require(std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size());
  std::fclose(file);
}

uint64_t checkAll(TrackLibrary& library) {
  uint64_t points = 0;
  for (size_t i = 0; i < library.tracks().size(); ++i) {
    Track track;
    require(library.load(i, 0, track) == LibraryResult::done);
    require(track.points.size() == library.tracks()[i].points);
    points += track.points.size();
  }
  return points;
}

Track newTrack() {
  Track track;
  track.name = "New";
  TrackPoint point;
  point.longitude = 11.5;
  point.latitude = 48.1;
  track.points.push_back(point);
  return track;
}

void checkTracks(const Folder& folder) {
  const std::string path = folder.file("tracks.xml");
  TrackLibrary library;
  const LibraryState state = library.open(path);
  const uint64_t points = checkAll(library);
  const size_t count = library.tracks().size();
  Track track = newTrack();
  const LibraryResult result = library.add(track, {}, {});
  if (state == LibraryState::notALibrary) return require(result == LibraryResult::notALibrary);
  require(result == LibraryResult::done);
  require(fileExists(folder.file("tracks.bad")) == (state == LibraryState::damaged));
  for (int round = 0; round < 2; ++round) {
    TrackLibrary again;
    require(again.open(path) == LibraryState::whole);
    require(again.tracks().size() == count + 1);
    require(checkAll(again) == points + 1);
    removeFile(folder.file("tracks.index"));  // the next reads the document
  }
  if (count > 0) require(library.rename(0, "Other") == LibraryResult::done);
  require(library.remove(count) == LibraryResult::done);
  require(library.undo() == LibraryResult::done);
  require(checkAll(library) == points + 1);
}

void checkWaypoints(const Folder& folder) {
  WaypointLibrary library;
  const std::string path = folder.file("waypoints.xml");
  const LibraryState state = library.open(path);
  const size_t count = library.waypoints().size();
  const LibraryResult result = library.add({.name = "New", .x = 1, .y = 2, .z = 3});
  if (state == LibraryState::notALibrary) return require(result == LibraryResult::notALibrary);
  require(result == LibraryResult::done);
  WaypointLibrary again;
  require(again.open(path) == LibraryState::whole);
  require(again.waypoints().size() == count + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Folder folder;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  folder.clear();
  LibraryIndex index;
  if (readIndex(bytes, index)) {
    LibraryIndex again;
    require(readIndex(indexText(index), again) && again.entries.size() == index.entries.size());
  }
  put(folder.file("tracks.index"), bytes);
  put(folder.file("tracks.xml"), bytes);
  put(folder.file("waypoints.xml"), bytes);
  checkTracks(folder);
  checkWaypoints(folder);
  return 0;
}
