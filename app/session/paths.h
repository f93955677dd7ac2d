#pragma once

#include <string>

namespace vgps {

// The program's own files. Those beside the program are named by its folder; the backup lies, as
// every name that begins with a point, where the program was started.
struct AppPaths {
  std::string folder;
  std::string settings;  // vgps.xml
  std::string library;   // tracks.xml
  std::string journal;   // of the track that is being recorded; empty: none is kept
  std::string backup = "./vgpsbackup.gpx";
};

AppPaths pathsOf(const std::string& programFolder);

}  // namespace vgps
