#include "cli/log_reader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace vgps {
namespace {

constexpr size_t kBinaryHeader = 4;
constexpr size_t kBinaryOverhead = 8;

}  // namespace

LogReader::LogReader(Source source, size_t blockSize)
    : source_(std::move(source)), buffer_(std::max<size_t>(blockSize, 1)) {}

bool LogReader::next(LogPiece& piece) {
  if (!has(1)) return false;
  if (startsBinary()) {
    takeMessage(piece);
  } else {
    takeLine(piece);
  }
  return true;
}

// Moves what waits to the front and reads behind it. False at the end of the log.
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

bool LogReader::startsBinary() {
  return waiting()[0] == '\xA0' && has(2) && waiting()[1] == '\xA2';
}

// A message that the end of the log cuts short is given as far as it goes.
void LogReader::takeMessage(LogPiece& piece) {
  size_t length = kBinaryHeader;
  if (has(kBinaryHeader)) {
    const auto byteAt = [this](size_t i) { return static_cast<uint8_t>(waiting()[i]); };
    length = (size_t{byteAt(2)} << 8 | byteAt(3)) + kBinaryOverhead;
    has(length);
  }
  piece.binary = true;
  piece.chunk = piece.text = waiting().substr(0, length);
  begin_ += piece.text.size();
}

void LogReader::takeLine(LogPiece& piece) {
  const size_t length = lineLength();
  const std::string_view line = waiting().substr(0, length);
  const std::string_view rest = waiting().substr(length);
  piece.binary = false;
  piece.text = line;
  if (rest.starts_with("\r\n")) {
    piece.chunk = waiting().substr(0, length + 2);
    begin_ += length + 2;
    return;
  }
  chunk_.assign(line);
  chunk_ += "\r\n";
  piece.chunk = chunk_;
  const bool ended = !rest.empty() && (rest[0] == '\r' || rest[0] == '\n');
  begin_ += length + (ended ? 1 : 0);
}

// Of the line at the front; reads on until its end is known, with a line feed behind a carriage
// return.
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
