#include "app/win32/finder_dialog.h"

#include <commctrl.h>

#include <array>
#include <new>

#include "app/win32/dialog_opening.h"
#include "app/win32/message_parameter.h"
#include "app/win32/night_look.h"
#include "app/win32/out_of_memory.h"
#include "base/texts.h"
#include "platform/win32/wide.h"
#include "res/finder_ids.h"

namespace vgps {
namespace {

constexpr UINT kChanged = WM_APP + 1;
constexpr int kProgressRange = 1000;

// Of the list's width, in hundredths.
constexpr std::array kColumnShares = {11, 26, 43, 20};
constexpr std::array kColumnTitles = {Text::finderPortColumn, Text::finderDeviceColumn,
                                      Text::finderAnswerColumn, Text::finderPositionColumn};

class FinderDialog {
 public:
  explicit FinderDialog(const FinderSetup& setup)
      : setup_(setup),
        finder_(
            setup.makePort, [this] { noteChange(); }, setup.times) {}

  static INT_PTR CALLBACK procedure(HWND dialog, UINT message, WPARAM first, LPARAM second);

  std::optional<FoundReceiver> choice;

 private:
  INT_PTR handle(UINT message, WPARAM first, LPARAM second);
  void begin();
  void addColumns();
  void search();
  void noteChange();
  void show();
  void enableAgain(bool enabled);
  void showRow(int row, const PortFinding& finding);
  void setCell(int row, int column, std::string_view text);
  void showHeadline(const std::vector<PortFinding>& findings);
  void noteSelection(const NMLISTVIEW& change);
  void followSelection();
  void use();
  int selectedRow() const { return ListView_GetNextItem(list_, -1, LVNI_SELECTED); }
  HWND control(int number) const { return GetDlgItem(dialog_, number); }

  const FinderSetup& setup_;
  HWND dialog_ = nullptr;
  HWND list_ = nullptr;
  bool personChose_ = false;  // the user selected a row; do not select the best one instead
  bool selecting_ = false;
  std::atomic<bool> changeNoted_{false};
  PortFinder finder_;
};

INT_PTR CALLBACK FinderDialog::procedure(HWND dialog, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, second);
    addressIn<FinderDialog>(second)->dialog_ = dialog;
  }
  auto* const self = addressIn<FinderDialog>(GetWindowLongPtrW(dialog, DWLP_USER));
  if (self == nullptr) return FALSE;
  try {
    return self->handle(message, first, second);
  } catch (const std::bad_alloc&) {
    tellOutOfMemory(dialog);
    return FALSE;
  }
}

INT_PTR FinderDialog::handle(UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_INITDIALOG: begin(); return TRUE;
    case kChanged: show(); return TRUE;
    case WM_NOTIFY: {
      const auto& note = *addressIn<const NMHDR>(second);
      if (note.idFrom != FINDER_LIST) return FALSE;
      if (note.code == LVN_ITEMCHANGED) noteSelection(*addressIn<const NMLISTVIEW>(second));
      if (note.code == NM_DBLCLK && selectedRow() >= 0) use();
      return TRUE;
    }
    case WM_COMMAND:
      switch (LOWORD(first)) {
        case FINDER_AGAIN: search(); return TRUE;
        case IDOK: use(); return TRUE;
        case IDCANCEL: EndDialog(dialog_, IDCANCEL); return TRUE;
        default: return FALSE;
      }
    case WM_DESTROY: finder_.stop(); return TRUE;
    default: return FALSE;
  }
}

void FinderDialog::begin() {
  translateDialog(dialog_, Text::finderDialog);
  if (setup_.night) darkenDialog(dialog_);
  centerOverOwner(dialog_);
  list_ = control(FINDER_LIST);
  ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP);
  SendMessageW(control(FINDER_PROGRESS), PBM_SETRANGE32, 0, kProgressRange);
  addColumns();
  CheckDlgButton(dialog_, FINDER_AT_START, BST_CHECKED);
  search();
}

