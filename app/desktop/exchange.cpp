#include "app/desktop/exchange.h"

#include "app/settings/settings_table.h"
#include "base/texts.h"

namespace vgps {

size_t chooseWithImportBox(Desktop& app, std::string_view question,
                           std::span<const std::string_view> answers) {
  bool marked = app.settings.importEverything;
  const size_t answer =
      app.window.chooseWithBox(question, answers, textOf(Text::importEverything), marked);
  if (marked != app.settings.importEverything) {
    app.settings.importEverything = marked;
    app.config.put(*Setting(&Settings::importEverything), app.settings);
  }
  return answer;
}

Answer DesktopExchange::ask(const std::string& question, bool withCancel) {
  app_.window.endProgress();
  if (!withCancel) return app_.window.ask(question) ? Answer::yes : Answer::no;
  const std::string_view answers[] = {textOf(Text::yes), textOf(Text::no), textOf(Text::cancel)};
  return static_cast<Answer>(app_.window.choose(question, answers, std::size(answers) - 1));
}

Answer DesktopExchange::askToImport(const std::string& question, bool& complete) {
  app_.window.endProgress();
  const std::string_view answers[] = {textOf(Text::yes), textOf(Text::no)};
  const size_t answer = chooseWithImportBox(app_, question, answers);
  complete = app_.settings.importEverything;
  return static_cast<Answer>(answer);
}

std::vector<size_t> DesktopExchange::choose(std::string_view caption, std::string_view column,
                                            const std::vector<std::string>& names) {
  app_.window.endProgress();
  return app_.window.chooseRows(caption, column, names);
}

void DesktopExchange::tell(const std::string& message) {
  app_.window.endProgress();
  app_.window.tell(message);
}

void DesktopExchange::openDocument(const std::string& path) { app_.window.openDocument(path); }

bool DesktopExchange::progress(uint64_t done, uint64_t total) {
  return app_.window.showProgress(done, total);
}

}  // namespace vgps
