#pragma once

#include "platform/sounds.h"
#include "platform/window.h"

namespace vgps {

// A program without loudspeaker...
class QuietSounds : public Sounds {
 public:
  void play(const char*) override {}
};

// ...and without window.
class QuietWindow : public Window {
 public:
  void repaint() override {}
  void setTitle(std::string_view) override {}
  void tellError(std::string_view) override {}
  void tell(std::string_view) override {}
  bool ask(std::string_view) override { return false; }
  size_t choose(std::string_view, std::span<const std::string_view> answers) override {
    return answers.size() - 1;
  }
  bool shiftHeld() override { return false; }
  void pressSpace() override {}
  void setTimer(uint32_t, uint32_t) override {}
  void killTimer(uint32_t) override {}
  void postTap(uint32_t) override {}
  void resizeClient(int32_t, int32_t) override {}
  bool openDialog(uint32_t) override { return false; }
  bool openUrl(std::string_view) override { return false; }
  std::string chooseFile(const FileChoice&) override { return {}; }
  void close() override {}
  void closeBrowser() override {}
  void destroy() override {}
};

}  // namespace vgps
