#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "app/session/log_reader.h"
#include "app/session/log_survey.h"

namespace vgps {

// A log file, or standard input for "-", read once from start to end.
class LogFile {
 public:
  explicit LogFile(const std::string& path);

  // Returns false at the end of the log or on a read error.
  bool next(LogPiece& piece);
  // The error message; empty if there is none.
  const std::string& complaint() const { return complaint_; }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const {
      if (file != stdin) std::fclose(file);
    }
  };
  void complain();

  std::string path_;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::string complaint_;
  LogReader reader_;
};

// Reads ahead in the log. Returns nothing for input that cannot be read twice (standard input, a
// pipe, a device).
std::optional<LogSurvey> surveyLogFile(const std::string& path, bool untilDate);

}  // namespace vgps
