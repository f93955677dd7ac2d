#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "app/session/log_reader.h"

namespace vgps {

// A log file, read once from start to end.
class LogFile {
 public:
  explicit LogFile(const std::string& path);

  // Returns false at the end of the log or on a read error.
  bool next(LogPiece& piece);
  // The error message; empty if there is none.
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
