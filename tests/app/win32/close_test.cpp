#include <gtest/gtest.h>

#include <cstdio>

#include "library/journal.h"
#include "library/journal_format.h"
#include "platform/win32/wide.h"
#include "tests/app/win32/drive.h"
#include "tests/app/win32/line.h"

// How the program ends, with a recording under way and without.
namespace vgps {
namespace {

class RecordingProgram : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(line.isUp());
    start();
    sendCommand(window, Command::startRecording);
    drive();
  }

  void start() {
    program = std::make_unique<Program>(L"--port COM3 --speed 115200 -log", &folder);
    window = program->window();
    ASSERT_NE(window, nullptr);
  }

  // A block of the line is logged before it is handled, and the next one is read after that.
  void handOver(const std::string& bytes) {
    for (const std::string& block : {bytes, std::string("$GPTXT,01,01,02,of no interest\r\n")}) {
      const auto before = folder.size("gps.log");
      line.write(block);
      ASSERT_TRUE(waitFor([&] { return folder.size("gps.log") >= before + block.size(); }));
    }
  }

  // Some points for the track, which are on the disk afterwards. The very first fix waits for its
  // course, which comes behind its position; the second one still has it and adds no point.
  void drive() {
    std::string bytes;
    for (int i = 0; i < 6; ++i) bytes += epochText(++epochs);
    ASSERT_NO_FATAL_FAILURE(handOver(bytes));
    for (int i = 0; i < 2; ++i) sendCommand(window, Command::pauseOrResume);  // a pause writes them
    ASSERT_TRUE(waitFor([&] { return journalPoints() == static_cast<uintmax_t>(epochs - 1); }));
  }

  // The receiver's UTC stands in a note in front of each.
  uintmax_t journalPoints() const {
    constexpr uintmax_t kPoint = kJournalPoint + kJournalRecordHead + kJournalNoteBody;
    const auto size = folder.size(kJournalName);
    return size < kJournalHeader ? 0 : (size - kJournalHeader) / kPoint;
  }

  HWND askToClose() {
    PostMessageW(window, WM_CLOSE, 0, 0);
    return program->messageBox(L"Stop Recording/Playback?");
  }

  // The offer of what was recorded.
  HWND crashAndStart() {
    program.reset();
    start();
    HWND question = nullptr;
    waitFor([&] {
      question = program->dialog();
      return question != nullptr && childWith(question, L"&Later") != nullptr;
    });
    return question;
  }

  // The text or button inside a dialog; null when none has these words.
  static HWND childWith(HWND dialog, const wchar_t* words) {
    struct Search {
      const wchar_t* words;
      HWND found;
    } search = {words, nullptr};
    const auto look = [](HWND child, LPARAM data) -> BOOL {
      auto& wanted = *reinterpret_cast<Search*>(data);
      if (windowText(child) == wanted.words) wanted.found = child;
      return wanted.found == nullptr;
    };
    EnumChildWindows(dialog, look, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }

  bool hasJournal() const { return folder.has(kJournalName); }

  const RunFolder folder;
  SerialLine line;
  std::unique_ptr<Program> program;
  HWND window = nullptr;
  int epochs = 0;
};

TEST_F(RecordingProgram, NoKeepsTheProgramAndTheRecordingGoing) {
  const HWND question = askToClose();
  ASSERT_NE(question, nullptr);
  const auto style = GetWindowLongPtrW(GetDlgItem(question, IDNO), GWL_STYLE);
  EXPECT_EQ(style & BS_TYPEMASK, BS_DEFPUSHBUTTON) << "No is what Enter presses";
  PostMessageW(window, WM_CLOSE, 0, 0);  // impatience asks no second time
  ASSERT_TRUE(press(question, IDNO));
  EXPECT_TRUE(isResponsive(window));
  Sleep(200);
  EXPECT_EQ(program->dialog(), nullptr);
  EXPECT_TRUE(hasJournal()) << "still being recorded";
  drive();
  ASSERT_NE(askToClose(), nullptr) << "and so asks again";
}

TEST_F(RecordingProgram, LoggingOffAsksNothingAndKeepsThePoints) {
  EXPECT_NE(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0);
  SendMessageW(window, WM_ENDSESSION, TRUE, 0);
  EXPECT_EQ(program->dialog(), nullptr);
  EXPECT_TRUE(hasJournal());
}

TEST_F(RecordingProgram, AfterACrashItIsOfferedAndGoesOn) {
  const HWND question = crashAndStart();
  ASSERT_NE(question, nullptr);
  EXPECT_NE(childWith(question, L"An unfinished recording was found. Points: 5."), nullptr);
  EXPECT_FALSE(IsWindowEnabled(window)) << "keys from elsewhere wait";
  const HWND button = childWith(question, L"&Continue");
  ASSERT_NE(button, nullptr);
  ASSERT_TRUE(press(question, GetDlgCtrlID(button)));
  ASSERT_NE(askToClose(), nullptr) << "it is being recorded again";
}

TEST_F(RecordingProgram, ClosingAtTheOfferKeepsThePoints) {
  const HWND question = crashAndStart();
  ASSERT_NE(question, nullptr);
  ASSERT_TRUE(press(question, IDCANCEL)) << "Escape";
  EXPECT_TRUE(hasJournal());
  program.reset();
  start();
  ASSERT_TRUE(waitFor([&] { return program->dialog() != nullptr; }));
  EXPECT_NE(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0);
  PostMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(program->exitCode(), 0);
  EXPECT_TRUE(hasJournal());
}

TEST(End, LeavesNoHandlesAndWindowsBehind) {
  const auto run = [] {
    ProgramInProcess program({"--simulate"});
    ASSERT_NE(program.window(), nullptr);
    sendCommand(program.window(), Command::disconnect);  // the buttons come
    EXPECT_EQ(program.close(), 0);
  };
  const auto handles = [] { return openHandles(GetCurrentProcessId()); };
  for (int i = 0; i < 3; ++i) run();
  const DWORD before = handles();
  const DWORD objectsBefore = drawingObjects(GetCurrentProcess());
  for (int i = 0; i < 5; ++i) run();
  std::printf("%lu handles before, %lu after five more runs; %lu drawing objects, %lu after\n",
              before, handles(), objectsBefore, drawingObjects(GetCurrentProcess()));
  EXPECT_LE(handles(), before + 4);
  EXPECT_LE(drawingObjects(GetCurrentProcess()), objectsBefore + 4);
}

TEST(End, SettingsThatCannotBeWrittenAreTold) {
  const RunFolder folder;
  Program program(L"", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  sendCommand(window, Command::logOn);  // a changed setting
  const std::wstring path = wideFromUtf8(folder / "vgps.xml");
  DeleteFileW(path.c_str());
  CreateDirectoryW(path.c_str(), nullptr);  // nothing can be written there
  PostMessageW(window, WM_CLOSE, 0, 0);
  HWND told = nullptr;
  ASSERT_TRUE(waitFor([&] { return (told = program.dialog()) != nullptr; }));
  EXPECT_TRUE(windowText(GetDlgItem(told, 0xFFFF)).starts_with(L"Cannot write the settings"));
  press(told, IDOK);
  EXPECT_EQ(program.exitCode(), 0);
}

}  // namespace
}  // namespace vgps
