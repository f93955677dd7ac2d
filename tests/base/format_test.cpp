#include "base/format.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace vgps {
namespace {

template <class... Arguments>
void expectAsPrintf(const char* format, Arguments... arguments) {
  char expected[200];
  std::snprintf(expected, sizeof expected, format, arguments...);
  EXPECT_EQ(formatText(format, arguments...), expected) << format;
}

TEST(Format, IsWhatPrintfMakesOfIt) {
  expectAsPrintf("%04u-%02u-%02uT%02u:%02u:%02uZ", 2009U, 3U, 23U, 9U, 0U, 59U);
  expectAsPrintf("%f,%f,%f", 11.516667, -48.1173, 545.0);
  expectAsPrintf("%.7f|%10.2f|%-10.1f|%+.0f|%08.2f|% f", 1.5, -2.345, 3.26, 4.0, -5.5, 6.0);
  expectAsPrintf("%d|%i|%5d|%-5d|%05d|%+d|% d|%.3d|%*d", -7, 7, -42, 42, -42, 7, 7, 7, 6, 1);
  expectAsPrintf("%u|%x|%X|%04X", -1, 255, 255, 171);
  expectAsPrintf("%hu|%ld|%lld|%zu", static_cast<unsigned short>(65535), -3L, -4LL, sizeof(int));
  expectAsPrintf("%s|%5s|%-5s|%.2s|%%|%c", "abc", "ab", "ab", "abcdef", 'x');
}

TEST(Format, TakesOurOwnTypesAndForgivesMistakes) {
  EXPECT_EQ(formatText("<t n=\"%s\" /", std::string("a b")), "<t n=\"a b\" /");
  EXPECT_EQ(formatText("%I64i %I64u", int64_t{-5}, uint64_t{5}), "-5 5");
  EXPECT_EQ(formatText("%s %s %d", 12, 1.5, "7"), "12 1.5 7");
  EXPECT_EQ(formatText("%s|%d|", "a"), "a|0|") << "an argument too few";
  EXPECT_EQ(formatText("%y %", 1), "%y %");
  EXPECT_EQ(formatText("%f", 1e300).size(), 308U);
}

}  // namespace
}  // namespace vgps
