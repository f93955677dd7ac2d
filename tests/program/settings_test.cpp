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
      {"cfg\\vgps", "swa", "+12", "12", "12"},
      {"cfg\\track", "alt", "-2147483648", "-2147483648", "-2147483648"},
      {"cfg\\vgps", "fsf", "2.345", "2.35", "2.35"},
      {"cfg\\cc", "c4", "16777215", "16777215", "16777215"},
      {"cfg\\vgps", "stt", "--help", "--help", "--help"},
      {"cfg\\vgps", "stt", "--", "--", "--"},
      {"cfg\\vgps", "stt", "<&\"'>", "&lt;&amp;&quot;&apos;&gt;", "<&\"'>"},
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
  const std::vector<std::string> lines[] = {{"set", "--file", file, "cfg\\vgps", "sxv", "-2"},
                                            {"set", "cfg\\vgps", "sxv", "--file=" + file, "-3"},
                                            {"set", "cfg\\vgps", "sxv", "-4", "--file", file}};
  for (std::vector<std::string> line : lines) {
    line.insert(line.begin(), "settings");
    EXPECT_EQ(runProgram(line).status, 0) << line[2];
  }
  EXPECT_EQ(settings({"get", "cfg\\vgps", "sxv"}).output, "-4\n");
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

TEST_F(SettingsCommand, TwentyAtOnceLoseNothing) {
  const auto rows = settingRows();
  std::vector<const SettingRow*> flags;
  for (const SettingRow& row : rows) {
    if (row.type == SettingType::integer && flags.size() < 20) flags.push_back(&row);
  }
  ASSERT_EQ(flags.size(), 20U);
  for (const char* const value : {"7", "8"}) {
    std::vector<std::unique_ptr<Program>> programs;
    for (const SettingRow* const row : flags) {
      programs.push_back(std::make_unique<Program>(std::vector<std::string>{
          "settings", "--file", path("vgps.xml"), "set", row->path, row->key, value}));
    }
    for (auto& program : programs) EXPECT_EQ(program->finish(), 0) << program->errors;
    for (const SettingRow* const row : flags) {
      EXPECT_EQ(settings({"get", row->path, row->key}).output, std::string(value) + "\n")
          << row->key;
    }
  }
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"vgps.xml"});
}

TEST_F(SettingsCommand, WhatCannotBeReadIsNotCalledDamaged) {
  fs::create_directory(path("folder.xml"));
  for (const auto& words : std::vector<std::vector<std::string>>{
           {"get", "cfg\\gps", "speed"}, {"set", "cfg\\gps", "speed", "1"}}) {
    const Finished run = settings(words, "folder.xml");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "vgps: cannot read " + path("folder.xml") + "\n");
  }
}

}  // namespace
}  // namespace vgps
