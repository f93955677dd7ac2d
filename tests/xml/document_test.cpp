#include "xml/document.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "tests/fakes/test_folder.h"
#include "tests/xml/shared_data.h"

namespace vgps {
namespace {

class XmlFile : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return folder_ / name; }
  void write(const std::string& name, std::string_view text) const { folder_.write(name, text); }

  const TestFolder folder_;
};

constexpr std::string_view kEmptyDocument =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n<root/>\r\n";

TEST_F(XmlFile, AMissingFileIsAnEmptyRootThatSavesAsAValidFile) {
  XmlDocument document;
  EXPECT_EQ(document.Load(path("none.xml")).status, XmlLoadStatus::noFile);
  EXPECT_EQ(document.fileName(), path("none.xml"));
  EXPECT_EQ(document.Save(), 1);
  EXPECT_EQ(fileBytes(path("none.xml")), kEmptyDocument);
  EXPECT_EQ(document.savedSize(), kEmptyDocument.size());
}

TEST_F(XmlFile, SavingWritesItsOwnDeclarationAndTheCommentsAroundTheRoot) {
  write("a.xml", "<?xml version='1.1' encoding='x'?><!--1--><!--2--><r/><!--3-->");
  XmlDocument document;
  ASSERT_TRUE(document.Load(path("a.xml")));
  EXPECT_EQ(document.GetHeader().text, "<?xml version='1.1' encoding='x'?>");
  ASSERT_EQ(document.GetHeader().comments.size(), 3U);
  EXPECT_EQ(document.GetHeader().comments[2].position, 1);
  EXPECT_EQ(document.Save(), 1);
  EXPECT_EQ(fileBytes(path("a.xml")),
            std::string(kXmlDeclaration) + "\r\n<!--1-->\r\n<!--2-->\r\n<r/>\r\n<!--3-->\r\n");
  EXPECT_EQ(document.GetHeader().text, kXmlDeclaration);
}

TEST_F(XmlFile, SavingNeedsANameAndAModeThatWrites) {
  XmlDocument document;
  EXPECT_EQ(document.Save(), 0);
  EXPECT_EQ(document.Save(path("a.xml"), XmlSaveMode::nothing), 0);
  EXPECT_EQ(document.Save(path("a.xml"), XmlSaveMode::text), 0);
  EXPECT_FALSE(std::filesystem::exists(path("a.xml")));
  EXPECT_EQ(document.Save(path("a.xml")), 1);
  EXPECT_EQ(document.Save(), 0) << "the name of a save is not remembered";
  document.setFileName(path("b.xml"));
  EXPECT_EQ(document.Save(), 1);
  EXPECT_EQ(fileBytes(path("b.xml")), kEmptyDocument);
}

TEST_F(XmlFile, AFileIsOverwrittenInPlace) {
  write("a.xml", std::string(5000, 'o'));
  std::filesystem::create_hard_link(path("a.xml"), path("same.xml"));
  XmlDocument document;
  EXPECT_EQ(document.Save(path("a.xml")), 1);
  EXPECT_EQ(fileBytes(path("same.xml")), kEmptyDocument) << "no other file took its name";
  document.GetRootElement().SetText(std::string(300000, 'n'));
  EXPECT_EQ(document.Save(path("a.xml")), 1);
  std::string text;
  ASSERT_EQ(document.saveText(text), 1);
  EXPECT_TRUE(fileBytes(path("same.xml")) == text);
  EXPECT_EQ(folder_.names().size(), 2U);
}

TEST_F(XmlFile, Utf16NamesAndFiles) {
  const std::u16string name = utf16FromUtf8(folder_.path() + "/") + u"gr\u00FC\u00DFe \u20AC.xml";
  XmlDocument document;
  EXPECT_EQ(document.Load(name).status, XmlLoadStatus::noFile);
  EXPECT_TRUE(document.fileNameIsUtf16());
  document.GetRootElement().AddVariable("v", "\xC3\xA9\xF0\x9F\x98\x80<");
  EXPECT_EQ(document.Save(), 1);
  EXPECT_EQ(document.Save(path("wide.xml"), XmlSaveMode::utf16), 1);
  const std::string wide = fileBytes(path("wide.xml"));
  const std::u16string text =
      u"\uFEFF<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\" ?>\r\n"
      u"<root v=\"\u00E9\U0001F600&lt;\"/>\r\n";
  std::string expected;
  for (const char16_t unit : text) {
    expected += static_cast<char>(unit & 0xFF);
    expected += static_cast<char>(unit >> 8);
  }
  EXPECT_EQ(wide, expected);
  for (const std::string& file : {utf8FromUtf16(name), path("wide.xml")}) {
    XmlDocument again;
    ASSERT_TRUE(again.Load(file)) << file;
    EXPECT_EQ(again.GetRootElement().FindAttribute("v").GetValue(), "\xC3\xA9\xF0\x9F\x98\x80<");
  }
}

