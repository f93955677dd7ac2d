#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

// Runs a fuzz target over kept inputs, without a fuzzer: each file of the folders given, or of the
// target's corpus. Ends with 1 when there was none.

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

int replayFolder(const std::filesystem::path& folder) {
  int inputs = 0;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
    // Named before it runs: a crash must not hide which one it was.
    std::printf("# %s\n", entry.path().filename().c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    ++inputs;
  }
  return inputs;
}

}  // namespace

int main(int argc, char** argv) {
  int inputs = 0;
  if (argc < 2) inputs = replayFolder(FUZZ_CORPUS);
  for (int i = 1; i < argc; ++i) inputs += replayFolder(argv[i]);
  std::printf("# %d inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
