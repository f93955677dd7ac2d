#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_time.h"

namespace vgps {

struct RawLogRow {
  std::string time;  // "12:35:19.250", of the computer's clock
  std::string text;  // UTF-8
};

// What the receiver sends, row by row, and which of it the raw log screen shows: the newest, until
// the user pauses or scrolls back. Then the view stays on its rows while new ones come.
class RawLog {
 public:
  static constexpr size_t kRows = 5000;

  // Long rows are cut, and bytes that are not UTF-8 replaced.
  void add(const DateTime& local, std::string_view text);
  void clear();

  void pause(bool paused);
  bool isPaused() const { return paused_; }
  // Towards older rows, or, negative, towards newer ones. The view stays full.
  void scroll(int rows);
  void scrollPages(int pages);
  void showOldest();
  void showNewest();  // and goes on

  // Only rows that contain this text are shown, whatever the case of its letters; empty: all.
  void setFilter(std::string text);
  const std::string& filter() const { return filter_; }

  // How many the screen has room for; until it tells, one.
  void setRoom(size_t rows) { room_ = std::max<size_t>(rows, 1); }

  // The rows of the view, oldest first, at most `most`.
  std::vector<RawLogRow> view(size_t most) const;
  // All that match the filter, a line each, for the clipboard.
  std::string text() const;

  size_t size() const { return rows_.size(); }
  size_t matching() const { return matching_; }
  // Matching rows that are newer than the view.
  size_t newer() const { return newer_; }
  bool empty() const { return rows_.empty(); }

 private:
  bool matches(const RawLogRow& row) const;

  std::deque<RawLogRow> rows_;
  std::string filter_;
  size_t matching_ = 0;
  size_t newer_ = 0;
  size_t room_ = 1;
  bool paused_ = false;
};

}  // namespace vgps
