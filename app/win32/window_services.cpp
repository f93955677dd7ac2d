#include "app/win32/main_window.h"

// The other headers need <windows.h> first.
#include <commctrl.h>

#include <cstring>
#include <vector>

#include "app/desktop/dialog_context.h"
#include "app/desktop/exchange.h"
#include "app/win32/dialog_opening.h"
#include "app/win32/dialogs.h"
#include "app/win32/dpi.h"
#include "app/win32/file_chooser.h"
#include "app/win32/find_receiver.h"
#include "app/win32/finder_dialog.h"
#include "app/win32/window_messages.h"
#include "platform/win32/wide.h"
#include "res/finder_ids.h"

// The services that the program needs from its window.
namespace vgps {
namespace {

// Button numbers of a question with several answers; must differ from IDOK and the like, which
// close it.
constexpr int kFirstAnswer = 1001;

}  // namespace

// The reader must not wait for the window, so the window fetches the text later.
void MainWindow::setTitle(std::string_view title) {
  {
    const std::lock_guard lock(titleMutex_);
    title_ = wideFromUtf8(title);
  }
  PostMessageW(window_, kTitleChanged, 0, 0);
}

// Only the simulation sets a title, and one may still arrive after it has ended.
void MainWindow::showTitle() {
  std::wstring title;
  {
    const std::lock_guard lock(titleMutex_);
    title = title_;
  }
  titled_ = app_->fix.running && app_->fix.simulate;
  const bool walks = app_->simulationData == SimulationData::walk;
  if (titled_ && walks) title = wideFromUtf8(textOf(Text::simulationTitle));
  SetWindowTextW(window_, titled_ && !title.empty() ? title.c_str() : programTitle().c_str());
}

// A message box waits for the user, but the caller may be a waiting reader.
void MainWindow::tellError(std::string_view text) { queueMessage(text, MB_ICONERROR); }

void MainWindow::offerSearch(std::string_view error) {
  const std::string question = std::string(error) + "\n\n" + std::string(textOf(Text::searchNow));
  queueMessage(question, MB_ICONERROR | MB_YESNO);
}

void MainWindow::tell(std::string_view text) { queueMessage(text, MB_ICONINFORMATION); }

// Messages before the window exists are kept until it does.
void MainWindow::queueMessage(std::string_view text, UINT style) {
  messages_.push_back({wideFromUtf8(text), style});
  if (window_ != nullptr) PostMessageW(window_, kMessagesWaiting, 0, 0);
}

void MainWindow::showMessages() {
  if (showingMessages_) return;
  showingMessages_ = true;
  while (!messages_.empty() && window_ != nullptr) {
    const Message message = messages_.front();
    messages_.pop_front();
    const int answer =
        MessageBoxW(window_, message.text.c_str(), programTitle().c_str(), message.style);
    if (answer == IDYES) PostMessageW(window_, WM_COMMAND, WPARAM(Command::findReceiver), 0);
  }
  showingMessages_ = false;
}

void MainWindow::showLastMessages() {
  for (const Message& message : messages_) {
    MessageBoxW(nullptr, message.text.c_str(), programTitle().c_str(),
                MB_SETFOREGROUND | (message.style & ~UINT{MB_YESNO}));
  }
  messages_.clear();
}

bool MainWindow::shiftHeld() { return GetAsyncKeyState(VK_SHIFT) < 0; }

void MainWindow::pressSpace() { PostMessageW(window_, WM_KEYDOWN, VK_SPACE, 0); }

bool MainWindow::ask(std::string_view question) {
  return MessageBoxW(window_, wideFromUtf8(question).c_str(), programTitle().c_str(),
                     MB_YESNO | MB_DEFBUTTON2 | MB_ICONQUESTION) == IDYES;
}

// Disables the window meanwhile, like a message box. Escape and the close box press the last
// button, because that one cancels.
size_t MainWindow::choose(std::string_view question, std::span<const std::string_view> answers,
                          size_t standard) {
  bool unused = false;
  return chooseAnswer(question, answers, standard, {}, unused);
}

size_t MainWindow::chooseWithBox(std::string_view question,
                                 std::span<const std::string_view> answers, std::string_view box,
                                 bool& marked) {
  return chooseAnswer(question, answers, answers.size() - 1, box, marked);
}

size_t MainWindow::chooseAnswer(std::string_view question,
                                std::span<const std::string_view> answers, size_t standard,
                                std::string_view box, bool& marked) {
  std::vector<std::wstring> words;
  words.reserve(answers.size());
  for (const std::string_view answer : answers) words.push_back(wideFromUtf8(answer));
  std::vector<TASKDIALOG_BUTTON> buttons;
  buttons.reserve(words.size());
  for (const std::wstring& word : words) {
    buttons.push_back({kFirstAnswer + static_cast<int>(buttons.size()), word.c_str()});
  }
  const std::wstring title = programTitle();
  const std::wstring text = wideFromUtf8(question);
  TASKDIALOGCONFIG dialog{};
  dialog.cbSize = sizeof dialog;
  dialog.hwndParent = window_;
  dialog.dwFlags = TDF_USE_HICON_MAIN | TDF_ALLOW_DIALOG_CANCELLATION | TDF_SIZE_TO_CONTENT;
  // Over a window that is small and at the edge, the system would place it partly off the screen.
  dialog.pfCallback = [](HWND shown, UINT event, WPARAM, LPARAM, LONG_PTR) -> HRESULT {
    if (event == TDN_CREATED) centerOverOwner(shown);
    return S_OK;
  };
  dialog.pszWindowTitle = title.c_str();
  dialog.hMainIcon = LoadIconW(nullptr, IDI_QUESTION);
  dialog.pszContent = text.c_str();
  buttons.back().nButtonID = IDCANCEL;
  dialog.cButtons = static_cast<UINT>(buttons.size());
  dialog.pButtons = buttons.data();
  dialog.nDefaultButton = standard < buttons.size() ? buttons[standard].nButtonID : IDCANCEL;
  const std::wstring below = wideFromUtf8(box);
  if (!box.empty()) dialog.pszVerificationText = below.c_str();
  if (marked) dialog.dwFlags |= TDF_VERIFICATION_FLAG_CHECKED;
  int pressed = 0;
  BOOL isMarked = marked ? TRUE : FALSE;
  if (TaskDialogIndirect(&dialog, &pressed, nullptr, &isMarked) != S_OK) pressed = 0;
  if (pressed >= kFirstAnswer) marked = isMarked != FALSE;
  const size_t chosen = static_cast<size_t>(pressed - kFirstAnswer);
  return pressed >= kFirstAnswer && chosen < answers.size() ? chosen : answers.size() - 1;
}

void MainWindow::setTimer(uint32_t number, uint32_t ms) { SetTimer(window_, number, ms, nullptr); }

void MainWindow::killTimer(uint32_t number) { KillTimer(window_, number); }

void MainWindow::postTap(uint32_t point) {
  PostMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, static_cast<LPARAM>(point));
}

