#include "app/win32/window_ui_thread.h"

#include <bit>
#include <string>

#include "app/win32/message_parameter.h"
#include "gps/gps_fix.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

// Packs a sensor reading into one parameter; the other carries the generation of its source.
struct Reading {
  float x, y;  // degrees; accurate to a meter, shown to the thousandth
};
static_assert(sizeof(WPARAM) == sizeof(Reading));

bool carriesAddress(UiEvent event) {
  return event == UiEvent::line || event == UiEvent::unknownBytes || event == UiEvent::logFailed;
}

// Counts callers that may be waiting for the window.
class Count {
 public:
  explicit Count(std::atomic<int>& counter) : counter_(counter) { ++counter_; }
  Count(const Count&) = delete;
  Count& operator=(const Count&) = delete;
  ~Count() { --counter_; }

 private:
  std::atomic<int>& counter_;
};

}  // namespace

void WindowUiThread::open(HWND window, const GpsFix& fix) {
  window_ = window;
  fix_ = &fix;
  closed_ = false;
}

bool WindowUiThread::send(const UiMessage& message) {
  const Count count(underWay_);
  if (closed_) return false;
  std::wstring wide;
  WPARAM first = reinterpret_cast<WPARAM>(message.record);
  if (message.record == nullptr && carriesAddress(message.event)) {
    wide = wideFromUtf8(message.text);
    first = reinterpret_cast<WPARAM>(wide.c_str());
  }
  return SendMessageW(window_, static_cast<UINT>(message.event), first,
                      reinterpret_cast<LPARAM>(fix_)) == kHandled;
}

void WindowUiThread::post(const UiMessage& message) {
  const Count count(underWay_);
  if (closed_) return;
  const Reading reading = {static_cast<float>(message.x), static_cast<float>(message.y)};
  PostMessageW(window_, static_cast<UINT>(message.event), std::bit_cast<WPARAM>(reading),
               static_cast<LPARAM>(message.generation));
}

// Releases a sender that is already waiting by removing its message from the queue: it is handled
// if the window still exists, otherwise refused by the system.
void WindowUiThread::close(int timeoutMs) {
  closed_ = true;
  const ULONGLONG start = GetTickCount64();
  while (underWay_ > 0 && GetTickCount64() - start < static_cast<ULONGLONG>(timeoutMs)) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_SENDMESSAGE);
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
  }
}

bool readUiMessage(UINT number, WPARAM first, LPARAM second, const GpsFix& fix, std::string& text,
                   UiMessage& message) {
  if (number < static_cast<UINT>(UiEvent::line) || number > static_cast<UINT>(UiEvent::logFailed)) {
    return false;
  }
  message.event = static_cast<UiEvent>(number);
  if (message.event == UiEvent::sensor) {
    const auto reading = std::bit_cast<Reading>(first);
    message.x = reading.x;
    message.y = reading.y;
    message.generation = static_cast<uint32_t>(second);
    return true;
  }
  if (second != reinterpret_cast<LPARAM>(&fix)) return false;
  const ReaderControl& readers = fix.state.readers;
  message.generation = readers.deliveringGeneration;  // constant while the sender waits
  if (!carriesAddress(message.event)) return true;
  if (first == 0) return false;
  // If another source was opened meanwhile, the current protocol says nothing about this parameter.
  const bool stale = message.generation != 0 && message.generation != readers.generation;
  if (message.event == UiEvent::line && stale) return true;
  if (message.event == UiEvent::line && fix.state.inputProtocol == kSirfBinary) {
    message.record = addressIn<const void>(first);
    return true;
  }
  if (message.event == UiEvent::line) message.said = fix.state.lineSaid;
  text = utf8FromWide(addressIn<const wchar_t>(first));
  message.text = text;
  return true;
}

}  // namespace vgps
