// `vgps settings` on documents of its own.
#include <filesystem>

#include "app/settings/settings.h"
#include "tests/places.h"
#include "tests/program/file_world.h"

namespace vgps {
namespace {

using nlohmann::ordered_json;
namespace fs = std::filesystem;

class SettingsCommand : public FileWorld {
 protected:
  Finished settings(std::vector<std::string> words, const char* file = "vgps.xml") const {
    words.insert(words.begin(), {"settings", "--file", path(file)});
    return runProgram(words);
  }
};

TEST_F(SettingsCommand, TheListHasEverySettingInOrder) {
  write("vgps.xml",
        "<root><cfg><gps port=\"COM&amp;1\" speed=\"\"/><vgps fsf=\"7\" sxv=\"-7\" dam=\"0\" "
        "ulf=\"1\" stt=\"\xC3\xA9&#233;\xFF\"/></cfg></root>");
  const Finished run = settings({"list", "--json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.errors, "");
  EXPECT_NE(run.output.find(R"("path": "cfg\\lang")"), std::string::npos);
  const ordered_json list = ordered_json::parse(run.output, nullptr, false);
  ASSERT_EQ(list.size(), settingRows().size());
  const std::vector<std::string> members = {"path", "key", "type", "default", "value", "label"};
  for (size_t i = 0; i < list.size(); ++i) {
    EXPECT_EQ(list[i]["path"], settingRows()[i].path);
    EXPECT_EQ(list[i]["key"], settingRows()[i].key);
    std::vector<std::string> names;
    for (const auto& [name, value] : list[i].items()) names.push_back(name);
    EXPECT_EQ(names, members) << i;
    EXPECT_EQ(list[i]["value"].is_string(), list[i]["type"] == "string") << i;
    EXPECT_EQ(list[i]["value"].is_number_float(), list[i]["type"] == "float") << i;
  }
  constexpr const char* kRows[] = {
      R"({"path":"cfg\\gps","key":"port","type":"string","default":"","value":"COM&1","label":"GPS - COM Port"})",
      R"({"path":"cfg\\vgps","key":"fsf","type":"float","default":1.0,"value":7.0,"label":"VGPS - Font Factor"})",
      R"({"path":"cfg\\vgps","key":"dam","type":"flag","default":1,"value":0,"label":""})",
      R"({"path":"cfg\\vgps","key":"sxv","type":"int","default":200,"value":-7,"label":"SPEED - Max Spd Value"})",
      R"({"path":"cfg\\vgps","key":"ulf","type":"flag","default":1,"value":1,"label":"VGPS - Use Led Font"})",
      R"({"path":"cfg\\vgps","key":"stt","type":"string","default":"","value":"é&#233;�","label":"SMSTRK - Text"})",
      R"({"path":"cfg\\cc","key":"c3","type":"colour","default":16711680,"value":16711680,"label":"CLR - Success"})",
  };
  for (const char* const text : kRows) {
    const auto row = ordered_json::parse(text);
    EXPECT_NE(std::find(list.begin(), list.end(), row), list.end()) << text;
  }
}

TEST_F(SettingsCommand, WhatIsSetIsInTheFileAtOnceAndIsGot) {
  const struct {
    const char *path, *key, *value, *inFile, *got;
  } rows[] = {
      {"cfg\\vgps", "sxv", "-7", "-7", "-7"},
      {"cfg\\vgps", "swa", "+12", "12", "12"},
      {"cfg\\track", "alt", "-2147483648", "-2147483648", "-2147483648"},
      {"cfg\\vgps", "mzs", "-0.5", "-0.50", "-0.5"},
      {"cfg\\vgps", "fsf", "2.345", "2.35", "2.35"},
      {"cfg\\cc", "c4", "16777215", "16777215", "16777215"},
      {"cfg\\vgps", "stt", "-a b", "-a b", "-a b"},
      {"cfg\\vgps", "stt", "--help", "--help", "--help"},
      {"cfg\\vgps", "stt", "--", "--", "--"},
      {"cfg\\vgps", "stt", "<&\"'>", "&lt;&amp;&quot;&apos;&gt;", "<&\"'>"},
      {"cfg\\vgps", "stt", "&#233; \xE2\x82\xAC", "&#233; \xE2\x82\xAC", "&#233; \xE2\x82\xAC"},
  };
  for (const auto& row : rows) {
    const Finished set = settings({"set", row.path, row.key, row.value});
    EXPECT_EQ(set.status, 0) << row.value << set.errors;
    EXPECT_EQ(set.output + set.errors, "");
    const std::string attribute = std::string(" ") + row.key + "=\"" + row.inFile + "\"";
    EXPECT_NE(read("vgps.xml").find(attribute), std::string::npos) << attribute;
    EXPECT_EQ(settings({"get", row.path, row.key}).output, std::string(row.got) + "\n");
  }
  EXPECT_EQ(settings({"set", "cfg\\gps", "port", "COM34567890"}).errors,
            "vgps: only the first 10 characters are used\n");
  EXPECT_EQ(settings({"get", "cfg\\gps", "port"}).output, "COM3456789\n");
}

TEST_F(SettingsCommand, TheFileMayStandAnywhere) {
  const std::string file = path("vgps.xml");
  const std::vector<std::vector<std::string>> lines = {
      {"settings", "--file", file, "set", "cfg\\vgps", "sxv", "-1"},
      {"settings", "set", "--file", file, "cfg\\vgps", "sxv", "-2"},
      {"settings", "set", "cfg\\vgps", "sxv", "--file=" + file, "-3"},
      {"settings", "set", "cfg\\vgps", "sxv", "-4", "--file", file},
  };
  int value = 0;
  for (const auto& line : lines) {
    EXPECT_EQ(runProgram(line).status, 0);
    const std::string expected = std::to_string(--value) + "\n";
    EXPECT_EQ(runProgram({"settings", "get", "cfg\\vgps", "sxv", "--file", file}).output, expected);
  }
  EXPECT_NE(runProgram({"settings", "list", "--file", file}).output.find("-4"), std::string::npos);
}

TEST_F(SettingsCommand, WithoutAFileTheOneBesideTheProgramIsMeant) {
  fs::copy_file(vgpsProgram(), path("vgps"));
  const std::string command = "cd / && '" + path("vgps") + "' settings set 'cfg\\gps' port COM7";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_NE(read("vgps.xml").find("port=\"COM7\""), std::string::npos);
}

TEST_F(SettingsCommand, WhatCannotBeDoneIsOneLineAndTouchesNothing) {
  const struct {
    std::vector<std::string> words;
    const char* file;
  } rows[] = {
      {{"get", "cfg\\vgps", "none"}, "vgps.xml"},
      {{"get", "Cfg\\Other", "fzsl"}, "vgps.xml"},
      {{"set", "cfg\\none", "sxv", "1"}, "vgps.xml"},
      {{"set", "cfg\\vgps", "sxv", "5x"}, "vgps.xml"},
      {{"set", "cfg\\vgps", "sxv", ""}, "vgps.xml"},
      {{"set", "cfg\\vgps", "sxv", "2147483648"}, "vgps.xml"},
      {{"set", "cfg\\vgps", "dam", "yes"}, "vgps.xml"},
      {{"set", "cfg\\vgps", "dam", "2"}, "vgps.xml"},
      {{"set", "cfg\\vgps", "mzs", "1,5"}, "vgps.xml"},
      {{"set", "cfg\\vgps", "mzs", std::string(40, '9')}, "vgps.xml"},
      {{"set", "cfg\\cc", "c1", "-1"}, "vgps.xml"},
      {{"set", "cfg\\cc", "c1", "16777216"}, "vgps.xml"},
      {{}, "vgps.xml"},
      {{"set", "cfg\\vgps", "sxv", "1"}, "none/vgps.xml"},
  };
  write("vgps.xml", "<root a=\"1\"/>");
  for (const auto& row : rows) {
    const Finished run = settings(row.words, row.file);
    const std::string what = row.words.empty() ? "nothing" : row.words.back();
    EXPECT_EQ(run.status, 1) << what;
    EXPECT_EQ(run.output, "") << what;
    EXPECT_TRUE(isOneLine(run.errors)) << what << ": " << run.errors;
  }
  EXPECT_EQ(read("vgps.xml"), "<root a=\"1\"/>");
}

TEST_F(SettingsCommand, AFileThatCannotBeWrittenKeepsItsText) {
  ASSERT_EQ(settings({"set", "cfg\\vgps", "stt", "before"}).status, 0);
  const std::string before = read("vgps.xml");
  {
    const FileSizeLimit full(before.size());
    const Finished run = settings({"set", "cfg\\vgps", "stt", "longer than before"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(isOneLine(run.errors)) << run.errors;
    EXPECT_EQ(read("vgps.xml"), before);
    EXPECT_EQ(settings({"set", "cfg\\vgps", "stt", "short"}).status, 0) << "what fits is saved";
    EXPECT_EQ(read("vgps.xml").size(), before.size() - 1);
    EXPECT_EQ(settings({"set", "cfg\\vgps", "stt", "before"}).status, 0);
  }
  EXPECT_EQ(read("vgps.xml"), before);
  fs::permissions(path("vgps.xml"),
                  fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  const OrdinaryUser user;
  if (!user.mayRunTheProgram()) GTEST_SKIP() << "only for the owner: no other user may run vgps";
  const Finished run = settings({"set", "cfg\\vgps", "stt", "after"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(isOneLine(run.errors)) << run.errors;
  EXPECT_EQ(settings({"get", "cfg\\vgps", "stt"}).output, "before\n");
}

TEST_F(SettingsCommand, ADamagedFileIsToldAndKept) {
  write("vgps.xml", "no element in here");
  const Finished got = settings({"get", "cfg\\gps", "speed"});
  EXPECT_EQ(got.status, 0);
  EXPECT_EQ(got.output, "9600\n");
  EXPECT_TRUE(isOneLine(got.errors)) << got.errors;
  EXPECT_NE(got.errors.find("VGPS.XML is corrupted and can't be loaded!"), std::string::npos);
  EXPECT_EQ(settings({"set", "cfg\\gps", "none", "1"}).status, 1);
  EXPECT_FALSE(fs::exists(path("vgps.bad")));
  EXPECT_EQ(settings({"set", "cfg\\gps", "speed", "4800"}).status, 0);
  EXPECT_EQ(read("vgps.bad"), "no element in here");
}

TEST_F(SettingsCommand, WhatCannotBeReadIsNotCalledDamaged) {
  fs::create_directory(path("folder.xml"));
  const std::string complaint = "vgps: cannot read " + path("folder.xml") + "\n";
  for (const auto& words : std::vector<std::vector<std::string>>{
           {"list"}, {"get", "cfg\\gps", "speed"}, {"set", "cfg\\gps", "speed", "1"}}) {
    const Finished run = settings(words, "folder.xml");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, complaint);
  }
  const Finished run = runProgram({"settings", "--file", "", "list"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.errors.find("the file name must not be empty"), std::string::npos) << run.errors;
}

}  // namespace
}  // namespace vgps
