#include <gtest/gtest.h>
#include <windows.h>

// Behind <windows.h>, on which it builds.
#include <mmsystem.h>

#include <mutex>
#include <utility>

#include "platform/win32/wide.h"
#include "res/dialog_ids.h"
#include "tests/app/win32/drive.h"
#include "tests/app/win32/line.h"

// Which sound the program plays, from a file of the person's or its own. The system's player is
// replaced: tests make no noise.
namespace vgps {
namespace {

struct Played {
  std::string name;
  bool fromFile;
  bool operator==(const Played&) const = default;
};

struct Player {
  std::mutex mutex;
  std::vector<Played> played;
  bool refusesFiles = false;
};

Player& player() {
  static Player instance;
  return instance;
}

BOOL WINAPI playSilently(LPCWSTR name, HMODULE, DWORD flags) {
  const std::lock_guard lock(player().mutex);
  EXPECT_TRUE(flags & SND_ASYNC) << "the program would wait for its end";
  const bool fromFile = (flags & SND_FILENAME) == SND_FILENAME;
  player().played.push_back({utf8FromWide(name), fromFile});
  return !(fromFile && player().refusesFiles);
}

std::vector<Played> takePlayed() {
  const std::lock_guard lock(player().mutex);
  return std::exchange(player().played, {});
}

std::ostream& operator<<(std::ostream& out, const Played& played) {
  return out << played.name << (played.fromFile ? " from a file" : "");
}

using List = std::vector<Played>;

TEST(Sounds, AreThoseOfThePersonWhereTheyCanBePlayed) {
  const RunFolder folder;
  folder.write("tone.wav", "RIFF");
  const std::string tone = folder / "tone.wav";
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  ProgramInProcess program({}, R"(<root><cfg><gps port="COM3"/><vgps upd="20" sti="0" sound_ok=")" +
                                   tone + R"(" sound_error="missing.wav"/></cfg></root>)");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  // Connecting plays "OK", disconnecting "ERR2".
  const auto connect = [&] {
    sendCommand(window, Command::connect);
    return takePlayed();
  };
  const auto disconnect = [&] {
    sendCommand(window, Command::disconnect);
    return takePlayed();
  };
  takePlayed();
  EXPECT_EQ(connect(), (List{{tone, true}}));
  EXPECT_EQ(disconnect(), (List{{"ERR2", false}})) << "its file is missing";

  const HWND dialog = openByCommand(window, Command::sounds);
  ASSERT_NE(dialog, nullptr);
  SetWindowTextW(GetDlgItem(dialog, CONTROL_SOUND_OK), wideFromUtf8(folder.path()).c_str());
  SetWindowTextW(GetDlgItem(dialog, CONTROL_SOUND_ERROR), wideFromUtf8(tone).c_str());
  SendMessageW(GetDlgItem(dialog, CONTROL_PLAY_SOUND_ERROR), BM_CLICK, 0, 0);
  EXPECT_EQ(takePlayed(), (List{{tone, true}})) << "what is heard is what will be played";
  ASSERT_TRUE(press(dialog, IDOK));
  EXPECT_EQ(connect(), (List{{"OK", false}})) << "a folder is no sound";
  EXPECT_EQ(disconnect(), (List{{tone, true}})) << "from now on";

  player().refusesFiles = true;
  connect();
  EXPECT_EQ(disconnect(), (List{{tone, true}, {"ERR2", false}})) << "the system cannot play it";
  player().refusesFiles = false;
}

}  // namespace
}  // namespace vgps

// In place of the library's pointer to the system's function.
extern "C" {
decltype(&PlaySoundW) __imp_PlaySoundW = vgps::playSilently;
}
