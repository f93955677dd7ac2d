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

// The numbers of the controls by their names.
std::map<std::string, int> controlNumbers() {
  std::map<std::string, int> numbers;
  std::ifstream file(std::filesystem::path(sourceFolder()) / "res/dialog_ids.h");
  for (std::string word, name; file >> word;) {
    if (word == "#define" && file >> name) file >> numbers[name];
  }
  return numbers;
}

// The words that a person reads at a control: its own or, where it has none, the label before it.
// A group box stands for its radio buttons.
using Labels = std::map<int, std::string>;

std::map<std::string, Labels> labelsOfLayouts() {
  const std::map<std::string, int> numbers = controlNumbers();
  std::map<std::string, Labels> layouts;
  std::string layout, label, group, kind;
  std::ifstream file(std::filesystem::path(sourceFolder()) / "res/dialogs.rc");
  for (std::string line; std::getline(file, line);) {
    if (const size_t name = line.find(" DIALOGEX"); name != std::string::npos) {
      layout = line.substr(0, name);
    }
    std::istringstream(line) >> kind;
    const std::vector<std::string> quoted = quotedIn(line);
    const std::string own = quoted.empty() ? std::string() : quoted[0];
    if (kind == "LTEXT" && !own.empty()) label = own;
    if (kind == "GROUPBOX") group = own;
    const size_t begin = line.find("CONTROL_");
    if (kind == "LTEXT" || begin == std::string::npos) continue;
    const int number = numbers.at(line.substr(begin, line.find(',', begin) - begin));
    layouts[layout][number] = own.empty() ? label : own;
    if (kind == "AUTORADIOBUTTON") layouts[layout][-number] = group;
  }
  return layouts;
}

// A front end without layouts shows the labels of the rows.
TEST(Texts, RowsHaveTheLabelsOfTheirLayouts) {
  if (!std::filesystem::exists(std::filesystem::path(sourceFolder()) / "res")) GTEST_SKIP();
  const std::map<std::string, Labels> layouts = labelsOfLayouts();
  for (const Dialog& dialog : dialogs()) {
    SCOPED_TRACE(dialog.layout);
    const Labels& labels = layouts.at(dialog.layout);
    const auto expectLabel = [&](int control, Text label) {
      ASSERT_TRUE(labels.contains(control)) << control;
      EXPECT_EQ(textOf(label), labels.at(control)) << control;
    };
    for (const DialogField& field : dialog.fields) {
      const bool isRadio = field.kind == FieldKind::radio;
      const uint16_t labelled = field.switchControl != 0 ? field.switchControl : field.control;
      expectLabel(isRadio ? -labelled : labelled, field.label);
      if (!isRadio) continue;
      for (const DialogChoice& choice : field.choices) expectLabel(choice.control, choice.text);
    }
    for (const DialogAction& action : dialog.actions) expectLabel(action.control, action.label);
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
