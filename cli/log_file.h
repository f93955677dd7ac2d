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

  // Returns false at the end of the log, on a read error, or after a megabyte without a line in
  // what never had one or may never end.
  bool next(LogPiece& piece);
  // The error message; empty if there is none.
  const std::string& complaint() const { return complaint_; }
  // Whether a sentence or a message of a receiver has come. Programs and pictures have lines that
  // begin with "$" too.
  bool isLog() const { return isLog_; }
  // The error message for a file that is not a log.
  std::string notALog() const {
    return path_ + " is not a log: no sentence and no receiver message was found";
  }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const {
      if (file != stdin) std::fclose(file);
    }
  };
  void complain();

  std::string path_;
  bool ends_;  // a regular file: a hole in it has an end
  bool anyLine_ = false;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::string complaint_;
  bool isLog_ = false;
  LogReader reader_;
};

// A first look through the log. Of what cannot be read twice (standard input, a pipe, a device)
// there is none.
std::optional<LogSurvey> surveyLogFile(const std::string& path);

}  // namespace vgps
