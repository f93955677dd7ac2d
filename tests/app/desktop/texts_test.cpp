#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "app/desktop/dialogs.h"
#include "tests/places.h"

namespace vgps {
namespace {

Text textsOfLayout(const std::string& layout) {
  if (layout == "DIALOG_FINDER") return Text::finderDialog;
  for (const Dialog& dialog : dialogs()) {
    if (dialog.layout == layout) return dialog.texts;
  }
  return Text{};
}

// What stands in quotation marks in a line of a resource script.
std::vector<std::string> quotedIn(const std::string& line) {
  std::vector<std::string> quoted;
  if (line.starts_with("#")) return quoted;
  for (size_t begin = line.find('"'); begin != std::string::npos;) {
    const size_t end = line.find('"', begin + 1);
    quoted.push_back(line.substr(begin + 1, end - begin - 1));
    begin = line.find('"', end + 1);
  }
  return quoted;
}

// A word that is not among the texts would stay English, and one that no layout has is a text that
// is translated for nothing.
TEST(Texts, EveryWordOfALayoutIsOneOfItsTexts) {
  const std::set<std::string> noWords = {"", "BUTTON", "SysListView32", "msctls_progress32",
                                         "Segoe UI"};
  std::set<Text> used;
  for (const char* const script : {"dialogs.rc", "finder.rc"}) {
    std::ifstream file(std::filesystem::path(sourceFolder()) / "res" / script);
    if (!file) GTEST_SKIP() << script << " is not here";
    // The words of a layout stand below its name.
    Text texts{};
    for (std::string line; std::getline(file, line);) {
      const size_t name = line.find(" DIALOGEX");
      if (name != std::string::npos) texts = textsOfLayout(line.substr(0, name));
      for (const std::string& word : quotedIn(line)) {
        if (noWords.contains(word)) continue;
        EXPECT_FALSE(dialogText(word, texts).empty()) << script << ": " << word;
        for (uint32_t i = 0; i < 100; ++i) {
          if (textOf(texts + i) == word) used.insert(texts + i);
        }
      }
    }
  }
  for (const Text text : allTexts()) {
    if (text < Text::gpsDialog || text >= Text::finderDialog + 100) continue;
    EXPECT_TRUE(used.contains(text)) << textOf(text);
  }
}

TEST(Texts, ALibraryReplacesThemByNumberAndTheRestStaysEnglish) {
  setTextSource([](uint32_t number) { return number == 2003 ? "&Tempo:" : std::string(); });
  EXPECT_EQ(dialogText("&Baud rate:", Text::gpsDialog), "&Tempo:");
  EXPECT_EQ(dialogText("&Port:", Text::gpsDialog), "&Port:");
  EXPECT_EQ(dialogText("&Baud rate:", Text::mapDialog), "") << "of another dialog";
  EXPECT_EQ(dialogText("Cancel", Text{}), "Cancel");
  setTextSource({});
  EXPECT_EQ(dialogText("&Baud rate:", Text::gpsDialog), "&Baud rate:");
}

}  // namespace
}  // namespace vgps
