#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vgps {

// A line of a recorded log, or one binary message in it. The views last until the next call.
struct LogPiece {
  std::string_view text;  // the line without its line end, or the whole message
  // As the framing takes it: the line with CR LF, or the message. Of a damaged message the first
  // byte is left out.
  std::string_view chunk;
  bool binary = false;
};

// Cuts a log into what a receiver's line would have brought one by one:
//
//   text CR LF | text LF | text CR      one line each, a blank one too
//   A0 A2 length16 payload ... B0 B3    where a line would start: one message, length + 8 bytes;
//                                       text may follow at once
//
// Bytes that are neither, as damage leaves them in a capture of messages, are a piece of text up to
// the next whole message; only a line that begins with "$" goes on to its end whatever is in it.
//
// Reads in blocks and keeps one block only; a longer line than kLongestLine is cut there.
class LogReader {
 public:
  static constexpr size_t kLongestLine = size_t{1} << 20;

  // Fills the buffer from its front and returns how many bytes there are; 0 at the end.
  using Source = std::function<size_t(std::span<char>)>;

  explicit LogReader(Source source, size_t blockSize = size_t{1} << 18);

  // False at the end of the log.
  bool next(LogPiece& piece);

 private:
  static constexpr size_t kUnknown = static_cast<size_t>(-1);

  std::string_view waiting() const { return {buffer_.data() + begin_, end_ - begin_}; }
  bool fill();
  bool has(size_t count);
  bool startsBinary(size_t at);
  size_t announcedLength(size_t at);
  size_t wholeMessage(size_t at);
  size_t messageLength();
  size_t nextMessage(size_t from, size_t limit);
  void takeMessage(LogPiece& piece, size_t length);
  void takeLine(LogPiece& piece);
  size_t lineLength();
  size_t nextOf(char c, size_t& known) const;

  Source source_;
  std::vector<char> buffer_;
  size_t begin_ = 0;
  size_t end_ = 0;
  // The next LF and CR at or behind begin_, end_ when there is none in the buffer: each byte is
  // looked at once, also where only one of the two ends lines.
  size_t lineFeed_ = kUnknown;
  size_t carriageReturn_ = kUnknown;
  bool ended_ = false;
  std::string chunk_;
};

}  // namespace vgps
