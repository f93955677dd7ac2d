#include "app/win32/prompt_dialogs.h"

#include <commctrl.h>

#include <cstring>
#include <vector>

#include "base/texts.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

constexpr WORD kField = 101;
constexpr short kWidth = 240;  // dialog units
constexpr short kMargin = 7;
constexpr short kButtonWidth = 50;
constexpr short kButtonHeight = 14;
constexpr WORD kButtonClass = 0x80;  // as a template names the classes of the system
constexpr WORD kEditClass = 0x81;
constexpr WORD kListClass = 0x83;
constexpr WORD kTableClass = 0;  // of the common controls, which have names only

// A dialog template in memory: a field, OK and Cancel.
class Template {
 public:
  Template(const std::wstring& title, WORD fieldClass, DWORD fieldStyle, short fieldHeight) {
    const auto height = static_cast<short>(fieldHeight + kButtonHeight + 3 * kMargin);
    add(DLGTEMPLATE{
        .style = DS_MODALFRAME | DS_SETFONT | DS_CENTER | WS_POPUP | WS_CAPTION | WS_SYSMENU,
        .dwExtendedStyle = 0,
        .cdit = 3,
        .x = 0,
        .y = 0,
        .cx = kWidth,
        .cy = height});
    add(WORD{0}), add(WORD{0});  // without a menu, of the usual class
    addText(title);
    add(WORD{8});
    addText(L"MS Shell Dlg");
    constexpr short kInner = kWidth - 2 * kMargin;
    addControl(fieldClass, WS_BORDER | WS_TABSTOP | fieldStyle, kMargin, kMargin, kInner,
               fieldHeight, kField, {});
    const auto top = static_cast<short>(fieldHeight + 2 * kMargin);
    constexpr short kCancelAt = kWidth - kMargin - kButtonWidth;
    constexpr short kOkAt = kCancelAt - 4 - kButtonWidth;
    addControl(kButtonClass, WS_TABSTOP | BS_DEFPUSHBUTTON, kOkAt, top, kButtonWidth, kButtonHeight,
               IDOK, wideFromUtf8(textOf(Text::ok)));
    addControl(kButtonClass, WS_TABSTOP | BS_PUSHBUTTON, kCancelAt, top, kButtonWidth,
               kButtonHeight, IDCANCEL, wideFromUtf8(textOf(Text::cancel)));
  }
  const DLGTEMPLATE* get() const { return reinterpret_cast<const DLGTEMPLATE*>(bytes_.data()); }

 private:
  template <class Value>
  void add(const Value& value) {
    const size_t at = bytes_.size();
    bytes_.resize(at + sizeof value);
    std::memcpy(&bytes_[at], &value, sizeof value);
  }
  void addText(const std::wstring& text) {
    for (const wchar_t c : text) add(c);
    add(L'\0');
  }
  void addControl(WORD kind, DWORD style, short x, short y, short width, short height, WORD id,
                  const std::wstring& text) {
    bytes_.resize((bytes_.size() + 3) / 4 * 4);
    add(DLGITEMTEMPLATE{.style = WS_CHILD | WS_VISIBLE | style,
                        .dwExtendedStyle = 0,
                        .x = x,
                        .y = y,
                        .cx = width,
                        .cy = height,
                        .id = id});
    if (kind == kTableClass) {
      addText(WC_LISTVIEWW);
    } else {
      add(WORD{0xFFFF}), add(kind);
    }
    addText(text);
    add(WORD{0});  // without data of its own
  }

  std::vector<char> bytes_;
};

// What a prompt does with its field: at the beginning, and at OK. False there keeps it open.
class Prompt {
 public:
  virtual ~Prompt() = default;
  virtual void fill(HWND field) = 0;
  virtual bool take(HWND field) = 0;
};

INT_PTR CALLBACK procedure(HWND dialog, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, second);
    reinterpret_cast<Prompt*>(second)->fill(GetDlgItem(dialog, kField));
    return TRUE;
  }
  auto* const prompt = reinterpret_cast<Prompt*>(GetWindowLongPtrW(dialog, DWLP_USER));
  if (message != WM_COMMAND || prompt == nullptr) return FALSE;
  const bool twice = LOWORD(first) == kField && HIWORD(first) == LBN_DBLCLK;
  if (LOWORD(first) == IDCANCEL) {
    EndDialog(dialog, IDCANCEL);
  } else if (LOWORD(first) == IDOK || twice) {
    if (prompt->take(GetDlgItem(dialog, kField))) EndDialog(dialog, IDOK);
  } else {
    return FALSE;
  }
  return TRUE;
}

