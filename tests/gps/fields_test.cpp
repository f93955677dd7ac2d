#include "gps/fields.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "gps/nmea.h"
#include "tests/fakes/gps_world.h"

namespace vgps {
namespace {

// Characters whose bits are near those of a comma, and commas in every place of words and blocks.
std::string anyText(std::mt19937& random, size_t length) {
  constexpr std::string_view kCharacters(",,,-+.l\xAC\x2B\x00\xFF 7", 13);
  std::string text;
  while (text.size() < length) text += kCharacters[random() % kCharacters.size()];
  return text;
}

TEST(Fields, AreThoseBetweenTheCommas) {
  std::mt19937 random(1);
  for (size_t i = 0; i < 4000; ++i) {
    const std::string text = anyText(random, i % 200);
    std::vector<std::string_view> all;
    splitFields(text, all);
    const Fields fields(text);
    ASSERT_EQ(fields.count(), all.size()) << text;
    ASSERT_EQ(fields.size(), std::min(all.size(), Fields::kKept)) << text;
    for (size_t k = 0; k < fields.size(); ++k) ASSERT_EQ(fields[k], all[k]) << text;
    ASSERT_EQ(fields.more(), all.size() > Fields::kKept) << text;
    if (fields.more()) {
      const std::string_view next = all[Fields::kKept];
      ASSERT_EQ(fields.rest().data(), next.data()) << text;
      ASSERT_EQ(fields.rest().data() + fields.rest().size(), text.data() + text.size()) << text;
    }
  }
}

}  // namespace
}  // namespace vgps
