#include <gtest/gtest.h>

#include <random>

#include "tests/fakes/test_folder.h"
#include "tests/xml/shared_data.h"
#include "xml/document.h"

// Files of many origins, whole, cut and damaged. Nothing is asked of what they mean.
namespace vgps {
namespace {

std::string savedOf(XmlDocument& document) {
  std::string text;
  EXPECT_EQ(document.saveText(text), 1);
  return text;
}

bool namesAreEscaped(const XmlDocument& document) {
  for (const XmlElement element : document.GetRootElement().Query("? == \"*\"")) {
    if (element.storedName().find('&') != std::string_view::npos) return true;
    for (const XmlAttribute& attribute : element.GetVariables()) {
      if (attribute.storedName().find('&') != std::string_view::npos) return true;
    }
  }
  return false;
}

// What a document holds in memory stays in proportion to what it was read from.
void expectBounded(const XmlDocument& document, size_t size) {
  const XmlTree& tree = *document.GetRootElement().tree();
  const uint64_t held = tree.elements.size() * sizeof(XmlElementRow) +
                        tree.attributes.size() * sizeof(XmlAttributeRow) +
                        tree.wideAttributes.size() * sizeof(XmlWideAttributeRow) +
                        tree.items.size() * sizeof(XmlItemRow) + tree.text.used();
  EXPECT_LE(held, 16 * size + 1024);
}

constexpr uint64_t kLargest = 4'000'000;  // what is nested deeper is tabs only

// Names are escaped anew by each reading; everything else is written as it was.
void expectStable(std::string_view text, bool lenient, const std::string& what) {
  XmlDocument first;
  first.Load(text, XmlLoadMode::text, {lenient});
  expectBounded(first, text.size());
  if (first.savedSize() > kLargest) return;
  const std::string saved = savedOf(first);
  EXPECT_EQ(saved.size(), first.savedSize()) << what;
  XmlDocument second;
  ASSERT_TRUE(second.Load(saved, XmlLoadMode::text)) << what;
  if (namesAreEscaped(first)) return;
  EXPECT_TRUE(savedOf(second) == saved) << what;
  EXPECT_EQ(second.GetRootElement().GetSubtreeNum(), first.GetRootElement().GetSubtreeNum())
      << what;
}

class ForeignFiles : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(sharedData())) GTEST_SKIP() << sharedData() << " is not there";
  }
};

TEST_F(ForeignFiles, TheSecondSaveGivesTheBytesOfTheFirst) {
  size_t parsed = 0;
  for (const auto& file : sharedFiles({"xml", "gpx", "kml", "loc"})) {
    const std::string text = fileBytes(file.string());
    for (const bool lenient : {false, true}) {
      XmlDocument document;
      if (document.Load(text, XmlLoadMode::text, {lenient})) ++parsed;
      expectStable(text, lenient, file.filename().string());
    }
  }
  EXPECT_GT(parsed, 180U);
}

TEST_F(ForeignFiles, CutAnywhere) {
  constexpr size_t kEveryByteUpTo = 16000;
  constexpr size_t kSteps = 150;
  for (const auto& file : sharedFiles({"xml", "loc"})) {
    const std::string text = fileBytes(file.string());
    const size_t step = text.size() <= kEveryByteUpTo ? 1 : text.size() / kSteps;
    for (size_t length = 0; length < text.size(); length += step) {
      expectStable(std::string_view(text).substr(0, length), length % 2 != 0,
                   file.filename().string());
      if (HasFailure()) return;
    }
  }
}

TEST_F(ForeignFiles, DamagedAnywhere) {
  std::mt19937 random(7);
  const auto below = [&random](size_t limit) {
    return std::uniform_int_distribution<size_t>(0, limit - 1)(random);
  };
  constexpr std::string_view kPieces[] = {
      "<",    ">",   "\"", "'",  "=",           "/",  "&",  "&#", "]]>",  "<![CDATA[",
      "<!--", "-->", "<?", "?>", "<!DOCTYPE [", "</", "/>", " ",  "\r\n", "\xFF"};
  for (const auto& file : sharedFiles({"xml", "loc"})) {
    const std::string text = fileBytes(file.string());
    if (text.empty()) continue;
    for (int round = 0; round < 60; ++round) {
      std::string damaged = text.substr(0, 20000);
      for (size_t i = below(8) + 1; i > 0; --i) {
        const size_t at = below(damaged.size());
        if (below(2) == 0) damaged[at] = static_cast<char>(below(256));
        if (below(2) == 0) damaged.insert(at, kPieces[below(std::size(kPieces))]);
        if (below(3) == 0) damaged.erase(at, below(40));
        if (damaged.empty()) damaged = "x";
      }
      expectStable(damaged, round % 2 != 0, file.filename().string());
      if (HasFailure()) return;
    }
  }
}

}  // namespace
}  // namespace vgps