bool run(HWND owner, const Template& layout, Prompt& prompt) {
  return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), layout.get(), owner, procedure,
                                 reinterpret_cast<LPARAM>(&prompt)) == IDOK;
}

class RowPrompt : public Prompt {
 public:
  explicit RowPrompt(std::span<const std::string> rows) : rows_(rows) {}
  void fill(HWND field) override {
    for (const std::string& row : rows_) {
      SendMessageW(field, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wideFromUtf8(row).c_str()));
    }
    SendMessageW(field, LB_SETCURSEL, 0, 0);
  }
  bool take(HWND field) override {
    const LRESULT row = SendMessageW(field, LB_GETCURSEL, 0, 0);
    if (row >= 0) chosen = static_cast<size_t>(row);
    return chosen.has_value();
  }
  std::optional<size_t> chosen;

 private:
  std::span<const std::string> rows_;
};

// Rows with a box each, under the title of their column.
class RowsPrompt : public Prompt {
 public:
  RowsPrompt(std::string_view column, std::span<const std::string> rows)
      : column_(wideFromUtf8(column)), rows_(rows) {}
  void fill(HWND field) override {
    ListView_SetExtendedListViewStyle(field, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    RECT area{};
    GetClientRect(field, &area);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.pszText = column_.data();
    column.cx = area.right - GetSystemMetrics(SM_CXVSCROLL);
    SendMessageW(field, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    for (size_t i = 0; i < rows_.size(); ++i) {
      std::wstring text = wideFromUtf8(rows_[i]);
      LVITEMW item{};
      item.mask = LVIF_TEXT;
      item.iItem = static_cast<int>(i);
      item.pszText = text.data();
      SendMessageW(field, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    // Without a row in focus the space key marks none.
    constexpr UINT kCurrent = LVIS_FOCUSED | LVIS_SELECTED;
    ListView_SetItemState(field, 0, kCurrent, kCurrent);
  }
  bool take(HWND field) override {
    for (size_t i = 0; i < rows_.size(); ++i) {
      if (ListView_GetCheckState(field, static_cast<int>(i))) chosen.push_back(i);
    }
    return true;
  }
  std::vector<size_t> chosen;

 private:
  std::wstring column_;
  std::span<const std::string> rows_;
};

class TextPrompt : public Prompt {
 public:
  explicit TextPrompt(std::string_view begin) : text(begin) {}
  void fill(HWND field) override {
    SetWindowTextW(field, wideFromUtf8(text).c_str());
    SendMessageW(field, EM_SETSEL, 0, -1);
  }
  bool take(HWND field) override {
    std::wstring typed(static_cast<size_t>(GetWindowTextLengthW(field)) + 1, L'\0');
    typed.resize(
        static_cast<size_t>(GetWindowTextW(field, typed.data(), static_cast<int>(typed.size()))));
    text = utf8FromWide(typed.c_str());
    return !text.empty();
  }
  std::string text;
};

}  // namespace

std::optional<size_t> chooseRowIn(HWND owner, std::string_view title,
                                  std::span<const std::string> rows) {
  constexpr short kListHeight = 120;
  RowPrompt prompt(rows);
  const Template layout(wideFromUtf8(title), kListClass,
                        WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, kListHeight);
  return run(owner, layout, prompt) ? prompt.chosen : std::nullopt;
}

std::vector<size_t> chooseRowsIn(HWND owner, std::string_view title, std::string_view column,
                                 std::span<const std::string> rows) {
  constexpr short kTableHeight = 140;
  RowsPrompt prompt(column, rows);
  const Template layout(wideFromUtf8(title), kTableClass,
                        LVS_REPORT | LVS_SINGLESEL | LVS_NOSORTHEADER, kTableHeight);
  return run(owner, layout, prompt) ? prompt.chosen : std::vector<size_t>();
}

std::optional<std::string> askTextIn(HWND owner, std::string_view title, std::string_view text) {
  constexpr short kLineHeight = 14;
  TextPrompt prompt(text);
  const Template layout(wideFromUtf8(title), kEditClass, ES_AUTOHSCROLL, kLineHeight);
  return run(owner, layout, prompt) ? std::optional(prompt.text) : std::nullopt;
}

}  // namespace vgps
