#include "fuzz/exchange_input.h"

// Any bytes as a KML file, or as what stands inside of its root.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  vgps::checkExchange(bytes.starts_with("<?xml") || size % 2 == 0 ? bytes : "<kml>" + bytes);
  return 0;
}
