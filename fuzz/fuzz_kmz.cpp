#include <cstdio>
#include <filesystem>
#include <random>

#include "formats/archive.h"
#include "formats/reading.h"
#include "fuzz/exchange_input.h"
#include "platform/files.h"

// Any bytes as an archive.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vgps;
  static const std::string path =
      std::string(std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : ".") +
      "/vgps_fuzz_kmz_" + std::to_string(std::random_device{}());
  std::FILE* const file = openFile(path, "wb");
  require(file != nullptr);
  std::fwrite("PK", 1, size < 2 ? 2 : 0, file);
  std::fwrite(data, 1, size, file);
  std::fclose(file);
  ArchiveReader archive(path);
  if (archive.openFirst(".kml") == ArchiveReader::State::ready) {
    std::string text;
    readToEnd(archive.source(), text);
    require(text.size() <= kMostUnpacked);
  }
  ExchangeCollection collection;
  readExchangeFile(path, collection);
  checkPoints(collection);
  removeFile(path);
  return 0;
}
