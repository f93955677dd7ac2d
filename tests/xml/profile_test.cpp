#include "xml/profile.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/fakes/test_folder.h"
#include "tests/xml/written.h"

namespace vgps {
namespace {

TEST(XmlProfile, WhatIsMissingIsCreated) {
  XmlDocument document;
  EXPECT_EQ(XmlSetInt("cfg\\track", "speed", 5, nullptr, &document), 1);
  std::string text;
  ASSERT_EQ(document.saveText(text), 1);
  EXPECT_EQ(text,
            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n"
            "<root>\r\n\t<cfg>\r\n\t\t<track speed=\"5\"/>\r\n\t</cfg>\r\n</root>\r\n");
  EXPECT_EQ(XmlGetInt("cfg\\track", "speed", 7, nullptr, &document), 5);
  XmlSetInt("cfg\\track", "speed", 6, nullptr, &document);
  XmlSetInt("", "top", 1, nullptr, &document);
  EXPECT_EQ(written(document),
            "<root top=\"1\">\r\n\t<cfg>\r\n\t\t<track speed=\"6\"/>\r\n\t</cfg>\r\n</root>\r\n");
}

TEST(XmlProfile, NamesTellCapitalsApart) {
  XmlDocument document;
  XmlSetInt("Cfg\\Other", "a", 1, nullptr, &document);
  XmlSetInt("cfg\\other", "a", 2, nullptr, &document);
  EXPECT_EQ(XmlGetInt("Cfg\\Other", "a", 0, nullptr, &document), 1);
  EXPECT_EQ(XmlGetInt("cfg\\other", "a", 0, nullptr, &document), 2);
  EXPECT_EQ(XmlGetInt("cfg\\other", "A", 3, nullptr, &document), 3);
  EXPECT_EQ(XmlGetInt("cfg\\other\\", "a", 3, nullptr, &document), 2);
}

TEST(XmlProfile, MissingAndEmptyReadAsTheDefault) {
  XmlDocument document;
  document.Load("<r><cfg><gps port=\"\" n=\"x&amp;y\"/></cfg></r>", XmlLoadMode::text);
  EXPECT_EQ(XmlGetInt("cfg\\gps", "port", 7, nullptr, &document), 7);
  EXPECT_EQ(XmlGetInt("cfg\\none", "port", 7, nullptr, &document), 7);
  EXPECT_EQ(XmlGetInt("cfg\\gps", "none", 7, nullptr, &document), 7);
  EXPECT_EQ(XmlGetString("cfg\\gps", "n", "d", nullptr, &document), "x&y");
  EXPECT_EQ(XmlGetString("cfg\\gps", "port", "d", nullptr, &document), "d");
  EXPECT_EQ(written(document).find("none"), std::string::npos) << "reading creates nothing";
  EXPECT_EQ(XmlGetInt("cfg\\gps", "port", 7, nullptr, nullptr), 7);
  EXPECT_EQ(XmlSetInt("cfg\\gps", "port", 7, nullptr, nullptr), 0);
}

TEST(XmlProfile, AStringLongerThanTheBufferIsNotCopied) {
  XmlDocument document;
  document.Load("<r><a v=\"&lt;2345\"/></r>", XmlLoadMode::text);
  char buffer[8] = "before";
  EXPECT_EQ(XmlGetString("a", "v", "def", buffer, 4, nullptr, &document), 5U);
  EXPECT_STREQ(buffer, "before");
  EXPECT_EQ(XmlGetString("a", "v", "def", buffer, 5, nullptr, &document), 5U);
  EXPECT_STREQ(buffer, "<2345");
  EXPECT_EQ(XmlGetString("a", "w", "def", buffer, 5, nullptr, &document), 3U);
  EXPECT_STREQ(buffer, "def");
  EXPECT_EQ(XmlGetString("a", "w", "too long", buffer, 5, nullptr, &document), 8U);
  EXPECT_STREQ(buffer, "def");
  XmlSetString("a", "v", std::string(101, '9'), nullptr, &document);
  EXPECT_EQ(XmlGetInt("a", "v", 7, nullptr, &document), 7);
  EXPECT_EQ(XmlGetInt64("a", "v", 7, nullptr, &document), 7);
  XmlSetString("a", "v", std::string(28, '0') + "15", nullptr, &document);
  EXPECT_EQ(XmlGetFloat("a", "v", 7, nullptr, &document), 15);
  XmlSetString("a", "v", std::string(29, '0') + "15", nullptr, &document);
  EXPECT_EQ(XmlGetFloat("a", "v", 7, nullptr, &document), 7);
}

TEST(XmlProfile, RemovingAValueOrAnElement) {
  XmlDocument document;
  EXPECT_EQ(XmlSetString("cfg\\x", nullptr, nullptr, nullptr, &document), 1);
  EXPECT_EQ(written(document), "<root>\r\n\t<cfg/>\r\n</root>\r\n") << "created, then removed";
  XmlSetString("cfg\\x", "a", "1", nullptr, &document);
  XmlSetString("cfg\\x\\y", "b", "2", nullptr, &document);
  XmlSetString("cfg\\x", "a", nullptr, nullptr, &document);
  XmlSetString("cfg\\x", "none", nullptr, nullptr, &document);
  EXPECT_EQ(
      written(document),
      "<root>\r\n\t<cfg>\r\n\t\t<x>\r\n\t\t\t<y b=\"2\"/>\r\n\t\t</x>\r\n\t</cfg>\r\n</root>\r\n");
  XmlSetString("cfg\\x", nullptr, "ignored", nullptr, &document);
  EXPECT_EQ(written(document), "<root>\r\n\t<cfg/>\r\n</root>\r\n");
  EXPECT_EQ(XmlSetString("", nullptr, nullptr, nullptr, &document), 0) << "the root stays";
}

TEST(XmlProfile, NumbersOfEachKind) {
  XmlDocument document;
  const auto text = [&] { return XmlGetString("a", "v", "", nullptr, &document); };
  XmlSetInt("a", "v", INT32_MIN, nullptr, &document);
  EXPECT_EQ(text(), "-2147483648");
  EXPECT_EQ(XmlGetInt("a", "v", 0, nullptr, &document), INT32_MIN);
  XmlSetInt64("a", "v", INT64_MIN, nullptr, &document);
  EXPECT_EQ(XmlGetInt64("a", "v", 0, nullptr, &document), INT64_MIN);
  XmlSetUInt64("a", "v", UINT64_MAX, nullptr, &document);
  EXPECT_EQ(text(), "18446744073709551615");
  EXPECT_EQ(XmlGetUInt64("a", "v", 0, nullptr, &document), UINT64_MAX);
  EXPECT_EQ(XmlGetUInt64("a", "none", UINT64_MAX, nullptr, &document), UINT64_MAX);
  EXPECT_EQ(XmlGetInt64("a", "none", INT64_MIN, nullptr, &document), INT64_MIN);
  XmlSetFloat("a", "v", 0.01F, nullptr, &document);
  EXPECT_EQ(text(), "0.010000");
  EXPECT_EQ(XmlGetFloat("a", "v", 0, nullptr, &document), 0.0099999997764825821F);
  EXPECT_EQ(XmlGetFloat("a", "none", 1e-7F, nullptr, &document), 0)
      << "the default has six decimals too";
  XmlSetString("a", "v", "x", nullptr, &document);
  EXPECT_EQ(XmlGetInt("a", "v", 7, nullptr, &document), 0) << "there, and no number";
}

TEST(XmlProfile, BytesAsHexadecimal) {
  XmlDocument document;
  const uint8_t bytes[] = {0x00, 0x1F, 0xA0, 0xFF};
  EXPECT_EQ(XmlSetBinary("cfg\\fonts", "f", bytes, sizeof bytes, nullptr, &document), 1);
  EXPECT_EQ(XmlGetString("cfg\\fonts", "f", "", nullptr, &document), "001FA0FF");
  uint8_t back[4] = {};
  EXPECT_EQ(XmlGetBinary("cfg\\fonts", "f", back, sizeof back, nullptr, &document), sizeof back);
  EXPECT_TRUE(std::equal(std::begin(bytes), std::end(bytes), back));
  for (const char* wrong : {"", "001FA0F", "001FA0FF00", "001FA0FG", "001fa0ff", "001FA0 F"}) {
    XmlSetString("cfg\\fonts", "f", wrong, nullptr, &document);
    EXPECT_EQ(XmlGetBinary("cfg\\fonts", "f", back, sizeof back, nullptr, &document), 0U) << wrong;
    EXPECT_TRUE(std::equal(std::begin(bytes), std::end(bytes), back)) << wrong;
  }
}

TEST(XmlProfile, WithAFileNameAloneTheFileIsReadAndSavedAtOnce) {
  const TestFolder folder;
  const std::string file = folder / "settings.xml";
  EXPECT_EQ(XmlGetInt("cfg", "a", 3, file.c_str()), 3);
  EXPECT_FALSE(folder.has("settings.xml")) << "a getter writes nothing";
  EXPECT_EQ(XmlSetInt("cfg", "a", 4, file.c_str()), 1);
  EXPECT_EQ(XmlSetInt("cfg", "b", 5, file.c_str()), 1);
  EXPECT_EQ(XmlGetInt("cfg", "a", 3, file.c_str()), 4);
  XmlDocument open;
  EXPECT_EQ(XmlSetInt("cfg", "a", 9, file.c_str(), &open), 1);
  EXPECT_EQ(XmlGetInt("cfg", "a", 3, file.c_str()), 4) << "the open document was meant";
  EXPECT_EQ(XmlSetInt("cfg", "a", 4, (folder / "none/x.xml").c_str()), 0);
}

}  // namespace
}  // namespace vgps
