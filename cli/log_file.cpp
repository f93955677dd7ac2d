#include "cli/log_file.h"

#include <cerrno>
#include <cstring>

#include "platform/files.h"

namespace vgps {

LogFile::LogFile(const std::string& path)
    : path_(path),
      ends_(fileKind(path) == FileKind::regular),
      reader_([this](std::span<char> buffer) {
        return file_ == nullptr ? 0 : std::fread(buffer.data(), 1, buffer.size(), file_.get());
      }) {
  errno = 0;
  file_.reset(path == "-" ? standardInput() : openFile(path, "rb"));
  if (file_ == nullptr) {
    complain();
  } else {
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // the log reader has its own buffer
  }
}

bool LogFile::next(LogPiece& piece) {
  if (!complaint_.empty()) return false;
  if (reader_.next(piece)) {
    const bool isLine = piece.binary || piece.text.size() < LogReader::kLongestLine;
    anyLine_ = anyLine_ || isLine;
    if (isLine || (ends_ && anyLine_)) return true;
    complaint_ = (path_ == "-" ? "standard input" : path_) + " is not a log";
    return false;
  }
  if (file_ != nullptr && std::ferror(file_.get()) != 0) complain();
  return false;
}

void LogFile::complain() { complaint_ = "cannot read " + path_ + ": " + std::strerror(errno); }

std::optional<LogSurvey> surveyLogFile(const std::string& path, bool untilDate) {
  if (path == "-" || fileKind(path) != FileKind::regular) return std::nullopt;
  LogFile log(path);
  return surveyLog([&log](LogPiece& piece) { return log.next(piece); }, untilDate);
}

}  // namespace vgps
