#pragma once

#include <windows.h>

namespace vgps {

// Looks up a function that not every version of Windows has; null if it is missing. `Function` is
// its type, such as `UINT WINAPI(HWND)`.
template <typename Function>
Function* systemFunction(const wchar_t* library, const char* name) {
  const HMODULE module = GetModuleHandleW(library);
  if (module == nullptr) return nullptr;
  const FARPROC address = GetProcAddress(module, name);
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(address));
}

}  // namespace vgps
