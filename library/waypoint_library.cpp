#include "library/waypoint_library.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "files/bad_copies.h"
#include "files/file_lock.h"
#include "files/input_file.h"
#include "files/whole_file.h"
#include "xml/tags.h"

namespace vgps {
namespace {

constexpr double kGreatestCoordinate = 1e9;

// Whether every tag is closed correctly and there is no text between tags.
bool isWellFormed(std::string_view text) {
  TagReader tags(text);
  std::vector<std::string> open;
  bool good = true;
  for (TagMark tag; tags.next(tag);) {
    good = good && !tag.textBefore;
    if (tag.kind == TagMark::Kind::open) open.emplace_back(tag.name);
    if (tag.kind != TagMark::Kind::close) continue;
    good = good && !open.empty() && open.back() == tag.name;
    if (!open.empty()) open.pop_back();
  }
  return good && open.empty() && !tags.isBroken();
}

bool isUtf16(std::string_view bytes) {
  return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

bool readCoordinate(XmlElement element, const char* name, double& out) {
  const XmlAttribute attribute = element.FindAttribute(name);
  if (!attribute) return false;
  const std::string_view text = attribute.storedValue();
  out = leadingDouble(text);
  return !text.empty() && text.find_first_not_of("0123456789.+-eE") == std::string_view::npos &&
         std::fabs(out) <= kGreatestCoordinate;
}

void setAttribute(XmlElement element, const char* name, std::string_view value) {
  XmlAttribute attribute = element.FindAttribute(name);
  if (attribute) {
    attribute.SetValue(value);
  } else {
    element.AddVariable(name, value);
  }
}

void setWaypoint(XmlElement element, const Waypoint& waypoint) {
  const auto coordinate = [](double value) {
    return fixedText(std::fabs(value) <= kGreatestCoordinate ? value : 0, 6);
  };
  setAttribute(element, "n", validUtf8(waypoint.name));
  setAttribute(element, "x", coordinate(waypoint.x));
  setAttribute(element, "y", coordinate(waypoint.y));
  setAttribute(element, "z", coordinate(waypoint.z));
}

std::string nameOf(XmlElement element) {
  const XmlAttribute name = element.FindAttribute("n");
  return name ? name.GetValue() : std::string();
}

}  // namespace

WaypointLibrary::WaypointLibrary(LibraryDisk disk) : disk_(std::move(disk)) {}

LibraryState WaypointLibrary::open(const std::string& path) {
  path_ = path;
  backupPath_.clear();
  return load();
}

LibraryState WaypointLibrary::refresh() {
  FileStamp now;
  fileStamp(path_, now);
  // A document that was unreadable may have been in use only briefly.
  return now == stamp_ && state_ != LibraryState::unreadable ? state_ : load();
}

LibraryState WaypointLibrary::load() {
  stamp_ = {};
  document_ = XmlDocument();
  damaged_ = false;
  if (!fileStamp(path_, stamp_)) {
    collect();
    return state_ = fileExists(path_) ? LibraryState::unreadable : LibraryState::missing;
  }
  std::string bytes;
  if (!readWholeFile(path_, bytes)) {
    collect();
    return state_ = LibraryState::unreadable;
  }
  const bool wide = isUtf16(bytes);
  const XmlLoadResult loaded =
      wide ? document_.Load(path_) : document_.Load(bytes, XmlLoadMode::text);
  if (loaded.status == XmlLoadStatus::empty) {
    collect();
    return state_ = LibraryState::missing;
  }
  damaged_ = !loaded || (!wide && !isWellFormed(bytes));
  collect();
  const XmlElement root = document_.GetRootElement();
  const bool another =
      loaded && root.storedName() != "root" && !root.FindElement("waypoints") && waypoints_.empty();
  state_ = another    ? LibraryState::notALibrary
           : damaged_ ? LibraryState::damaged
                      : LibraryState::whole;
  return state_;
}

// Fills the lists from the document. In a damaged one, waypoints may be anywhere.
void WaypointLibrary::collect() {
  waypoints_.clear();
  elements_.clear();
  categories_.clear();
  categoryElements_.clear();
  const XmlElement root = document_.GetRootElement();
  const XmlElement top = root.FindElement("waypoints");
  collectFrom(damaged_ || !top ? root : top, kNoCategory);
}

void WaypointLibrary::collectFrom(XmlElement parent, size_t category) {
  // Uses an explicit stack, because a damaged document can be deeply nested.
  struct Level {
    XmlElement element;
    size_t category;
  };
  std::vector<Level> levels = {{parent, category}};
  while (!levels.empty()) {
    const Level level = levels.back();
    levels.pop_back();
    const std::string_view name = level.element.storedName();
    size_t inside = level.category;
    if (name == "c") {
      inside = categories_.size();
      categories_.push_back(nameOf(level.element));
      categoryElements_.push_back(level.element);
    } else if (name == "w") {
      Waypoint waypoint;
      if (readWaypoint(level.element, waypoint)) {
        waypoints_.push_back({std::move(waypoint), inside});
        elements_.push_back(level.element);
      } else {
        damaged_ = true;
      }
    }
    const size_t first = levels.size();
    for (const XmlElement child : level.element.GetChildren()) levels.push_back({child, inside});
    std::reverse(levels.begin() + static_cast<std::ptrdiff_t>(first), levels.end());
  }
}

bool WaypointLibrary::readWaypoint(XmlElement element, Waypoint& out) const {
  out.name = nameOf(element);
  const bool height = !element.FindAttribute("z") || readCoordinate(element, "z", out.z);
  return readCoordinate(element, "x", out.x) && readCoordinate(element, "y", out.y) && height;
}

XmlElement WaypointLibrary::parentFor(size_t category) {
  if (category < categoryElements_.size()) return categoryElements_[category];
  return document_.GetRootElement().FindElement("waypoints", true);
}

// Builds an undamaged document from what was readable in the damaged one. The lists keep their
// order until the next `collect`.
void WaypointLibrary::rebuild() {
  document_ = XmlDocument();
  categoryElements_.clear();
  elements_.clear();
  for (const std::string& name : categories_) {
    XmlElement category = parentFor(kNoCategory).AddElement("c");
    category.AddVariable("n", name);
    categoryElements_.push_back(category);
  }
  for (const StoredWaypoint& stored : waypoints_) {
    elements_.push_back(parentFor(stored.category).AddElement("w"));
    setWaypoint(elements_.back(), stored.waypoint);
  }
  damaged_ = false;
}

LibraryResult WaypointLibrary::prepare() {
  FileStamp now;
  fileStamp(path_, now);
  const bool changed = !(now == stamp_);
  if (changed) load();
  if (state_ == LibraryState::notALibrary) return LibraryResult::notALibrary;
  if (state_ == LibraryState::unreadable) return LibraryResult::unreadable;
  if (changed) return LibraryResult::changed;
  if (state_ != LibraryState::damaged) return LibraryResult::done;
  if (backupPath_.empty() || !(backedUpStamp_ == stamp_))
    backupPath_ = copyToBad(path_, disk_.open);
  if (backupPath_.empty()) return LibraryResult::backupFailed;
  backedUpStamp_ = stamp_;
  return LibraryResult::done;
}

// Runs `edit` on the document, using the lists, and saves if it returns true.
template <class Edit>
LibraryResult WaypointLibrary::change(Edit edit) {
  const FileLock lock(lockPathOf(path_), disk_.open, disk_.waitForOthersMs);
  LibraryResult result = lockResult(lock.state());
  if (result == LibraryResult::done) result = prepare();
  if (result != LibraryResult::done) return result;
  if (state_ == LibraryState::damaged) rebuild();
  result = edit();
  if (result == LibraryResult::done) {
    const XmlBuffer text = document_.saveToMemory();
    OutputFile out(path_, disk_.open);
    const bool written = text && out.write(text.view()) && out.finish();
    if (!written) result = LibraryResult::notWritten;
  }
  if (result != LibraryResult::done) {
    load();
    return result;
  }
  fileStamp(path_, stamp_);
  collect();
  state_ = LibraryState::whole;
  return result;
}

LibraryResult WaypointLibrary::add(const Waypoint& waypoint, size_t category) {
  const StoredWaypoint stored{waypoint, category};
  return add(std::span(&stored, 1));
}

LibraryResult WaypointLibrary::add(std::span<const StoredWaypoint> waypoints) {
  // Without a category, there is no index that another program could have changed.
  const auto plain = [](const StoredWaypoint& stored) { return stored.category == kNoCategory; };
  if (std::all_of(waypoints.begin(), waypoints.end(), plain)) refresh();
  return change([&] {
    for (const StoredWaypoint& stored : waypoints) {
      if (stored.category != kNoCategory && stored.category >= categories_.size()) {
        return LibraryResult::notFound;
      }
      setWaypoint(parentFor(stored.category).AddElement("w"), stored.waypoint);
    }
    return LibraryResult::done;
  });
}

LibraryResult WaypointLibrary::edit(size_t index, const Waypoint& waypoint) {
  return change([&] {
    if (index >= elements_.size()) return LibraryResult::notFound;
    setWaypoint(elements_[index], waypoint);
    return LibraryResult::done;
  });
}

LibraryResult WaypointLibrary::remove(size_t index) {
  return change([&] {
    if (index >= elements_.size()) return LibraryResult::notFound;
    elements_[index].Remove();
    return LibraryResult::done;
  });
}

LibraryResult WaypointLibrary::move(size_t index, size_t category) {
  return change([&] {
    const bool known = category == kNoCategory || category < categories_.size();
    if (index >= elements_.size() || !known) return LibraryResult::notFound;
    parentFor(category).AddElement(elements_[index]);
    return LibraryResult::done;
  });
}

LibraryResult WaypointLibrary::addCategory(std::string_view name) {
  if (name.empty()) return LibraryResult::noName;
  return change([&] {
    parentFor(kNoCategory).AddElement("c").AddVariable("n", validUtf8(name));
    return LibraryResult::done;
  });
}

LibraryResult WaypointLibrary::renameCategory(size_t index, std::string_view name) {
  if (name.empty()) return LibraryResult::noName;
  return change([&] {
    if (index >= categoryElements_.size()) return LibraryResult::notFound;
    setAttribute(categoryElements_[index], "n", validUtf8(name));
    return LibraryResult::done;
  });
}

LibraryResult WaypointLibrary::removeCategory(size_t index, bool withWaypoints) {
  return change([&] {
    if (index >= categoryElements_.size()) return LibraryResult::notFound;
    XmlElement category = categoryElements_[index];
    if (!withWaypoints) {
      const auto children = category.GetChildren();
      const std::vector<XmlElement> inside(children.begin(), children.end());
      for (const XmlElement& child : inside) category.GetParent().AddElement(child);
    }
    category.Remove();
    return LibraryResult::done;
  });
}

}  // namespace vgps
