#pragma once

#include <windows.h>

#include <array>
#include <map>

#include "platform/dialog_view.h"

namespace vgps {

// DialogView for an open Windows dialog.
class WindowDialogView : public DialogView {
 public:
  explicit WindowDialogView(HWND dialog) : dialog_(dialog) {}

  bool has(uint16_t control) override;
  void setText(uint16_t control, std::string_view text) override;
  std::string text(uint16_t control) override;
  void limitText(uint16_t control, size_t units) override;
  void setChecked(uint16_t control, bool checked) override;
  bool checked(uint16_t control) override;
  void setItems(uint16_t control, std::span<const std::string> items) override;
  void select(uint16_t control, int item) override;
  int selected(uint16_t control) override;
  void setColor(uint16_t control, Color color) override;
  Color color(uint16_t control) override;
  void enable(uint16_t control, bool enabled) override;
  void showNote(std::string_view text) override;
  std::optional<std::string> chooseFile(std::string_view kind, std::string_view pattern,
                                        const std::string& current) override;
  std::optional<std::string> chooseFolder(const std::string& current) override;
  std::optional<Color> chooseColor(Color current) override;
  void playSound(const std::string& file, const char* name) override;
  void tell(std::string_view text) override;

  // Draws a button that shows a color. Returns false if the control is not such a button.
  bool drawColor(const DRAWITEMSTRUCT& item);

 private:
  HWND control(uint16_t number) const { return GetDlgItem(dialog_, number); }

  HWND dialog_;
  std::map<uint16_t, Color> colors_;
  std::array<COLORREF, 16> mixedColors_{};  // custom colors mixed in this dialog
};

}  // namespace vgps
