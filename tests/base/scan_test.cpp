#include "base/scan.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace vgps {
namespace {

// Every mark of a text is found, in order, from every place, and none is seen behind the last.
TEST(Scan, FindsWhatALoopOverTheBytesFinds) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    std::string text;
    for (size_t i = random() % 200; i > 0; --i)
      text += "ab<>\"\xFF\x80"[random() % (round % 7 + 1)];
    const size_t size = text.size();
    text += "<" + std::string(kScanSlack, '\0');
    std::vector<char*> marks;
    for (size_t i = 0; i <= size; ++i) {
      char* const p = text.data() + i;
      if (*p == '<' || *p == '>' || *p == '"') marks.push_back(p);
    }
    Marks<'<', '>', '"'> walk(text.data());
    for (char* const mark : marks) ASSERT_EQ(walk.next(), mark);
    size_t next = 0;
    for (size_t i = 0; i <= size; ++i) {
      char* const p = text.data() + i;
      while (marks[next] < p) ++next;
      ASSERT_EQ((scanTo<'<', '>', '"'>(p)), marks[next]);
      walk.seek(p);
      ASSERT_EQ(walk.next(), marks[next]);
      ASSERT_EQ((scanPast<'a', 'b'>(p)) - text.data(),
                static_cast<std::ptrdiff_t>(text.find_first_not_of("ab", i)));
    }
  }
}

}  // namespace
}  // namespace vgps
