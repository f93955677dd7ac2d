// Commands as a user types them, with their complete output: each file in tests/answers/commands is
// one session in a folder of its own. "! " marks lines on standard error; brackets show the exit
// status of a failed command. tools/renew_answers.sh renews the output.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/fakes/test_folder.h"
#include "tests/places.h"

namespace vgps {
namespace {

namespace fs = std::filesystem;

std::string linesAfter(const std::string& mark, const std::string& text) {
  std::string marked;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) marked += mark + line + '\n';
  return marked;
}

// The output of a command run in the folder; its output file is kept outside that folder.
std::string answerTo(const std::string& typed, const TestFolder& folder) {
  const TestFolder outside;
  const std::string printed = outside / "printed", complaints = outside / "complaints";
  const int status = std::system(("cd '" + folder.path() + "' && {\n" + typed + "\n} >'" + printed +
                                  "' 2>'" + complaints + "'")
                                     .c_str());
  std::string answer = linesAfter("", fileBytes(printed)) + linesAfter("! ", fileBytes(complaints));
  if (status != 0) answer += "[" + std::to_string(WEXITSTATUS(status)) + "]\n";
  return answer;
}

TEST(Commands, AnswerAsInTheirSessions) {
  const fs::path tests = fs::path(sourceFolder()) / "tests";
  const std::string program = fs::path(vgpsProgram()).parent_path().string();
  const std::string helpers = (tests / "program/bin").string();
  setenv("PATH", (program + ":" + helpers + ":" + std::getenv("PATH")).c_str(), 1);
  setenv("LOGS", (tests / "logs").c_str(), 1);
  setenv("LC_ALL", "C", 1);
  size_t commands = 0;
  for (const auto& entry : fs::directory_iterator(tests / "answers/commands")) {
    const TestFolder folder;
    const std::string expected = fileBytes(entry.path());
    std::string session;
    std::istringstream lines(expected);
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("# ") || line.empty()) session += line + '\n';
      if (!line.starts_with("$ ")) continue;
      session += line + '\n' + answerTo(line.substr(2), folder);
      ++commands;
    }
    EXPECT_EQ(session, expected) << entry.path();
    if (std::getenv("VEXA_RENEW_ANSWERS") != nullptr) putFile(entry.path(), session);
  }
  EXPECT_GT(commands, 100U);
}

}  // namespace
}  // namespace vgps
