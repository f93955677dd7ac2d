#pragma once

#include <string>

// The reference that Debian packages: Qt 6 Positioning. bench/qt_missing.cpp stands in where it is
// not installed.
namespace vgps {

class QtPositioning {
 public:
  QtPositioning();
  ~QtPositioning();
  QtPositioning(const QtPositioning&) = delete;
  QtPositioning& operator=(const QtPositioning&) = delete;

  static bool installed();

  // Its position source reads the whole log from a buffer in its real-time mode, which takes all
  // there is at once. How many positions it told.
  size_t readLog(const std::string& log);

  // Its parser alone, called once for each line. How many lines it took for positions.
  size_t parseLines(const std::string& log);

 private:
  struct Source;
  Source* source_;
};

}  // namespace vgps
