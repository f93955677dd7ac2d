#include "app/win32/out_of_memory.h"

#include <array>
#include <string_view>

#include "base/texts.h"

namespace vgps {

// Takes no memory itself; the text is plain ASCII.
void tellOutOfMemory(HWND window) {
  std::array<wchar_t, 200> text{};
  const std::string_view said = textOf(Text::outOfMemory);
  for (size_t i = 0; i < said.size() && i + 1 < text.size(); ++i) {
    text[i] = static_cast<unsigned char>(said[i]);
  }
  MessageBoxW(window, text.data(), nullptr, MB_OK | MB_ICONERROR);
}

}  // namespace vgps
