#include "gps/stream_log.h"

#include "gps/gps_fix.h"
#include "platform/files.h"

namespace vgps {
namespace {

void closeLog(StreamLog& log) {
  if (log.file != nullptr) std::fclose(log.file);
  log.file = nullptr;
}

bool writeAll(std::FILE* file, std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

}  // namespace

StreamLog::~StreamLog() { closeLog(*this); }

void writeStreamLog(GpsState& state, std::string_view chunk) {
  StreamLog& log = state.log;
  if (!state.options.logNmea) {
    closeLog(log);
    log.failureTold = false;
    return;
  }
  if (log.file == nullptr) log.file = openFile(log.path, "ab");
  const std::string_view text = chunk.substr(0, chunk.find('\0'));
  const bool ended = chunk.ends_with('\n');
  // Flushed immediately, so that everything received before a power failure is in the log.
  const bool written = log.file != nullptr && writeAll(log.file, text) &&
                       (ended || writeAll(log.file, "\r\n")) && std::fflush(log.file) == 0;
  if (!written && !log.failureTold) state.hooks.logFailed(log.path);
  log.failureTold = !written;
}

}  // namespace vgps
