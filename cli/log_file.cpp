#include "cli/log_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/number.h"
#include "gps/sirf.h"
#include "gps/stray_start.h"
#include "platform/files.h"

namespace vgps {
namespace {

// "$GPRMC,", "!AIVDM,": of whatever device, as long as it has a name of letters.
bool isSentence(std::string_view line) {
  constexpr size_t kShortestName = 4;  // "PUBX"
  if (!line.starts_with('$') && !line.starts_with('!')) return false;
  const std::string_view name = line.substr(1, line.find(',') - 1);
  const auto isOfName = [](char c) { return (c >= 'A' && c <= 'Z') || isDigit(c); };
  return name.size() + 1 < line.size() && name.size() >= kShortestName &&
         std::all_of(name.begin(), name.end(), isOfName);
}

}  // namespace

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
    isLog_ = isLog_ || (piece.binary ? piece.text.ends_with(kSirfEnd)
                                     : isSentence(withoutStrayStart(piece.text)));
    const bool isLine = piece.binary || piece.text.size() < LogReader::kLongestLine;
    anyLine_ = anyLine_ || isLine;
    if (isLine || (ends_ && anyLine_)) return true;
    complaint_ = notALog();
    return false;
  }
  if (file_ != nullptr && std::ferror(file_.get()) != 0) complain();
  return false;
}

void LogFile::complain() { complaint_ = "cannot read " + path_ + ": " + std::strerror(errno); }

std::optional<LogSurvey> surveyLogFile(const std::string& path) {
  if (path == "-" || fileKind(path) != FileKind::regular) return std::nullopt;
  LogFile log(path);
  return surveyLog([&log](LogPiece& piece) { return log.next(piece); });
}

}  // namespace vgps
