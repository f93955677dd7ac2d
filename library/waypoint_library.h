#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "library/track_store.h"
#include "platform/files.h"
#include "track/track.h"
#include "xml/document.h"

// The waypoint library: all waypoints, stored in one document:
//
//   <root>
//     <waypoints>
//       <c n="Huts">                                        a category, optional
//         <w n="Camp" x="11.516667" y="48.117300" z="545.000000"/>     degrees, meters
//       </c>
//       <w n="Home" x="..." y="..." z="..."/>
//     </waypoints>
//   </root>
namespace vgps {

inline constexpr const char* kWaypointLibraryName = "waypoints.xml";

inline constexpr size_t kNoCategory = SIZE_MAX;

struct StoredWaypoint {
  Waypoint waypoint;
  size_t category = kNoCategory;  // index into categories()
};

// The waypoints in memory and in their document, which is saved after every change; if saving
// fails, the change is undone. Everything else in the document is preserved.
class WaypointLibrary {
 public:
  explicit WaypointLibrary(LibraryDisk disk = {});

  LibraryState open(const std::string& path);
  // Checks for changes by other programs.
  LibraryState refresh();

  LibraryState state() const { return state_; }
  const std::string& path() const { return path_; }
  const std::string& backupPath() const { return backupPath_; }
  std::span<const StoredWaypoint> waypoints() const { return waypoints_; }
  std::span<const std::string> categories() const { return categories_; }

  // Appends a waypoint to its category, or to those without one. Look up its new index in the list.
  LibraryResult add(const Waypoint& waypoint, size_t category = kNoCategory);
  // Adds all of them or none; saves once.
  LibraryResult add(std::span<const StoredWaypoint> waypoints);
  LibraryResult edit(size_t index, const Waypoint& waypoint);
  LibraryResult remove(size_t index);
  LibraryResult move(size_t index, size_t category);

  LibraryResult addCategory(std::string_view name);
  LibraryResult renameCategory(size_t index, std::string_view name);
  // Its waypoints either move out of the category or are deleted with it.
  LibraryResult removeCategory(size_t index, bool withWaypoints);

 private:
  LibraryState load();
  void collect();
  void collectFrom(XmlElement parent, size_t category);
  bool readWaypoint(XmlElement element, Waypoint& out) const;
  XmlElement parentFor(size_t category);
  void rebuild();
  LibraryResult prepare();
  template <class Edit>
  LibraryResult change(Edit edit);

  LibraryDisk disk_;
  std::string path_;
  std::string backupPath_;
  LibraryState state_ = LibraryState::missing;
  FileStamp stamp_;
  FileStamp backedUpStamp_;  // of the document that was copied to `backupPath_`
  bool damaged_ = false;
  XmlDocument document_;
  std::vector<StoredWaypoint> waypoints_;
  std::vector<XmlElement> elements_;  // of the waypoints
  std::vector<std::string> categories_;
  std::vector<XmlElement> categoryElements_;
};

}  // namespace vgps
