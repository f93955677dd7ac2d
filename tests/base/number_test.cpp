#include "base/number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <sstream>

namespace vgps {
namespace {

TEST(Number, WholeNumbersAtTheStartOfAText) {
  const std::pair<const char*, int32_t> rows[] = {
      {"", 0},
      {"12", 12},
      {" \t-12x", -12},
      {"+7", 7},
      {"1.9", 1},
      {"x1", 0},
      {"-", 0},
      {"2147483647", 2147483647},
      {"2147483648", 2147483647},
      {"99999999999999999999", 2147483647},
      {"-2147483648", -2147483647 - 1},
      {"-99999999999", -2147483647 - 1},
      {"0x10", 0},
      {"007", 7},
  };
  for (const auto& [text, value] : rows) EXPECT_EQ(leadingInt(text), value) << text;
}

TEST(Number, DecimalsReadTheSameDoubleAsTheCLibrary) {
  std::istringstream rows(
      "0 -0 545.4 -12.7 .5 5. 123456789012345 1234567890123456789 0.1234567890123456789 1e5 1e-5 "
      "1E+5x 2.5e 2.5e+ 1e308 4.9e-324 9007199254740993 179769313486231580000000000000000 +1.5 "
      "1e400 "
      "-1e400 1e-400 0.000000000000000000000000000001 84.4*6A 3723.2475,N 00007.6543");
  for (std::string word; rows >> word;) {
    const std::string text = "  " + word;
    const double expected = std::strtod(text.c_str(), nullptr);
    EXPECT_EQ(leadingDouble(text), expected) << text;
    EXPECT_EQ(std::signbit(leadingDouble(text)), std::signbit(expected)) << text;
  }
}

TEST(Number, WordsAndHexadecimalDigitsAreNoNumbers) {
  for (const char* text : {"nan", "NAN", "inf", "-infinity", "x", "", ".", "-.", "e5", "+-1"}) {
    EXPECT_EQ(leadingDouble(text), 0) << text;
    EXPECT_FALSE(std::signbit(leadingDouble(text))) << text;
  }
  EXPECT_EQ(leadingDouble("0x1A"), 0);
  const std::string digits(100000, '7');
  EXPECT_TRUE(std::isinf(leadingDouble(digits)));
  EXPECT_EQ(leadingDouble("0." + std::string(400, '0') + "1"), 0);
}

TEST(Number, ShortWholeNumbersAreScannedWithTheirWidth) {
  struct {
    const char* text;
    int width;
    bool found;
    uint16_t value;
    const char* rest;
  } const rows[] = {
      {"123519", 2, true, 12, "3519"}, {"  12", 2, true, 12, ""}, {"-1", 2, true, 65535, ""},
      {"+5x", 2, true, 5, "x"},        {"x", 2, false, 0, "x"},   {"", 2, false, 0, ""},
      {"7", 3, true, 7, ""},           {"-", 2, false, 0, "-"},
  };
  for (const auto& row : rows) {
    std::string_view rest = row.text;
    uint16_t value = 0;
    EXPECT_EQ(scanUint16(rest, row.width, value), row.found) << row.text;
    EXPECT_EQ(value, row.value) << row.text;
    EXPECT_EQ(rest, row.rest) << row.text;
  }
}

}  // namespace
}  // namespace vgps
