#include "base/text.h"

#include <gtest/gtest.h>

namespace vgps {
namespace {

TEST(Text, Utf8AndUtf16ThereAndBack) {
  const std::pair<std::string, std::u16string> rows[] = {
      {"", u""},
      {"COM3", u"COM3"},
      {"\xC3\xA9", u"\u00e9"},
      {"\xE2\x82\xAC", u"\u20ac"},
      {"\xF0\x9F\x9B\xB0", u"\U0001F6F0"},
      {std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
  };
  for (const auto& [utf8, utf16] : rows) {
    EXPECT_EQ(utf16FromUtf8(utf8), utf16);
    EXPECT_EQ(utf8FromUtf16(utf16), utf8);
    EXPECT_EQ(validUtf8(utf8), utf8);
  }
}

TEST(Text, NoiseBecomesReplacementCharacters) {
  const std::pair<std::string, std::u16string> rows[] = {
      {"a\xFF"
       "b",
       u"a\uFFFDb"},
      {"\xC3", u"\uFFFD"},                      // cut short
      {"\xC0\x80", u"\uFFFD\uFFFD"},            // overlong
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},  // a surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xE2\x82"
       "A",
       u"\uFFFD\uFFFD"
       u"A"},
  };
  for (const auto& [utf8, utf16] : rows) EXPECT_EQ(utf16FromUtf8(utf8), utf16);
  const char16_t lone[] = {u'a', 0xD800, u'b', 0xDC00};
  EXPECT_EQ(utf8FromUtf16({lone, 4}),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
}

TEST(Text, CutsBetweenCharacters) {
  EXPECT_EQ(firstUtf16Units("abc", 2), "ab");
  EXPECT_EQ(firstUtf16Units("a\xC3\xA9z", 2), "a\xC3\xA9");
  EXPECT_EQ(firstUtf16Units("\xF0\x9F\x9B\xB0z", 1), "");
  EXPECT_EQ(firstUtf16Units("\xF0\x9F\x9B\xB0z", 2), "\xF0\x9F\x9B\xB0");
  EXPECT_EQ(firstUtf16Units("ab", 9), "ab");
}

}  // namespace
}  // namespace vgps
