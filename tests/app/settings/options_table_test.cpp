#include "app/settings/options_table.h"

#include <gtest/gtest.h>

#include "tests/fakes/test_folder.h"

namespace vgps {
namespace {

TEST(OptionsTable, RowsAndChoices) {
  ASSERT_EQ(optionRows().size(), 105U);
  size_t separators = 0;
  for (const OptionRow& row : optionRows()) {
    SCOPED_TRACE(row.label);
    if (row.isSeparator()) {
      ++separators;
      EXPECT_STREQ(row.path, "");
      EXPECT_TRUE(choicesOf(row).empty());
    } else {
      EXPECT_NE(findSetting(row.path, row.key), nullptr);
      EXPECT_STREQ(optionLabel(row.path, row.key), row.label);  // no key twice
    }
  }
  EXPECT_EQ(separators, 15U);
  const std::vector<std::string_view> ports = choicesOf(optionRows()[0]);
  ASSERT_EQ(ports.size(), 21U);
  EXPECT_EQ(ports.front(), "COM1");
  EXPECT_EQ(ports[19], "COM20");
  EXPECT_EQ(ports.back(), "");
  EXPECT_EQ(choicesOf(optionRows()[102]), (std::vector<std::string_view>{"0", "1", "2"}));
  EXPECT_TRUE(choicesOf(optionRows()[14]).empty());
}

TEST(OptionsTable, SeparatorsAreNeverWritten) {
  const TestFolder folder;
  ConfigStore store;
  ASSERT_TRUE(store.open(folder / "vgps.xml"));
  for (const OptionRow& row : optionRows()) {
    EXPECT_EQ(setOption(store, row, "typed <here>"), !row.isSeparator());
    EXPECT_EQ(optionText(store, row), row.isSeparator() ? "" : "typed <here>");
  }
  ASSERT_TRUE(store.save());
  EXPECT_EQ(folder.read("vgps.xml").find('*'), std::string::npos);
  EXPECT_EQ(loadSettings(store).fontFactor, 1.0F);  // only the loader corrects
}

}  // namespace
}  // namespace vgps
