#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>

#include "base/number.h"

namespace vgps {
namespace {

std::string printed(double value, int decimals) {
  char buffer[kLongestFixedText];
  std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
  return buffer;
}

TEST(NumberText, FixedDecimalsAreTheDigitsOfPrintf) {
  std::istringstream rows(
      "0 -0 -0.0000004 0.0000005 0.5 1.5 2.5 0.125 0.375 -0.0625 11.516666666666667 "
      "48.117300001780194 545 179.9999996 999999.9999995 4503599627370495.5 4503599627370496 "
      "9007199254740992 1e15 1e18 9223372036854.775 9.3e12 1e22 5e-324 2.2250738585072014e-308 "
      "1.7976931348623157e308 inf");
  for (std::string word; rows >> word;) {
    const double value = std::strtod(word.c_str(), nullptr);
    for (int decimals = 0; decimals <= 30; decimals += decimals < 20 ? 1 : 10) {
      EXPECT_EQ(fixedText(value, decimals), printed(value, decimals)) << value << ' ' << decimals;
      EXPECT_EQ(fixedText(-value, decimals), printed(-value, decimals));
    }
  }
}

TEST(NumberText, AnyDoubleAsPrintfAndStrtodHaveIt) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 60000; ++i) {
    // Any bits, and numbers of every size that people write.
    double value = std::bit_cast<double>(random());
    if (i % 2 == 0)
      value = std::ldexp(static_cast<double>(random() % 2000001) - 1e6,
                         static_cast<int>(random() % 50) - 40);
    if (std::isnan(value)) continue;
    const int decimals = i % 10;
    const std::string text = fixedText(value, decimals);
    ASSERT_EQ(text, printed(value, decimals));
    if (std::isinf(value)) continue;
    ASSERT_EQ(leadingDouble(text), std::strtod(text.c_str(), nullptr)) << text;
    ASSERT_EQ(leadingDouble(shortestText(value)), value);
  }
}

TEST(NumberText, WholeNumbersOf64Bits) {
  struct Row {
    const char* text;
    int64_t value;
    uint64_t unsignedValue;
  };
  constexpr Row kRows[] = {
      {"", 0, 0},
      {" -12x", -12, UINT64_MAX - 11},
      {"9223372036854775807", INT64_MAX, INT64_MAX},
      {"9223372036854775808", INT64_MAX, 9223372036854775808U},
      {"-9223372036854775808", INT64_MIN, 9223372036854775808U},
      {"-9223372036854775809", INT64_MIN, 9223372036854775807U},
      {"18446744073709551615", INT64_MAX, UINT64_MAX},
      {"18446744073709551616", INT64_MAX, UINT64_MAX},
      {"99999999999999999999999", INT64_MAX, UINT64_MAX},
      {"x", 0, 0},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(leadingInt64(row.text), row.value) << row.text;
    EXPECT_EQ(leadingUint64(row.text), row.unsignedValue) << row.text;
  }
  EXPECT_EQ(decimalText(INT64_MIN), "-9223372036854775808");
  EXPECT_EQ(decimalText(UINT64_MAX), "18446744073709551615");
}

}  // namespace
}  // namespace vgps