void FinderDialog::addColumns() {
  RECT client{};
  GetClientRect(list_, &client);
  const int width = client.right - GetSystemMetrics(SM_CXVSCROLL);
  for (size_t i = 0; i < kColumnShares.size(); ++i) {
    std::wstring title = wideFromUtf8(textOf(kColumnTitles[i]));
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    column.pszText = title.data();
    column.cx = width * kColumnShares[i] / 100;
    column.iSubItem = static_cast<int>(i);
    SendMessageW(list_, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
  }
}

void FinderDialog::search() {
  finder_.stop();
  personChose_ = false;
  ListView_DeleteAllItems(list_);
  std::vector<PortName> ports = setup_.listPorts();
  for (size_t i = 0; i < ports.size(); ++i) {
    LVITEMW item{};
    item.iItem = static_cast<int>(i);
    SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }
  finder_.start(std::move(ports));
  show();
}

// Called on the threads of the ports; one pending message at a time is enough.
void FinderDialog::noteChange() {
  if (!changeNoted_.exchange(true)) PostMessageW(dialog_, kChanged, 0, 0);
}

void FinderDialog::show() {
  changeNoted_ = false;
  const std::vector<PortFinding> findings = finder_.findings();
  for (size_t i = 0; i < findings.size(); ++i) showRow(static_cast<int>(i), findings[i]);
  showHeadline(findings);
  SendMessageW(control(FINDER_PROGRESS), PBM_SETPOS, finder_.progress(), 0);
  enableAgain(!finder_.running());
  const PortFinding* const best = bestFinding(findings);
  if (best != nullptr && !personChose_) {
    selecting_ = true;
    const auto row = static_cast<int>(best - findings.data());
    ListView_SetItemState(list_, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(list_, row, FALSE);
    selecting_ = false;
  }
  followSelection();
}

// Moves the focus away before disabling a button: a disabled button with the focus would swallow
// every key.
void FinderDialog::enableAgain(bool enabled) {
  const HWND button = control(FINDER_AGAIN);
  if (!enabled && GetFocus() == button) {
    SendMessageW(dialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(IDCANCEL)), TRUE);
  }
  EnableWindow(button, enabled ? TRUE : FALSE);
}

void FinderDialog::showRow(int row, const PortFinding& finding) {
  setCell(row, 0, finding.port.name);
  setCell(row, 1, finding.port.description);
  setCell(row, 2, findingText(finding));
  setCell(row, 3, positionText(finding));
}

// Sets only a changed text, to avoid flicker.
void FinderDialog::setCell(int row, int column, std::string_view text) {
  std::wstring wide = wideFromUtf8(text);
  if (wide == cellText(list_, row, column)) return;
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = wide.data();
  SendMessageW(list_, LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void FinderDialog::showHeadline(const std::vector<PortFinding>& findings) {
  Text number = Text::finderSearching;
  if (findings.empty()) {
    number = Text::finderNoPorts;
  } else if (bestFinding(findings) != nullptr) {
    number = Text::finderChoose;
  } else if (!finder_.running()) {
    number = Text::finderNothingFound;
  }
  SetWindowTextW(control(FINDER_HEADLINE), wideFromUtf8(textOf(number)).c_str());
}

void FinderDialog::noteSelection(const NMLISTVIEW& change) {
  if ((change.uChanged & LVIF_STATE) == 0) return;
  if ((change.uNewState & LVIS_SELECTED) != 0 && !selecting_) personChose_ = true;
  followSelection();
}

// Only a receiver that sends NMEA can be used directly.
void FinderDialog::followSelection() {
  const int row = selectedRow();
  const std::vector<PortFinding> findings = finder_.findings();
  const bool usable = row >= 0 && static_cast<size_t>(row) < findings.size() &&
                      findings[static_cast<size_t>(row)].answered &&
                      findings[static_cast<size_t>(row)].answer.result == ProbeResult::found;
  const HWND button = control(IDOK);
  if (usable == (IsWindowEnabled(button) != FALSE)) return;
  EnableWindow(button, usable ? TRUE : FALSE);
  // Only if the program selected the row: a user moving through the list with the arrow keys must
  // keep the focus there.
  if (usable && selecting_)
    SendMessageW(dialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(button), TRUE);
}

void FinderDialog::use() {
  const int row = selectedRow();
  const std::vector<PortFinding> findings = finder_.findings();
  if (row < 0 || static_cast<size_t>(row) >= findings.size()) return;
  const PortFinding& finding = findings[static_cast<size_t>(row)];
  if (!finding.answered || finding.answer.result != ProbeResult::found) return;
  finder_.stop();  // the port has to be free
  choice = FoundReceiver{{.port = finding.port.name, .speed = finding.speed},
                         IsDlgButtonChecked(dialog_, FINDER_AT_START) == BST_CHECKED};
  EndDialog(dialog_, IDOK);
}

}  // namespace

std::wstring cellText(HWND list, int row, int column) {
  wchar_t text[200] = L"";
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = text;
  item.cchTextMax = static_cast<int>(std::size(text));
  SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return text;
}

std::optional<FoundReceiver> runFinder(HINSTANCE resources, HWND owner, const FinderSetup& setup) {
  FinderDialog dialog(setup);
  DialogBoxParamW(resources, MAKEINTRESOURCEW(DIALOG_FINDER), owner, FinderDialog::procedure,
                  reinterpret_cast<LPARAM>(&dialog));
  return dialog.choice;
}

}  // namespace vgps
