#pragma once

#include <string>

#include "app/desktop/desktop.h"
#include "formats/exports.h"

// How exports and imports speak to the user of the window.
namespace vgps {

class DesktopExchange : public ExchangeHooks {
 public:
  explicit DesktopExchange(Desktop& app) : app_(app) {}
  DesktopExchange(const DesktopExchange&) = delete;
  DesktopExchange& operator=(const DesktopExchange&) = delete;
  ~DesktopExchange() override { app_.window.endProgress(); }

  Answer ask(const std::string& question, bool withCancel) override;
  // With a box for what the settings say of imports; what the user marks there stays.
  Answer askToImport(const std::string& question, bool& complete) override;
  std::vector<size_t> choose(std::string_view caption, std::string_view column,
                             const std::vector<std::string>& names) override;
  void tell(const std::string& message) override;
  void openDocument(const std::string& path) override;
  bool progress(uint64_t done, uint64_t total) override;

 private:
  Desktop& app_;
};

// As `DesktopWindow::chooseWithBox`, with that box.
size_t chooseWithImportBox(Desktop& app, std::string_view question,
                           std::span<const std::string_view> answers);

// A file that was dropped on the window: a log is replayed, anything else is imported.
void takeDroppedFile(Desktop& app, const std::string& path);

}  // namespace vgps
