#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "app/session/log_reader.h"

namespace vgps {

// A log on the disk, read once from its start to its end.
class LogFile {
 public:
  explicit LogFile(const std::string& path);

  // False at the end of the log, or where it cannot be read.
  bool next(LogPiece& piece);
  // Empty while all is well.
  const std::string& complaint() const { return complaint_; }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  void complain();

  std::string path_;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::string complaint_;
  LogReader reader_;
};

}  // namespace vgps
