#include "base/allocation.h"

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <new>

namespace vgps {
namespace {

void (*tellOutOfMemory)() = nullptr;

[[noreturn]] void endProgram() {
  if (const std::exception_ptr reason = std::current_exception()) {
    try {
      std::rethrow_exception(reason);
    } catch (const std::bad_alloc&) {
      tellOutOfMemory();
      std::_Exit(1);
    } catch (...) {
      std::abort();
    }
  }
  std::abort();
}

}  // namespace

void failAllocation() {
  // No system has so much.
  static_cast<void>(::operator new(SIZE_MAX / 2));
  std::abort();
}

void endWithoutMemory(void (*tell)()) {
  tellOutOfMemory = tell;
  std::set_terminate(endProgram);
}

}  // namespace vgps
