#pragma once

#include <windows.h>

#include <string>

namespace vgps {

// The library of the user's language: texts by their number, and dialogs by theirs. While this
// lives its texts stand in place of the English ones.
class LanguageLibrary {
 public:
  // `file`: as the settings name it, relative to where the program was started or beside it. One
  // that is empty or cannot be loaded leaves everything in English.
  explicit LanguageLibrary(const std::string& file);
  LanguageLibrary(const LanguageLibrary&) = delete;
  LanguageLibrary& operator=(const LanguageLibrary&) = delete;
  ~LanguageLibrary();

  bool isLoaded() const { return library_ != nullptr; }
  HMODULE module() const { return library_; }  // null when none is loaded

  // Where a dialog of that number comes from: the library, or the program itself.
  HINSTANCE ofDialog(int number) const;

 private:
  HMODULE library_ = nullptr;
};

}  // namespace vgps
