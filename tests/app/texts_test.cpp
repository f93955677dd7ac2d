#include "base/texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "app/dialogs.h"
#include "res/finder_ids.h"

// Where the words stand that a person sees.
namespace vgps {
namespace {

namespace fs = std::filesystem;

struct Literal {
  std::string where, text, line;
};

// The string literals of a file, without its comments.
std::vector<Literal> literalsOf(const fs::path& path) {
  static const std::regex kCharacter(R"('(\\?"|\\'|\\\\)')");
  static const std::regex kComment(R"(^((?:[^"/]|"(?:[^"\\]|\\.)*"|/(?!/))*)//.*$)");
  static const std::regex kLiteral(R"re("((?:[^"\\]|\\.)*)")re");
  std::vector<Literal> literals;
  std::ifstream file(path);
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    line = std::regex_replace(std::regex_replace(line, kCharacter, "0"), kComment, "$1");
    const auto where = path.filename().string() + ":" + std::to_string(number);
    for (std::sregex_iterator at(line.begin(), line.end(), kLiteral), end; at != end; ++at) {
      literals.push_back({where, (*at)[1], line});
    }
  }
  return literals;
}

std::vector<fs::path> sourcesOf(const char* room) {
  std::vector<fs::path> sources;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(fs::path(SOURCE_DIR) / room, error)) {
    const fs::path extension = entry.path().extension();
    if (extension == ".cpp" || extension == ".h") sources.push_back(entry.path());
  }
  return sources;
}

TEST(Texts, CodeHoldsNoWordsThatAPersonSees) {
  const std::set<std::string> others = {
      // names of programs, windows, fonts and ports
      "Vexa GPS", "VGPS CLASS", "Courier New", "Liberation Sans", "DejaVu Sans", "COM",
      // lines of the raw log, whose words are those of the receiver's protocol
      "Sirf msg (%X): %u bytes", "SENS msg: ",
      // for the debugger
      R"(the screen could not be drawn\n)"};
  // The tables say in English what their rows are.
  const std::set<std::string> tables = {"commands.cpp", "settings_table.cpp", "options_table.cpp"};
  const std::regex words(R"([A-Za-z]{2,},? [A-Za-z]{2,})");
  const std::regex shown(
      R"(\b(tell|tellError|ask|showNotice|setText|setTitle|MessageBoxW|SetWindowTextW|AppendMenuW)\([^;]*"[A-Za-z])");
  const std::regex beside("static_assert|^ *#|SOFTWARE|Local");
  size_t seen = 0;
  for (const char* const room : {"app", "display", "win32"}) {
    for (const fs::path& source : sourcesOf(room)) {
      if (tables.contains(source.filename().string())) continue;
      for (const Literal& literal : literalsOf(source)) {
        ++seen;
        if (others.contains(literal.text) || std::regex_search(literal.line, beside)) continue;
        EXPECT_FALSE(std::regex_search(literal.text, words) ||
                     std::regex_search(literal.line, shown))
            << literal.where << " " << literal.text;
      }
    }
  }
  if (seen == 0) GTEST_SKIP() << "the sources are not here";
}

uint32_t textsOfLayout(const std::string& layout) {
  if (layout == "DIALOG_FINDER") return FINDER_TEXTS;
  for (const Dialog& dialog : dialogs()) {
    if (dialog.layout == layout) return dialog.texts;
  }
  return 0;
}

// A word that is not among the texts would stay English, and one that no layout has is a text that
// is translated for nothing.
TEST(Texts, EveryWordOfALayoutIsOneOfItsTexts) {
  const std::regex heading(R"(^(DIALOG_\w+) DIALOGEX.*)");
  const std::regex classes("BUTTON|SysListView32|msctls_progress32");
  std::set<uint32_t> used;
  for (const char* const script : {"dialogs.rc", "finder.rc"}) {
    const fs::path path = fs::path(SOURCE_DIR) / "res" / script;
    std::ifstream file(path);
    if (!file) GTEST_SKIP() << path << " is not here";
    uint32_t texts = 0;
    std::string line;
    std::smatch found;
    const auto literals = literalsOf(path);
    for (int number = 1; std::getline(file, line); ++number) {
      if (std::regex_match(line, found, heading)) texts = textsOfLayout(found[1]);
      if (line.starts_with("FONT") || line.starts_with("#") || line.starts_with("//")) continue;
      const auto where = std::string(script) + ":" + std::to_string(number);
      for (const Literal& literal : literals) {
        if (literal.where != where || literal.text.empty()) continue;
        if (std::regex_match(literal.text, classes)) continue;
        EXPECT_FALSE(dialogText(literal.text, texts).empty()) << where << " " << literal.text;
        for (const uint32_t text : textNumbers()) {
          if (text >= texts && text < texts + 100 && textOf(text) == literal.text)
            used.insert(text);
        }
      }
    }
  }
  for (const uint32_t text : textNumbers()) {
    if (text < 2000 || text >= FINDER_TEXTS + 100) continue;
    EXPECT_TRUE(used.contains(text)) << text << " " << textOf(text);
  }
}

TEST(Texts, ALibraryReplacesThemByNumberAndTheRestStaysEnglish) {
  setTextSource([](uint32_t number) { return number == 2003 ? "&Tempo:" : std::string(); });
  EXPECT_EQ(dialogText("&Speed:", 2000), "&Tempo:");
  EXPECT_EQ(dialogText("&Port:", 2000), "&Port:");
  EXPECT_EQ(dialogText("&Speed:", 2100), "") << "of another dialog";
  EXPECT_EQ(dialogText("Cancel", 0), "Cancel");
  setTextSource({});
  EXPECT_EQ(dialogText("&Speed:", 2000), "&Speed:");
}

}  // namespace
}  // namespace vgps
