#include "app/session/log_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "gps/sirf.h"

namespace vgps {

LogReader::LogReader(Source source, size_t blockSize)
    : source_(std::move(source)), buffer_(std::max<size_t>(blockSize, 1)) {}

bool LogReader::next(LogPiece& piece) {
  if (!has(1)) return false;
  if (const size_t length = messageLength(); length > 0) {
    takeMessage(piece, length);
  } else {
    takeLine(piece);
  }
  return true;
}

// Moves unread bytes to the front and reads more. Returns false at the end of the log.
bool LogReader::fill() {
  if (ended_) return false;
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  lineFeed_ = carriageReturn_ = kUnknown;
  if (end_ == buffer_.size()) buffer_.resize(buffer_.size() * 2);
  const size_t got = source_({buffer_.data() + end_, buffer_.size() - end_});
  ended_ = got == 0;
  end_ += got;
  return !ended_;
}

bool LogReader::has(size_t count) {
  while (end_ - begin_ < count) {
    if (!fill()) return false;
  }
  return true;
}

bool LogReader::startsBinary(size_t at) {
  return has(at + 1) && waiting()[at] == kSirfStart[0] && has(at + 2) &&
         waiting()[at + 1] == kSirfStart[1];
}

// The length of the message at `at` according to its header. A truncated header at the end of the
// log counts as just the header.
size_t LogReader::announcedLength(size_t at) {
  return has(at + kSirfHeader) ? sirfFrameLength(waiting().substr(at)) : kSirfHeader;
}

// The length of a complete message at `at`; 0 if there is none.
size_t LogReader::wholeMessage(size_t at) {
  if (!startsBinary(at)) return 0;
  const size_t length = announcedLength(at);
  if (!has(at + length)) return 0;
  return waiting().substr(at, length).ends_with(kSirfEnd) ? length : 0;
}

// The length of the message at the front; 0 if there is none. A message truncated by the end of the
// log counts as far as it goes, unless it contains a complete one: then its own length is wrong.
size_t LogReader::messageLength() {
  if (!startsBinary(0)) return 0;
  if (const size_t length = wholeMessage(0); length > 0) return length;
  if (has(announcedLength(0))) return 0;
  const size_t rest = waiting().size();
  return nextMessage(1, rest) == rest ? rest : 0;
}

// The position of the first complete message after `from`; `limit` if none starts before it.
size_t LogReader::nextMessage(size_t from, size_t limit) {
  for (size_t at = from; at < limit; ++at) {
    at = waiting().substr(0, limit).find(kSirfStart[0], at);
    if (at == std::string_view::npos) break;
    if (wholeMessage(at) > 0) return at;
  }
  return limit;
}

void LogReader::takeMessage(LogPiece& piece, size_t length) {
  piece.binary = true;
  piece.chunk = piece.text = waiting().substr(0, length);
  begin_ += length;
}

void LogReader::takeLine(LogPiece& piece) {
  const size_t lineEnd = lineLength();
  const size_t length = waiting().starts_with('$') ? lineEnd : nextMessage(1, lineEnd);
  // If only the start of a message is left, framing would wait for the rest of it.
  const size_t skipped = startsBinary(0) ? 1 : 0;
  const std::string_view line = waiting().substr(0, length);
  const std::string_view rest = waiting().substr(length);
  piece.binary = false;
  piece.text = line;
  if (rest.starts_with("\r\n")) {
    piece.chunk = waiting().substr(skipped, length + 2 - skipped);
    begin_ += length + 2;
    return;
  }
  chunk_.assign(line.substr(skipped));
  chunk_ += "\r\n";
  piece.chunk = chunk_;
  const bool ended = !rest.empty() && (rest[0] == '\r' || rest[0] == '\n');
  begin_ += length + (ended ? 1 : 0);
}

// The length of the line at the front. Reads more until its end is known, including a line feed
// after a carriage return.
size_t LogReader::lineLength() {
  for (;;) {
    const size_t at = std::min(nextOf('\n', lineFeed_), nextOf('\r', carriageReturn_));
    const size_t length = std::min(at - begin_, kLongestLine);
    const bool whole = at < end_ && (buffer_[at] == '\n' || at + 1 < end_);
    if (whole || length == kLongestLine || !fill()) return length;
  }
}

size_t LogReader::nextOf(char c, size_t& known) const {
  if (known != kUnknown && known >= begin_) return known;
  const size_t found = waiting().find(c);
  known = found == std::string_view::npos ? end_ : begin_ + found;
  return known;
}

}  // namespace vgps
