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
  write("old.xml", std::string(1000, 'o'));
  const Finished run = runProgram({"xml", path("in.xml"), "-o", path("out.xml")});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.errors, "");
  EXPECT_EQ(read("out.xml"), kSaved);
  EXPECT_EQ(read("in.xml"), kText);
  EXPECT_EQ(runProgram({"xml", "-o", path("old.xml"), path("in.xml")}).status, 0);
  EXPECT_EQ(read("old.xml"), kSaved) << "nothing stays of what was longer";
  EXPECT_EQ(runProgram({"xml", path("in.xml"), "-o", path("in.xml")}).status, 0);
  EXPECT_EQ(read("in.xml"), kSaved) << "in its own place";
}

TEST_F(XmlCommand, WritesIntoWhatIsNoFile) {
  write("in.xml", kText);
  const Finished run = runProgram({"xml", path("in.xml"), "-o", "/dev/stdout"});
  EXPECT_EQ(run.status, 0) << run.errors;
  EXPECT_EQ(run.output, kSaved);
}

TEST_F(XmlCommand, OnlyChecksWithoutAPlaceToSave) {
  write("in.xml", kText);
  const fs::file_time_type written = fs::last_write_time(path("in.xml"));
  const Finished run = runProgram({"xml", path("in.xml")});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.errors, "");
  EXPECT_EQ(read("in.xml"), kText);
  EXPECT_EQ(fs::last_write_time(path("in.xml")), written);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 1) << "no other file";
}

TEST_F(XmlCommand, TellsWhereNothingCouldBeParsed) {
  const struct {
    const char *text, *place;
  } rows[] = {{"", "line 1, column 1"},
              {"x", "line 1, column 1"},
              {"\r\n\n  no element <", "line 3, column 3"},
              {"<?xml version=\"1.0\"?>\n<!-- never closed <a/>", "line 2, column 1"}};
  for (const auto& row : rows) {
    write("in.xml", row.text);
    for (const bool saving : {false, true}) {
      std::vector<std::string> words = {"xml", path("in.xml")};
      if (saving) words.insert(words.end(), {"-o", path("out.xml")});
      const Finished run = runProgram(words);
      EXPECT_EQ(run.status, 1) << row.text;
      EXPECT_EQ(run.output, "");
      EXPECT_TRUE(isOneLine(run.errors)) << run.errors;
      EXPECT_NE(run.errors.find(row.place), std::string::npos) << run.errors;
    }
    EXPECT_FALSE(fs::exists(path("out.xml")));
  }
}

TEST_F(XmlCommand, WhatCannotBeReadOrWrittenIsOneLine) {
  write("in.xml", kText);
  const std::vector<std::string> lines[] = {
      {"xml", path("none.xml")},
      {"xml", folder_.path()},
      {"xml", path("in.xml"), "-o", path("none/out.xml")},
      {"xml", path("in.xml"), "-o", folder_.path()},
      {"xml", path("in.xml"), "-o", "/dev/full"},
      {"xml"},
  };
  for (const auto& line : lines) {
    const Finished run = runProgram(line);
    EXPECT_EQ(run.status, 1) << line.back();
    EXPECT_TRUE(isOneLine(run.errors)) << run.errors;
  }
  write("out.xml", "<old/>");
  const FileSizeLimit full(50);
  EXPECT_EQ(runProgram({"xml", path("in.xml"), "-o", path("out.xml")}).status, 1);
  EXPECT_EQ(read("out.xml"), "<old/>");
}

}  // namespace
}  // namespace vgps
