#pragma once

#include <windows.h>

#include <objbase.h>

#include <memory>

namespace vgps {

struct ComReleaser {
  void operator()(IUnknown* object) const { object->Release(); }
};

// Owns one reference to a COM object.
template <typename Interface>
using ComPtr = std::unique_ptr<Interface, ComReleaser>;

// The thread may use COM from here to its end; one that does so already stays in its apartment.
inline void enterApartment() {
  struct Apartment {
    const bool entered = SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    ~Apartment() {
      if (entered) CoUninitialize();
    }
  };
  thread_local const Apartment apartment;
}

template <typename Interface>
ComPtr<Interface> createObject(const CLSID& classId) {
  void* object = nullptr;
  if (FAILED(
          CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), &object)))
    object = nullptr;
  return ComPtr<Interface>(static_cast<Interface*>(object));
}

}  // namespace vgps
