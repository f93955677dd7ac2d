#pragma once

#include <algorithm>
#include <atomic>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "app/desktop/desktop.h"
#include "app/session/direct_ui_thread.h"
#include "app/session/on_line.h"
#include "tests/fakes/fake_clock.h"
#include "tests/fakes/fake_serial_port.h"

namespace vgps {

class FakeSounds : public Sounds {
 public:
  void play(const char* name) override { played.emplace_back(name); }
  std::vector<std::string> played;
};

class FakeWindow : public DesktopWindow {
 public:
  void repaint() override {
    ++repaints;
    if (onRepaint) onRepaint();
  }
  void setTitle(std::string_view text) override { title = text; }
  void tellError(std::string_view text) override { errors.emplace_back(text); }
  void tell(std::string_view text) override { told.emplace_back(text); }
  bool ask(std::string_view question) override {
    questions.emplace_back(question);
    return onAsk ? onAsk() : answer;
  }
  size_t choose(std::string_view question, std::span<const std::string_view> answers,
                size_t) override {
    questions.emplace_back(question);
    offered.assign(answers.begin(), answers.end());
    const auto found = std::find(offered.begin(), offered.end(), wanted);
    return found != offered.end() ? static_cast<size_t>(found - offered.begin())
                                  : offered.size() - 1;
  }
  bool shiftHeld() override { return false; }
  void pressSpace() override { ++spaces; }
  void setTimer(uint32_t number, uint32_t ms) override {
    timers[number] = ms;
    armed.push_back(number);
  }
  void killTimer(uint32_t number) override { timers.erase(number); }
  void postTap(uint32_t point) override { taps.push_back(point); }
  void resizeClient(int32_t width, int32_t height) override { size = {width, height}; }
  bool openDialog(Command command) override {
    dialogs.push_back(command);
    if (onDialog) onDialog(command);
    return dialogsExist && (command != Command::firstRecording || onDialog);
  }
  std::string chooseFile(const FileChoice& choice) override {
    choices.push_back(choice);
    return chosenFile;
  }
  std::string chooseNewFile(const FileChoice& choice) override { return chooseFile(choice); }
  WindowPlace place() const override { return placeNow; }
  void copyText(std::string_view text) override { copied = text; }
  std::optional<size_t> chooseRow(std::string_view, std::span<const std::string> rows) override {
    offeredRows.assign(rows.begin(), rows.end());
    return chosenRow;
  }
  std::vector<size_t> chooseRows(std::string_view caption, std::string_view,
                                 std::span<const std::string> rows) override {
    questions.emplace_back(caption);
    offeredRows.assign(rows.begin(), rows.end());
    return chosenRows;
  }
  size_t chooseWithBox(std::string_view question, std::span<const std::string_view> answers,
                       std::string_view, bool& marked) override {
    if (markedBox) marked = *markedBox;
    return choose(question, answers, answers.size() - 1);
  }
  void openDocument(const std::string& path) override { openedDocuments.push_back(path); }
  bool showProgress(uint64_t, uint64_t) override { return !givesUp; }
  std::optional<std::string> askText(std::string_view, std::string_view) override { return typed; }
  void close() override { done.emplace_back("close"); }
  void destroy() override { done.emplace_back("destroy"); }

  std::function<void()> onRepaint;
  int repaints = 0, spaces = 0;
  std::string title;
  std::vector<std::string> errors, told, questions;
  bool answer = false;                  // to every question; Yes is true
  std::function<bool()> onAsk;          // in its place
  std::vector<std::string> offered;     // answers to the last question that had several
  std::string wanted;                   // of them; the last one where it is not among them
  std::map<uint32_t, uint32_t> timers;  // running: number, period in ms
  std::vector<uint32_t> armed;          // in their order
  std::vector<uint32_t> taps;
  std::vector<Command> dialogs;
  std::pair<int32_t, int32_t> size;
  WindowPlace placeNow;
  std::string copied;
  bool dialogsExist = true;
  std::function<void(Command)> onDialog;  // what the user does in the dialog
  std::vector<FileChoice> choices;
  std::string chosenFile;
  std::vector<std::string> offeredRows;  // rows of the last list
  std::optional<size_t> chosenRow;
  std::vector<size_t> chosenRows;
  std::optional<bool> markedBox;  // what the user does with a box below a question
  std::vector<std::string> openedDocuments;
  bool givesUp = false;  // long work
  std::optional<std::string> typed;
  std::vector<std::string> done;  // of the end, in their order
};

// The whole program without a system: everything runs on the thread that calls.
struct AppWorld {
  AppWorld() {
    uiThread.setHandler([this](const UiMessage& message) { onUiMessage(app, message); });
  }
  void receive(std::string_view bytes) { app.fix.onReceive(bytes); }

  FakeClock clock;
  FakeSounds sounds;
  FakeWindow window;
  FakePorts ports;
  DirectUiThread uiThread;
  std::vector<PortName> listedPorts;
  std::vector<DateTime> systemTimes;  // that the computer's clock was set to
  bool clockCanBeSet = true;
  std::vector<std::string> installed;  // arguments of the installer for mobile devices
  bool installerExists = true;
  std::atomic<bool> diskWorks{true};  // for the library and the journal
  Desktop app{Platform{clock,
                       sounds,
                       uiThread,
                       window,
                       [this] { return ports.make(); },
                       nullptr,
                       [this] { return listedPorts; },
                       [this](const DateTime& utc) {
                         systemTimes.push_back(utc);
                         return clockCanBeSet;
                       },
                       [this](const std::string& argument) {
                         if (installerExists) installed.push_back(argument);
                         return installerExists;
                       },
                       {.open = [this](const std::string& path, OpenMode mode,
                                       FileOpening& opening) -> std::unique_ptr<ExclusiveFile> {
                         if (!diskWorks) opening = FileOpening::refused;
                         return diskWorks ? openExclusive(path, mode, opening) : nullptr;
                       }}},
              window};
};

}  // namespace vgps
