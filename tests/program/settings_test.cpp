// Several `vgps settings` at the same time.
#include <memory>

#include "app/settings/settings.h"
#include "tests/program/file_world.h"

namespace vgps {
namespace {

class SettingsCommand : public FileWorld {};

TEST_F(SettingsCommand, TwentyAtOnceLoseNothing) {
  std::vector<const SettingRow*> numbers;
  for (const SettingRow& row : settingRows()) {
    if (row.type == SettingType::integer && numbers.size() < 20) numbers.push_back(&row);
  }
  ASSERT_EQ(numbers.size(), 20U);
  const std::vector<std::string> command = {"settings", "--file", path("vgps.xml")};
  const auto with = [&](std::vector<std::string> words) {
    words.insert(words.begin(), command.begin(), command.end());
    return words;
  };
  for (const char* const value : {"7", "8"}) {
    std::vector<std::unique_ptr<Program>> programs;
    for (const SettingRow* const row : numbers) {
      programs.push_back(std::make_unique<Program>(with({"set", row->path, row->key, value})));
    }
    for (auto& program : programs) EXPECT_EQ(program->finish(), 0) << program->errors;
    for (const SettingRow* const row : numbers) {
      EXPECT_EQ(runProgram(with({"get", row->path, row->key})).output, std::string(value) + "\n")
          << row->key;
    }
  }
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"vgps.xml"});
}

}  // namespace
}  // namespace vgps
