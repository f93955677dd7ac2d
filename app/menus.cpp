#include "app/menus.h"

#include <array>

#include "app/commands.h"
#include "base/texts.h"

namespace vgps {
namespace {

constexpr MenuRow popup(uint32_t text) { return {MenuRow::popup, text}; }
constexpr MenuRow item(uint32_t command) { return {MenuRow::item, command}; }
constexpr MenuRow kLine = {MenuRow::separator, 0};
constexpr MenuRow kEnd = {MenuRow::end, 0};

constexpr auto kMenu = std::to_array<MenuRow>({
    // clang-format off
    popup(9001),  // GPS
      item(101), item(105), item(106), kLine,
      item(102), item(103), kLine,
      item(104), item(361), kLine,
      item(199),
    kEnd,
    popup(9002),  // View
      item(201), item(204), item(205), item(206), item(207), item(209), kLine,
      popup(9021),  // more screens
        item(210), item(211), item(212), item(213), item(214), item(215), item(216), item(217),
        item(218), item(219), item(229), item(231), item(232),
      kEnd,
      item(299), item(20001), kLine,
      item(321), item(322), item(323), item(20002), kLine,
      popup(9022),  // window size
        item(801), item(802), item(803), item(804), item(805), item(806),
      kEnd,
    kEnd,
    popup(9003),  // Map
      item(331), item(332), item(333), item(334), item(335), item(336), item(337), item(338),
      item(339), item(340), kLine,
      item(341), item(342), item(350), item(360), kLine,
      item(1399), item(1400),
    kEnd,
    popup(9004),  // Track
      item(1202), item(1203), item(1215), item(1216), item(1204), kLine,
      popup(9041),  // recording presets
        item(1221), item(1222), item(1223),
      kEnd,
      item(1285), item(1224), kLine,
      item(1213), item(1212), item(1208), item(1209), item(1210), item(1211), item(1217),
      item(1214),
    kEnd,
    popup(9005),  // Route
      item(1218), item(1205), item(1206), item(1207), item(1245),
    kEnd,
    popup(9006),  // Waypoints
      item(1240), item(1241), item(1242), kLine,
      item(1243), item(1244),
    kEnd,
    popup(9007),  // Files
      item(1301), item(1302), kLine,
      item(1311), item(1312), kLine,
      item(1321), item(1322),
    kEnd,
    popup(9008),  // Tools
      item(221), item(222), item(223), kLine,
      item(1501), item(501),
    kEnd,
    popup(9009),  // Options
      item(1901), item(1902), item(1903), item(1904), item(1905), item(1906), item(1907),
      item(1908), item(1909), item(1910), item(1911), item(1912), item(1913), item(1914),
      item(1915), item(1916), kLine,
      item(1999),
    kEnd,
    popup(9010),  // Debug
      item(371), item(372), item(399), kLine,
      item(378), item(379), item(380), item(384), kLine,
      item(381), item(382), item(383),
    kEnd,
    popup(9011),  // SIRF
      item(401), item(402), kLine,
      item(404), item(405), kLine,
      popup(9111),  // rates
        item(411), item(412), item(413), item(414), item(415), item(416),
      kEnd,
      item(421), item(422), item(423), item(424), kLine,
      item(428), item(429),
    kEnd,
    popup(9012),  // Help
      item(195), item(196), item(197), kLine,
      item(198),
    kEnd,
    // clang-format on
});

constexpr uint16_t kF1 = 0x70;
constexpr uint16_t functionKey(int number) { return static_cast<uint16_t>(kF1 + number - 1); }

constexpr auto kAccelerators = std::to_array<KeyRow>({
    // key, control, shift, alt, command
    {functionKey(1), false, false, false, 198},
    {functionKey(2), false, false, false, 201},
    {functionKey(3), false, false, false, 205},
    {functionKey(4), false, false, false, 204},
    {functionKey(5), false, false, false, 102},
    {functionKey(5), false, true, false, 103},
    {functionKey(6), false, false, false, 299},
    {functionKey(9), false, false, false, 1202},
    {functionKey(9), false, true, false, 1204},
    {functionKey(11), false, false, false, 1203},
    {functionKey(12), false, false, false, 1215},
    {'D', true, false, false, 321},
    {'F', true, false, false, 105},
    {'G', true, false, false, 101},
    {'L', true, false, false, 371},
    {'N', true, false, false, 322},
    {'O', true, false, false, 1213},
    {'S', true, false, false, 1212},
    {'T', true, false, false, 1999},
});

// With Ctrl, Alt and Shift together, which other programs leave alone.
constexpr auto kHotKeys = std::to_array<KeyRow>({
    {'C', true, true, true, 102},
    {'R', true, true, true, 1202},
    {'P', true, true, true, 1203},
    {'E', true, true, true, 1204},
    {'M', true, true, true, 1215},
    {'V', true, true, true, 20001},
    {'N', true, true, true, 20002},
});

}  // namespace

std::span<const MenuRow> menuRows() { return kMenu; }
std::span<const KeyRow> acceleratorRows() { return kAccelerators; }
std::span<const KeyRow> hotKeyRows() { return kHotKeys; }

std::string keyText(const KeyRow& row) {
  std::string text;
  if (row.control) text += textOf(771);
  if (row.alt) text += textOf(772);
  if (row.shift) text += textOf(773);
  if (row.key >= kF1) return text + 'F' + std::to_string(row.key - kF1 + 1);
  return text + static_cast<char>(row.key);
}

std::string menuItemText(uint32_t command) {
  std::string text(textOf(menuTextNumber(command)));
  for (const KeyRow& row : kAccelerators) {
    if (row.command == command) return text + '\t' + keyText(row);
  }
  return text;
}

bool menuItemChecked(const AppState& app, uint32_t command) {
  const CommandRow* const row = findCommand(command);
  return row != nullptr && row->checked != nullptr && row->checked(app, command);
}

bool menuItemEnabled(const AppState& app, uint32_t command) {
  const CommandRow* const row = findCommand(command);
  return row != nullptr && (row->enabled == nullptr || row->enabled(app, command));
}

}  // namespace vgps
