#include "app/win32/program_font.h"

#include <string_view>

#include "platform/files.h"

namespace vgps {
namespace {

constexpr const wchar_t* kFontFile = L".\\vgpsfont.ttf";
constexpr const char* kFontPath = ".\\vgpsfont.ttf";

std::string_view fontResource(HINSTANCE instance) {
  const HRSRC found = FindResourceW(instance, L"FONT_1", RT_RCDATA);
  const HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(instance, found);
  const void* const bytes = loaded == nullptr ? nullptr : LockResource(loaded);
  if (bytes == nullptr) return {};
  return {static_cast<const char*>(bytes), SizeofResource(instance, found)};
}

bool writeFontFile(std::string_view bytes) {
  std::FILE* const file = openFile(kFontPath, "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}

}  // namespace

ProgramFont::ProgramFont(HINSTANCE instance) {
  const std::string_view bytes = fontResource(instance);
  if (bytes.empty()) return;
  fromFile_ = writeFontFile(bytes) && AddFontResourceExW(kFontFile, FR_PRIVATE, nullptr) > 0;
  if (fromFile_) return;
  DWORD count = 0;
  inMemory_ = AddFontMemResourceEx(const_cast<char*>(bytes.data()),
                                   static_cast<DWORD>(bytes.size()), nullptr, &count);
}

ProgramFont::~ProgramFont() {
  if (inMemory_ != nullptr) RemoveFontMemResourceEx(inMemory_);
  if (!fromFile_) return;
  RemoveFontResourceExW(kFontFile, FR_PRIVATE, nullptr);
  removeFile(kFontPath);
}

}  // namespace vgps
