#include "xml/reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/places.h"
#include "xml/document.h"

namespace vgps {
namespace {

// What a text reads as, by what is written of it: the root's lines without the declaration, each
// line end as "|", each tab as "~".
std::string readAs(std::string_view text, bool lenient = false) {
  XmlDocument document;
  document.Load(text, XmlLoadMode::text, {lenient});
  std::string saved;
  EXPECT_EQ(document.saveText(saved), 1);
  std::string out;
  for (const char c : saved.substr(kXmlDeclaration.size() + 2)) {
    if (c == '\t') out += '~';
    if (c == '\n') out += '|';
    if (c != '\t' && c != '\n' && c != '\r') out += c;
  }
  return out;
}

// "\\r", "\\n", "\\t" and "\\xNN" stand for bytes that a line cannot show.
std::string bytesOf(const std::string& shown) {
  std::string bytes;
  for (size_t i = 0; i < shown.size(); ++i) {
    if (shown[i] != '\\') {
      bytes += shown[i];
      continue;
    }
    const char kind = shown[++i];
    if (kind == 'x') {
      bytes += static_cast<char>(std::stoi(shown.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      bytes += kind == 'r' ? '\r' : kind == 'n' ? '\n' : '\t';
    }
  }
  return bytes;
}

TEST(XmlReader, TextsReadAsListed) {
  std::ifstream rows(std::filesystem::path(sourceFolder()) / "tests/answers/xml_reader.txt");
  if (!rows) GTEST_SKIP() << "tests/answers/xml_reader.txt is not here";
  bool isLenient = false;
  size_t read = 0;
  for (std::string text, reads; std::getline(rows, text);) {
    if (text.starts_with('[')) isLenient = text == "[lenient]";
    if (text.empty() || text.starts_with('#') || text.starts_with('[')) continue;
    ASSERT_TRUE(std::getline(rows, reads) && reads.starts_with("  ")) << text;
    EXPECT_EQ(readAs(bytesOf(text), isLenient), bytesOf(reads.substr(2))) << text;
    ++read;
  }
  EXPECT_GT(read, 80U);
}

struct FailedRow {
  std::string_view text;
  XmlLoadStatus status;
  uint64_t line;
  uint64_t column;
};

TEST(XmlReader, WithoutAnElementTheDocumentIsAnEmptyRootAndThePlaceIsTold) {
  constexpr FailedRow kRows[] = {
      {"", XmlLoadStatus::empty, 1, 1},
      {"\xEF\xBB\xBF", XmlLoadStatus::empty, 1, 1},
      {"x", XmlLoadStatus::noElement, 1, 1},
      {"\r\n\n  x <", XmlLoadStatus::noElement, 3, 3},
      {"\r\r <", XmlLoadStatus::noElement, 3, 2},
      {"<!--1-->\r\n</a>", XmlLoadStatus::noElement, 2, 1},
      {"<?xml version=\"1.0\"?>\n\n<!-- -->\n", XmlLoadStatus::noElement, 4, 1},
      {"\n<!-- never closed <a/>", XmlLoadStatus::noElement, 2, 1},
      {"\n <![CDATA[<a/>]]>", XmlLoadStatus::noElement, 2, 11},
      {"<>", XmlLoadStatus::noElement, 1, 1},
  };
  for (const FailedRow& row : kRows) {
    for (const bool lenient : {false, true}) {
      XmlDocument document;
      const XmlLoadResult result = document.Load(row.text, XmlLoadMode::text, {lenient});
      EXPECT_EQ(result.status, row.status) << row.text;
      EXPECT_EQ(result.place.line, row.line) << row.text;
      EXPECT_EQ(lenient ? row.column : result.place.column, row.column) << row.text;
      EXPECT_EQ(document.GetRootElement().GetElementName(), "root");
      EXPECT_EQ(document.GetHeader().comments.size(), 0U);
      EXPECT_EQ(readAs(row.text, lenient), "<root/>|");
    }
  }
}

// The window through which a file is read is moved and widened while tags and texts of every length
// cross its end.
TEST(XmlReader, TheWindowShowsNowhere) {
  std::string text = "<?xml version=\"1.0\"?><!--" + std::string(70, 'c') +
                     "--><!DOCTYPE r [<!ENTITY a \">\">]><r>";
  for (size_t i = 0; i < 40; ++i) {
    text += "<e" + std::string(i % 7, 'n') + " a=\"" + std::string(i, 'v') + "\" bb = \"2\">";
    text += std::string(i * 3 % 50, 't') + " > <![CDATA[" + std::string(i, '>') + "]]>";
    text +=
        "<!--" + std::string(i * 5 % 60, '>') + "--><x/></e><?p " + std::string(i % 30, '>') + "?>";
  }
  text += "</r><!--after-->";
  for (const bool lenient : {false, true}) {
    std::string expected;
    for (const size_t window :
         {size_t{3}, size_t{4}, size_t{7}, size_t{16}, size_t{61}, size_t{5000}}) {
      XmlTree tree;
      tree.text.open();
      XmlPrologue outside;
      std::string_view rest = text;
      const XmlSource source{[](void* from, char* to, size_t size) {
                               auto& view = *static_cast<std::string_view*>(from);
                               // Hands out less than asked for, as a pipe does.
                               const size_t count = std::min({size, view.size(), size_t{5}});
                               view.copy(to, count);
                               view.remove_prefix(count);
                               return count;
                             },
                             &rest};
      tree.root = readXml(tree, source, window, {lenient}, outside);
      tree.text.seal();
      ASSERT_NE(tree.root, kNoRow);
      EXPECT_EQ(outside.comments.size(), 2U);
      EXPECT_EQ(outside.declaration, "<?xml version=\"1.0\"?>");
      XmlDocument document;
      document.SetRootElement(XmlElement(&tree, tree.root));
      std::string saved;
      ASSERT_EQ(document.saveText(saved), 1);
      if (expected.empty()) expected = saved;
      EXPECT_EQ(saved, expected) << window;
    }
    EXPECT_GT(expected.size(), text.size() / 2);
  }
}

// Neither the stack nor the time may follow what a file nests or leaves open.
TEST(XmlReader, AMillionOfAnythingStaysLinear) {
  constexpr size_t kMany = 1000 * 1000;
  const auto many = [](std::string_view piece) {
    std::string text;
    for (size_t i = 0; i < kMany; ++i) text += piece;
    return text;
  };
  for (const bool lenient : {false, true}) {
    XmlDocument document;
    ASSERT_TRUE(document.Load(many("<a>"), XmlLoadMode::text, {lenient}));
    EXPECT_EQ(document.GetRootElement().Query("? == \"a\"").size(), kMany);
    EXPECT_EQ(document.GetRootElement().GetSubtreeNum(), kMany);
    std::string text;
    EXPECT_EQ(document.saveText(text), 0) << "a terabyte of tabs";
    document.GetRootElement().RemoveAllElements();
    EXPECT_EQ(document.saveText(text), 1);
    for (const char* piece :
         {"<?x ", "<!-- ", "<!DOCTYPE [' ", "<![CDATA[ ", "<a b=\"", "<a b='", "&#",
          "<a>&#65;<![CDATA[x]]></a>", "<b>t<!--c--></b>", "<", ">", "\"", "</a>"}) {
      document.Load("<r>" + many(piece), XmlLoadMode::text, {lenient});
      EXPECT_EQ(document.GetRootElement().GetElementName(), "r") << piece;
    }
  }
}

}  // namespace
}  // namespace vgps
