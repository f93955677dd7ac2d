#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/dialog_view.h"

namespace vgps {

// A dialog without a window: what was shown can be looked at, what a person would do is written
// into it. Every control is there but those in `missing`.
class FakeDialogView : public DialogView {
 public:
  struct Control {
    std::string text;
    size_t limit = 0;
    bool checked = false;
    bool enabled = true;
    std::vector<std::string> items;
    int selected = -1;
    Color color = 0;
  };
  std::map<uint16_t, Control> controls;
  std::set<uint16_t> missing;

  // What the person answers; nothing: gives up.
  std::optional<std::string> path;
  std::optional<Color> chosenColor;
  std::vector<std::string> asked;   // "Image files|*.png|current"
  std::vector<std::string> played;  // file or name
  std::vector<std::string> told;
  std::string note;

  bool has(uint16_t control) override { return !missing.contains(control); }
  void setText(uint16_t control, std::string_view text) override { controls[control].text = text; }
  std::string text(uint16_t control) override { return controls[control].text; }
  void limitText(uint16_t control, size_t units) override { controls[control].limit = units; }
  void setChecked(uint16_t control, bool checked) override { controls[control].checked = checked; }
  bool checked(uint16_t control) override { return controls[control].checked; }
  void setItems(uint16_t control, std::span<const std::string> items) override {
    controls[control].items.assign(items.begin(), items.end());
  }
  void select(uint16_t control, int item) override { controls[control].selected = item; }
  int selected(uint16_t control) override { return controls[control].selected; }
  void setColor(uint16_t control, Color color) override { controls[control].color = color; }
  Color color(uint16_t control) override { return controls[control].color; }
  void enable(uint16_t control, bool enabled) override { controls[control].enabled = enabled; }
  void showNote(std::string_view text) override { note = text; }

  std::optional<std::string> chooseFile(std::string_view kind, std::string_view pattern,
                                        const std::string& current) override {
    asked.push_back(std::string(kind) + "|" + std::string(pattern) + "|" + current);
    return path;
  }
  std::optional<std::string> chooseFolder(const std::string& current) override {
    asked.push_back("folder|" + current);
    return path;
  }
  std::optional<Color> chooseColor(Color current) override {
    asked.push_back("color|" + std::to_string(current));
    return chosenColor;
  }
  void playSound(const std::string& file, const char* name) override {
    played.push_back(file.empty() ? name : file);
  }
  void tell(std::string_view text) override { told.emplace_back(text); }
};

}  // namespace vgps