TEST_F(XmlFile, ByteOrderMarksAreRecognized) {
  // Long enough that pieces of the file end within units and pairs.
  std::string value;
  for (int i = 0; i < 60000; ++i) value += i % 3 == 0 ? "\xF0\x9F\x98\x80" : "x";
  const std::string text = "<r v=\"" + value + "\">\xE2\x82\xAC</r>";
  std::string little = "\xFF\xFE";
  std::string big = "\xFE\xFF";
  for (const char16_t unit : utf16FromUtf8(text)) {
    little += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    big += {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)};
  }
  for (const std::string& form : {"\xEF\xBB\xBF" + text, little, big, little + "x"}) {
    write("a.xml", form);
    XmlDocument document;
    ASSERT_TRUE(document.Load(path("a.xml")));
    EXPECT_TRUE(document.GetRootElement().FindAttribute("v").GetValue() == value);
    EXPECT_EQ(document.GetRootElement().GetText(), "\xE2\x82\xAC");
    ASSERT_TRUE(document.Load(form, XmlLoadMode::text));
    EXPECT_EQ(document.GetRootElement().GetText(), "\xE2\x82\xAC");
  }
}

TEST_F(XmlFile, WhatTheSystemRefusesIsTold) {
  XmlDocument document;
  EXPECT_EQ(document.Save(path("none/a.xml")), 0);
  EXPECT_EQ(document.Save(folder_.path()), 0) << "a folder in the file's place";
  EXPECT_FALSE(document.Load(folder_.path()));
  EXPECT_NE(document.Load(folder_.path()).status, XmlLoadStatus::noElement);
}

// Files that fail when told to.
struct Faults {
  size_t writable = SIZE_MAX;
  bool closes = true;
  bool opens = true;
  uint64_t disk = UINT64_MAX;
  uint64_t memory = UINT64_MAX;
  size_t readsBeforeEnd = SIZE_MAX;
  std::string shrinks;  // cut to nothing behind the first read
  size_t overwritten = 0;
};
Faults faults;

const XmlFiles kFaultyFiles = {
    [](const std::string& file, XmlFiles::Access access) -> void* {
      if (access == XmlFiles::Access::overwrite) ++faults.overwritten;
      return faults.opens ? systemFiles().open(file, access) : nullptr;
    },
    [](void* file, char* to, size_t size) -> size_t {
      if (faults.readsBeforeEnd == 0) return 0;
      --faults.readsBeforeEnd;
      const size_t got = systemFiles().read(file, to, size);
      if (!faults.shrinks.empty()) std::filesystem::resize_file(faults.shrinks, 0);
      return got;
    },
    [](void* file, const char* from, size_t size) {
      return systemFiles().write(file, from, std::min(size, faults.writable));
    },
    [](void* file) { return systemFiles().close(file) && faults.closes; },
    [](const std::string&) { return faults.disk; },
    [] { return faults.memory; }};

TEST_F(XmlFile, AFullDiskOrMemoryFailsTheSaveAndLeavesTheDocument) {
  struct Row {
    const char* what;
    Faults faults;
    bool touched;  // the file was opened for writing
  };
  Row rows[] = {{"opens", {}, true},
                {"short", {}, true},
                {"close", {}, true},
                {"disk", {}, false},
                {"memory", {}, false}};
  rows[0].faults.opens = false;
  rows[1].faults.writable = 60;
  rows[2].faults.closes = false;
  rows[3].faults.disk = 90;
  rows[4].faults.memory = 2'000'000;
  XmlDocument document(kFaultyFiles);
  const std::string kept(3'000'000, 'x');
  document.GetRootElement().AddElement("kept").SetText(kept);
  const std::string old = "<old/>";
  for (const Row& row : rows) {
    write("a.xml", old);
    faults = row.faults;
    EXPECT_EQ(document.Save(path("a.xml")), 0) << row.what;
    EXPECT_EQ(faults.overwritten, row.touched ? 1U : 0U) << row.what;
    EXPECT_EQ(fileBytes(path("a.xml")) == old, !row.touched || !row.faults.opens) << row.what;
    EXPECT_TRUE(document.GetRootElement().FindElement("kept").GetText() == kept);
  }
  faults = {};
  faults.disk = document.savedSize();
  EXPECT_EQ(document.Save(path("a.xml")), 1);
  EXPECT_EQ(std::filesystem::file_size(path("a.xml")), document.savedSize());
}

TEST_F(XmlFile, AFileThatShrinksOrFailsWhileItIsRead) {
  std::string text = "<r>";
  for (int i = 0; i < 40000; ++i) text += "<e n=\"" + std::to_string(i) + "\"/>";
  write("a.xml", text + "</r>");
  XmlDocument document(kFaultyFiles);
  faults = {};
  faults.shrinks = path("a.xml");
  EXPECT_TRUE(document.Load(path("a.xml"))) << "what was read before is the file";
  const size_t read = document.GetRootElement().GetChildrenNum();
  EXPECT_GT(read, 1000U);
  EXPECT_LT(read, 40000U);
  write("a.xml", text + "</r>");
  faults = {};
  faults.closes = false;
  faults.readsBeforeEnd = 1;
  EXPECT_EQ(document.Load(path("a.xml")).status, XmlLoadStatus::unreadable);
  EXPECT_EQ(document.GetRootElement().GetElementName(), "root");
  EXPECT_EQ(document.fileName(), path("a.xml"));
}

}  // namespace
}  // namespace vgps
