#include "base/texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include "app/dialogs.h"
#include "res/finder_ids.h"
#include "tests/places.h"

// Where the words stand that a person sees.
namespace vgps {
namespace {

namespace fs = std::filesystem;

struct Literal {
  std::string where;   // "file:line"
  std::string before;  // on its line
  std::string text;
};

// How many characters a character literal has that begins there; 0 when none does.
size_t characterAt(std::string_view line, size_t at) {
  const size_t length = line.substr(at).starts_with("'\\") ? 4 : 3;
  const bool whole = line[at] == '\'' && at + length <= line.size();
  return whole && line[at + length - 1] == '\'' ? length : 0;
}

size_t endOfLiteral(std::string_view line, size_t at) {
  while (at < line.size() && line[at] != '"') at += line[at] == '\\' ? 2 : 1;
  return std::min(at, line.size());
}

// The string literals of a file, without its comments.
std::vector<Literal> literalsOf(const fs::path& path) {
  std::vector<Literal> literals;
  std::ifstream file(path);
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    const auto where = path.filename().string() + ":" + std::to_string(number);
    for (size_t at = 0; at < line.size() && line.compare(at, 2, "//") != 0; ++at) {
      at += characterAt(line, at);
      if (at >= line.size() || line[at] != '"') continue;
      const size_t end = endOfLiteral(line, at + 1);
      literals.push_back({where, line.substr(0, at), line.substr(at + 1, end - at - 1)});
      at = end;
    }
  }
  return literals;
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// "two words", each of two letters at least.
bool isSentence(std::string_view text) {
  for (size_t i = 2; i + 2 < text.size(); ++i) {
    const size_t end = text[i - 1] == ',' && i > 2 ? i - 1 : i;
    if (text[i] == ' ' && isLetter(text[end - 1]) && isLetter(text[end - 2]) &&
        isLetter(text[i + 1]) && isLetter(text[i + 2])) {
      return true;
    }
  }
  return false;
}

// A word that is handed to something that shows it.
bool isShown(const Literal& literal) {
  if (literal.text.empty() || !isLetter(literal.text[0])) return false;
  for (const char* const call : {"tell(", "tellError(", "ask(", "showNotice(", "setText(",
                                 "setTitle(", "MessageBoxW(", "SetWindowTextW(", "AppendMenuW("}) {
    if (literal.before.find(call) != std::string::npos) return true;
  }
  return false;
}

// What stands in the code beside what it does.
bool isForDevelopers(const Literal& literal) {
  return literal.before.find("static_assert") != std::string::npos ||
         literal.before.starts_with('#') || literal.text.find("\\\\") != std::string::npos;
}

std::vector<fs::path> sourcesOf(const char* room) {
  std::vector<fs::path> sources;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(fs::path(sourceFolder()) / room, error)) {
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
  size_t seen = 0;
  for (const char* const room : {"app", "display", "win32"}) {
    for (const fs::path& source : sourcesOf(room)) {
      if (tables.contains(source.filename().string())) continue;
      for (const Literal& literal : literalsOf(source)) {
        ++seen;
        if (others.contains(literal.text) || isForDevelopers(literal)) continue;
        EXPECT_FALSE(isSentence(literal.text) || isShown(literal))
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
  const std::set<std::string> noWords = {"", "BUTTON", "SysListView32", "msctls_progress32",
                                         "Segoe UI"};
  std::set<uint32_t> used;
  for (const char* const script : {"dialogs.rc", "finder.rc"}) {
    const fs::path path = fs::path(sourceFolder()) / "res" / script;
    std::ifstream file(path);
    if (!file) GTEST_SKIP() << path << " is not here";
    // The words of a layout stand below its name.
    std::vector<std::pair<std::string, uint32_t>> textsOfLine;
    uint32_t texts = 0;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
      const size_t name = line.find(" DIALOGEX");
      if (name != std::string::npos) texts = textsOfLayout(line.substr(0, name));
      textsOfLine.emplace_back(std::string(script) + ":" + std::to_string(number), texts);
    }
    for (const Literal& literal : literalsOf(path)) {
      if (noWords.contains(literal.text) || literal.before.starts_with('#')) continue;
      const auto at = std::find_if(textsOfLine.begin(), textsOfLine.end(),
                                   [&](const auto& row) { return row.first == literal.where; });
      EXPECT_FALSE(dialogText(literal.text, at->second).empty())
          << literal.where << " " << literal.text;
      for (const uint32_t text : textNumbers()) {
        const bool own = text >= at->second && text < at->second + 100;
        if (own && textOf(text) == literal.text) used.insert(text);
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
