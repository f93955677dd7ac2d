#include "app/desktop/raw_log_keys.h"

#include <algorithm>
#include <iterator>

#include "app/desktop/desktop.h"

namespace vgps {
namespace {

constexpr int kOneRow = 1;
constexpr int kWheelRows = 3;
constexpr size_t kFilterBytes = 60;

struct KeyDuty {
  uint16_t key;
  void (*act)(RawLog& log);
};
constexpr KeyDuty kKeys[] = {
    {0x21, [](RawLog& log) { log.scrollPages(1); }},    // Page Up
    {0x22, [](RawLog& log) { log.scrollPages(-1); }},   // Page Down
    {0x23, [](RawLog& log) { log.showNewest(); }},      // End
    {0x24, [](RawLog& log) { log.showOldest(); }},      // Home
    {0x26, [](RawLog& log) { log.scroll(kOneRow); }},   // Up
    {0x28, [](RawLog& log) { log.scroll(-kOneRow); }},  // Down
};

bool isShown(const Desktop& app) { return app.currentScreen == Screen::rawLog; }

}  // namespace

bool onRawLogKey(Desktop& app, uint16_t key) {
  const auto* const found = std::find_if(std::begin(kKeys), std::end(kKeys),
                                         [key](const KeyDuty& row) { return row.key == key; });
  if (!isShown(app) || found == std::end(kKeys)) return false;
  found->act(app.rawLog);
  repaintNow(app);
  return true;
}

// Sentences are ASCII; the space bar steps the simulation.
bool onRawLogTyped(Desktop& app, char32_t character) {
  constexpr char32_t kBackspace = 8;
  constexpr char32_t kEscape = 27;
  if (!isShown(app)) return false;
  std::string filter = app.rawLog.filter();
  if (character == kBackspace) {
    if (!filter.empty()) filter.pop_back();
  } else if (character == kEscape) {
    filter.clear();
  } else if (character > ' ' && character < 0x7F && filter.size() < kFilterBytes) {
    filter += static_cast<char>(character);
  } else {
    return false;
  }
  app.rawLog.setFilter(std::move(filter));
  repaintNow(app);
  return true;
}

bool onRawLogWheel(Desktop& app, int notches) {
  if (!isShown(app)) return false;
  app.rawLog.scroll(notches * kWheelRows);
  repaintNow(app);
  return true;
}

}  // namespace vgps
