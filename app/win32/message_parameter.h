#pragma once

#include <windows.h>

namespace vgps {

// The address that a parameter of a window message, or a word of a window, carries as a number.
template <typename T>
T* addressIn(LONG_PTR parameter) {
  return reinterpret_cast<T*>(parameter);  // NOLINT(performance-no-int-to-ptr): the system's way
}

template <typename T>
T* addressIn(UINT_PTR parameter) {
  return addressIn<T>(static_cast<LONG_PTR>(parameter));
}

}  // namespace vgps
