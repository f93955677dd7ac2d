#pragma once

#include <windows.h>

#include <string>

namespace vgps {

// The language library: texts and dialogs by number. While this object exists, its texts replace
// the English ones.
class LanguageLibrary {
 public:
  // `file` is the name in the settings, relative to the working folder or to the program's folder.
  // If it is empty or cannot be loaded, everything stays English.
  explicit LanguageLibrary(const std::string& file);
  LanguageLibrary(const LanguageLibrary&) = delete;
  LanguageLibrary& operator=(const LanguageLibrary&) = delete;
  ~LanguageLibrary();

  bool isLoaded() const { return library_ != nullptr; }
  HMODULE module() const { return library_; }  // null if none is loaded

  // The module that provides this dialog: the library or the program itself.
  HINSTANCE ofDialog(int number) const;

 private:
  HMODULE library_ = nullptr;
};

}  // namespace vgps