// In a narrow window the menu bar has several lines; only the window itself knows how many.
void MainWindow::resizeClient(int32_t width, int32_t height) {
  if (IsZoomed(window_)) ShowWindow(window_, SW_RESTORE);
  const int dpi = dpiOf(window_);
  const SIZE wanted = {MulDiv(width, dpi, USER_DEFAULT_SCREEN_DPI),
                       MulDiv(height, dpi, USER_DEFAULT_SCREEN_DPI)};
  SIZE outer = windowSizeFor({width, height}, WS_OVERLAPPEDWINDOW, true, dpi);
  for (int attempt = 0; attempt < 3; ++attempt) {
    SetWindowPos(window_, nullptr, 0, 0, outer.cx, outer.cy,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT client{};
    GetClientRect(window_, &client);
    if (client.right == wanted.cx && client.bottom == wanted.cy) return;
    outer.cx += wanted.cx - client.right;
    outer.cy += wanted.cy - client.bottom;
  }
}

// The port search of a dialog takes over the connection, so hot keys are ignored meanwhile.
bool MainWindow::openDialog(Command command) {
  if (dialogOpen_) return true;
  dialogOpen_ = true;
  const bool opened = command == Command::findReceiver ? openFinder() : openSettings(command);
  dialogOpen_ = false;
  if (setting_.sounds != nullptr) setting_.sounds->useFilesOf(app_->settings);
  return opened;
}

bool MainWindow::openFinder() {
  FinderSetup setup;
  setup.makePort = app_->platform.makePort;
  setup.night = app_->scheme == ColorScheme::night;
  const HINSTANCE resources =
      setting_.language != nullptr ? setting_.language->ofDialog(DIALOG_FINDER) : setting_.instance;
  findReceiver(*app_, resources, window_, setup);
  return true;
}

bool MainWindow::openSettings(Command command) {
  DialogContext context = dialogContextOf(*app_);
  return runDialog(window_, context, command, layouts()) != 0;
}

HMODULE MainWindow::layouts() const {
  return setting_.language != nullptr ? setting_.language->module() : nullptr;
}

std::string MainWindow::chooseFile(const FileChoice& choice) {
  return chooseExistingFile(window_, choice.kind, choice.pattern, {}, choice.title, choice.folder,
                            choice.more)
      .value_or("");
}

std::string MainWindow::chooseNewFile(const FileChoice& choice) {
  return chooseNewFileIn(window_, choice).value_or("");
}

std::vector<size_t> MainWindow::chooseRows(std::string_view caption, std::string_view column,
                                           std::span<const std::string> rows) {
  const bool night = app_->scheme == ColorScheme::night;
  return vgps::chooseRows(window_, caption, column, rows, {layouts(), night});
}

void MainWindow::openDocument(const std::string& path) {
  const HINSTANCE opened =
      ShellExecuteW(window_, L"open", wideFromUtf8(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  constexpr INT_PTR kLastError = 32;
  if (reinterpret_cast<INT_PTR>(opened) > kLastError) return;
  showNotice(*app_, textWith(Text::noProgramFor, path));
}

bool MainWindow::showProgress(uint64_t done, uint64_t total) {
  return progress_.show(window_, done, total);
}

void MainWindow::endProgress() { progress_.end(window_); }

// Whoever drags the files waits until this returns, so questions come later.
void MainWindow::takeDroppedFiles(HDROP drop) {
  const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
  for (UINT i = 0; i < count; ++i) {
    std::wstring path(DragQueryFileW(drop, i, nullptr, 0), L'\0');
    DragQueryFileW(drop, i, path.data(), static_cast<UINT>(path.size() + 1));
    dropped_.push_back(utf8FromWide(path.c_str()));
  }
  DragFinish(drop);
  PostMessageW(window_, kFilesDropped, 0, 0);
}

void MainWindow::importDropped() {
  if (importing_ || dialogOpen_ || !IsWindowEnabled(window_)) return;
  importing_ = true;
  while (!dropped_.empty() && window_ != nullptr) {
    const std::string path = dropped_.front();
    dropped_.pop_front();
    takeDroppedFile(*app_, path);
  }
  importing_ = false;
  followState();
}

std::optional<size_t> MainWindow::chooseRow(std::string_view title,
                                            std::span<const std::string> rows) {
  const bool night = app_->scheme == ColorScheme::night;
  return vgps::chooseRow(window_, title, rows, {layouts(), night});
}

std::optional<std::string> MainWindow::askText(std::string_view title, std::string_view text) {
  const bool night = app_->scheme == ColorScheme::night;
  return vgps::askText(window_, textOf(Text::programName), title, std::string(text),
                       {layouts(), night});
}

void MainWindow::copyText(std::string_view text) {
  const std::wstring wide = wideFromUtf8(text);
  const size_t bytes = (wide.size() + 1) * sizeof(wchar_t);
  if (OpenClipboard(window_) == FALSE) return showNotice(*app_, textOf(Text::clipboardBusy));
  EmptyClipboard();
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
  if (memory != nullptr) {
    std::memcpy(GlobalLock(memory), wide.c_str(), bytes);
    GlobalUnlock(memory);
    // The system owns it from now on.
    if (SetClipboardData(CF_UNICODETEXT, memory) == nullptr) GlobalFree(memory);
  }
  CloseClipboard();
}

void MainWindow::close() { PostMessageW(window_, WM_CLOSE, 0, 0); }

void MainWindow::destroy() {
  if (window_ == nullptr) return;
  startButtons_.show(window_, false);
  const HMENU menu = GetMenu(window_);
  SetMenu(window_, nullptr);
  if (menu != nullptr) DestroyMenu(menu);
  DestroyWindow(window_);
}

}  // namespace vgps
