// `vgps xml` on documents of its own.
#include "tests/program/file_world.h"

namespace vgps {
namespace {

namespace fs = std::filesystem;

class XmlCommand : public FileWorld {};

constexpr const char* kText =
    "<?xml version='1.1'?><!--1--><a x='0' lost=\"1&amp;\"><b>t &#233;<c/></b></z>";
constexpr const char* kSaved =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n<!--1-->\r\n"
    "<a x=\"1&amp;\">\r\n\t<b>\r\nt &#233;\r\n\t\t<c/>\r\n\t</b>\r\n</a>\r\n";

TEST_F(XmlCommand, SavesWhereItIsTold) {
  write("in.xml", kText);
  const Finished run = runProgram({"xml", path("in.xml"), "-o", path("out.xml")});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(isOneLine(run.errors) && says(run.errors, "names of")) << run.errors;
  EXPECT_EQ(read("out.xml"), kSaved);
  EXPECT_EQ(read("in.xml"), kText);
  EXPECT_EQ(runProgram({"xml", path("in.xml"), "-o", path("in.xml")}).status, 0);
  EXPECT_EQ(read("in.xml"), kSaved) << "in its own place";
}

TEST_F(XmlCommand, ForeignFilesAreReadLenientlyOrToldAbout) {
  write("gpx.xml",
        "<!DOCTYPE gpx [<!ENTITY co \"A &amp; B\"><!ENTITY who '&co;!'>]>\n"
        "<gpx><wpt\n  lat='48.5'><name>&who;</name></wpt></gpx>");
  const Finished strict = runProgram({"xml", path("gpx.xml"), "-o", path("out.xml")});
  EXPECT_EQ(strict.status, 0);
  EXPECT_TRUE(isOneLine(strict.errors) && says(strict.errors, "is not a name")) << strict.errors;
  const Finished lenient = runProgram({"xml", path("gpx.xml"), "--lenient", "-o", path("out.xml")});
  EXPECT_EQ(lenient.errors, "");
  EXPECT_TRUE(says(read("out.xml"), "\t<wpt lat=\"48.5\">\r\n")) << read("out.xml");
  EXPECT_TRUE(says(read("out.xml"), "A &amp; B!")) << read("out.xml");
  EXPECT_EQ(runProgram({"xml", path("out.xml")}).errors, "");

  std::string bomb = "<!DOCTYPE a [<!ENTITY e0 '0123456789'>";
  for (int i = 1; i < 12; ++i) {
    const std::string before = "&e" + std::to_string(i - 1) + ";";
    bomb += "<!ENTITY e" + std::to_string(i) + " '";
    for (int times = 0; times < 10; ++times) bomb += before;
    bomb += "'>";
  }
  std::string deep;
  for (int i = 0; i < 9000; ++i) deep += "<a>";
  const struct {
    std::string bytes;
    const char* says;
  } rows[] = {{bomb + "]><a>&e11;</a>", "expand without limit"},
              {std::string("\x7F"
                           "ELF\0<a/>",
                           9),
               "binary file"},
              {deep, "64 MB"}};
  for (const auto& row : rows) {
    write("bad.xml", row.bytes);
    const Finished run = runProgram({"xml", path("bad.xml"), "--lenient", "-o", path("no.xml")});
    EXPECT_EQ(run.status, 1) << row.says;
    EXPECT_TRUE(isOneLine(run.errors) && says(run.errors, row.says)) << run.errors;
    EXPECT_FALSE(folder_.has("no.xml"));
  }
}

TEST_F(XmlCommand, WritesIntoWhatIsNoFile) {
  write("in.xml", kText);
  const Finished run = runProgram({"xml", path("in.xml"), "-o", "/dev/stdout"});
  EXPECT_EQ(run.status, 0) << run.errors;
  EXPECT_EQ(run.output, kSaved);
}

TEST_F(XmlCommand, WhatIsWrongIsOneLine) {
  write("in.xml", kText);
  write("none.xml", "\r\n\n  no element <");
  const struct {
    std::vector<std::string> words;
    const char* says;
  } rows[] = {
      {{"xml", path("none.xml")}, "line 3, column 3"},
      {{"xml", path("none.xml"), "-o", path("out.xml")}, "line 3, column 3"},
      {{"xml", path("missing.xml")}, "missing.xml"},
      {{"xml", folder_.path()}, ""},
      {{"xml", path("in.xml"), "-o", path("none/out.xml")}, "none/out.xml: the folder does not"},
      {{"xml", path("in.xml"), "-o", path("in.xml/out.xml")}, "through a file"},
      {{"xml", path("in.xml"), "-o", folder_.path()}, "it is a folder"},
      {{"xml", path("in.xml"), "-o", "/dev/full"}, "/dev/full"},
      {{"xml"}, ""},
  };
  for (const auto& row : rows) {
    const Finished run = runProgram(row.words);
    EXPECT_EQ(run.status, 1) << row.words.back();
    EXPECT_EQ(run.output, "");
    EXPECT_TRUE(isOneLine(run.errors)) << run.errors;
    EXPECT_NE(run.errors.find(row.says), std::string::npos) << run.errors;
  }
  EXPECT_EQ(folder_.names().size(), 2U) << "nothing was written";
}

}  // namespace
}  // namespace vgps
