#include "app/win32/language_library.h"

#include <array>

#include "base/texts.h"
#include "platform/files.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

constexpr int kLongestText = 4096;  // UTF-16 units

// Loads it as data only, so that no code in it is run.
HMODULE loadAsData(const std::string& path) {
  return LoadLibraryExW(wideFromUtf8(path).c_str(), nullptr,
                        LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
}

HMODULE loadLanguage(const std::string& file) {
  if (file.empty()) return nullptr;
  // The system would search for a bare name in its own folders too.
  const bool bare = file.find_first_of("\\/:") == std::string::npos;
  const HMODULE library = loadAsData(bare ? ".\\" + file : file);
  return library != nullptr ? library : loadAsData(pathIn(programFolder(), file));
}

}  // namespace

LanguageLibrary::LanguageLibrary(const std::string& file) : library_(loadLanguage(file)) {
  if (library_ == nullptr) return;
  setTextSource([this](uint32_t number) {
    std::array<wchar_t, kLongestText> text{};
    const int length = LoadStringW(library_, number, text.data(), kLongestText);
    return length > 0 ? utf8FromWide({text.data(), static_cast<size_t>(length)}) : std::string();
  });
}

LanguageLibrary::~LanguageLibrary() {
  if (library_ == nullptr) return;
  setTextSource({});
  FreeLibrary(library_);
}

HINSTANCE LanguageLibrary::ofDialog(int number) const {
  const bool translated = library_ != nullptr &&
                          FindResourceW(library_, MAKEINTRESOURCEW(number), RT_DIALOG) != nullptr;
  return translated ? library_ : GetModuleHandleW(nullptr);
}

}  // namespace vgps
