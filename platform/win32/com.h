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

// Initializes COM for the calling thread until it ends. A thread that has already initialized COM
// keeps its apartment.
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
