#include "app/session/log_reader.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vgps {
namespace {

using namespace std::string_literals;

// Gives a log in portions, as a file or a pipe would.
LogReader::Source portions(const std::string& log, size_t portion) {
  return [log, portion, at = size_t{0}](std::span<char> buffer) mutable {
    const size_t count = std::min({buffer.size(), portion, log.size() - at});
    log.copy(buffer.data(), count, at);
    at += count;
    return count;
  };
}

// The pieces as text; binary ones in angle brackets. Every chunk is checked on the way.
std::vector<std::string> pieces(const std::string& log, size_t portion, size_t blockSize) {
  LogReader reader(portions(log, portion), blockSize);
  std::vector<std::string> found;
  LogPiece piece;
  while (reader.next(piece)) {
    const std::string text(piece.text);
    const bool damaged = text.starts_with("\xA0\xA2");  // does not pass for the start of a message
    EXPECT_EQ(piece.chunk, piece.binary ? text : text.substr(damaged ? 1 : 0) + "\r\n");
    found.push_back(piece.binary ? "<" + text + ">" : text);
  }
  EXPECT_FALSE(reader.next(piece));
  return found;
}

const std::string kEmptyBinary = "\xA0\xA2\0\0\0\0\xB0\xB3"s;
const std::string kBinary = "\xA0\xA2\0\x05\r\n$\xA0\xA2\0\0\xB0\xB3"s;

TEST(LogReader, Pieces) {
  const struct {
    const char* about;
    std::string log;
    std::vector<std::string> pieces;
  } rows[] = {
      {"nothing", "", {}},
      {"CR LF", "a\r\nb\r\n", {"a", "b"}},
      {"LF", "a\nb\n", {"a", "b"}},
      {"CR", "a\rb\r", {"a", "b"}},
      {"CR CR LF gives a blank line", "a\r\r\nb\r\r\n", {"a", "", "b", ""}},
      {"LF CR too", "a\n\rb\n", {"a", "", "b"}},
      {"blank lines", "\r\n\n\r", {"", "", ""}},
      {"no end on the last line", "a\r\nb", {"a", "b"}},
      {"only a CR at the very end", "a\nb\r", {"a", "b"}},
      {"zero bytes and bytes outside ASCII", "a\0b\xFF\n\0\n"s, {"a\0b\xFF"s, "\0"s}},
      {"a message in front", kBinary + "a\r\n", {"<" + kBinary + ">", "a"}},
      {"messages back to back",
       kEmptyBinary + kBinary,
       {"<" + kEmptyBinary + ">", "<" + kBinary + ">"}},
      {"text behind a message at once",
       kEmptyBinary + "$GP\r\n" + kBinary + "\n",
       {"<" + kEmptyBinary + ">", "$GP", "<" + kBinary + ">", ""}},
      {"a message's start inside a line is text", "a\xA0\xA2\0\0\n"s, {"a\xA0\xA2\0\0"s}},
      {"so is a whole one inside a sentence",
       "$a" + kEmptyBinary + "\n" + kBinary,
       {"$a" + kEmptyBinary, "<" + kBinary + ">"}},
      {"bytes of no line before a message",
       "\x05\xB0\xB3" + kBinary + kBinary,
       {"\x05\xB0\xB3", "<" + kBinary + ">", "<" + kBinary + ">"}},
      {"a length that is too small",
       "\xA0\xA2\0\x01xyz\0\0\xB0\xB3"s + kBinary,
       {"\xA0\xA2\0\x01xyz\0\0\xB0\xB3"s, "<" + kBinary + ">"}},
      {"a length that is too great",
       "\xA0\xA2\0\x09xyz\0\0\xB0\xB3"s + kBinary + kBinary,
       {"\xA0\xA2\0\x09xyz\0\0\xB0\xB3"s, "<" + kBinary + ">", "<" + kBinary + ">"}},
      {"one that leads beyond the end of the log",
       "\xA0\xA2\x7F\x03xyz\0\0\xB0\xB3"s + kBinary + "a\n",
       {"\xA0\xA2\x7F\x03xyz\0\0\xB0\xB3"s, "<" + kBinary + ">", "a"}},
      {"a damaged message with a line end in it",
       "\xA0\xA2\0\x02x\r\nz\0\xB0\xB3"s + kBinary,
       {"\xA0\xA2\0\x02x"s, "z\0\xB0\xB3"s, "<" + kBinary + ">"}},
      {"one byte of a start", "\xA0\n\xA0", {"\xA0", "\xA0"}},
      {"a message cut short", kBinary.substr(0, 7), {"<" + kBinary.substr(0, 7) + ">"}},
      {"a message's header cut short", "\xA0\xA2\x01", {"<\xA0\xA2\x01>"}},
  };
  for (const auto& row : rows) {
    // Every way in which blocks can fall, down to one byte at a time.
    for (const size_t portion : {1, 2, 3, 1000}) {
      for (const size_t blockSize : {1, 3, 8, 100}) {
        EXPECT_EQ(pieces(row.log, portion, blockSize), row.pieces)
            << row.about << ", portions of " << portion << " into " << blockSize;
      }
    }
  }
}

TEST(LogReader, ALineWithoutEndIsCutAtTheLongestLine) {
  const std::string log(LogReader::kLongestLine * 2 + 10, 'x');
  const std::vector<std::string> found = pieces(log + "\nend\n", 100000, 1000);
  ASSERT_EQ(found.size(), 4U);
  EXPECT_EQ(found[0].size(), LogReader::kLongestLine);
  EXPECT_EQ(found[1].size(), LogReader::kLongestLine);
  EXPECT_EQ(found[2].size(), 10U);
  EXPECT_EQ(found[3], "end");
}

}  // namespace
}  // namespace vgps
