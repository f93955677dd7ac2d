#pragma once

#include <string>

namespace vgps {

// The program's own files. They are in the program's folder, except for the backup and temporary
// ones: a path that starts with a period is relative to the working folder.
struct AppPaths {
  std::string folder;
  std::string settings;  // vgps.xml
  std::string library;   // tracks.xml
  std::string journal;   // of the current recording; empty: none is kept
  std::string backup = "./vgpsbackup.gpx";
  std::string temporary = ".";  // folder of the parts of an archive that is being packed
};

AppPaths pathsOf(const std::string& programFolder);

}  // namespace vgps
