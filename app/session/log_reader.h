#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vgps {

// A line of a recorded log, or one binary message. The views are valid until the next call.
struct LogPiece {
  std::string_view text;  // the line without its line ending, or the whole message
  // The form that framing expects: the line with CR LF, or the message. The first byte of a damaged
  // message is left out.
  std::string_view chunk;
  bool binary = false;
};

// Splits a log into the pieces that a receiver would have sent one by one:
//
//   text CR LF | text LF | text CR      one line each, including blank ones
//   A0 A2 length16 payload ... B0 B3    at the start of a line: one message, length + 8 bytes;
//                                       text may follow immediately
//
// Bytes that are neither, as in a damaged capture of messages, form a piece of text up to the next
// complete message. Only a line that starts with "$" extends to its end, whatever it contains.
//
// Reads in blocks and keeps only one of them. A line longer than kLongestLine is split.
class LogReader {
 public:
  static constexpr size_t kLongestLine = size_t{1} << 20;

  // Fills the buffer and returns the number of bytes; 0 at the end.
  using Source = std::function<size_t(std::span<char>)>;

  explicit LogReader(Source source, size_t blockSize = size_t{1} << 18);

  // Returns false at the end of the log.
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
  // The positions of the next LF and CR at or after begin_; end_ if there is none in the buffer.
  // This way each byte is examined only once, even if a log uses only one of the two.
  size_t lineFeed_ = kUnknown;
  size_t carriageReturn_ = kUnknown;
  bool ended_ = false;
  std::string chunk_;
};

}  // namespace vgps
