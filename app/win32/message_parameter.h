#pragma once

#include <windows.h>

namespace vgps {

// Converts a message parameter, or a number stored in a window, to the address that it contains.
template <typename T>
T* addressIn(LONG_PTR parameter) {
  return reinterpret_cast<T*>(parameter);  // NOLINT(performance-no-int-to-ptr): the system's way
}

template <typename T>
T* addressIn(UINT_PTR parameter) {
  return addressIn<T>(static_cast<LONG_PTR>(parameter));
}

}  // namespace vgps
