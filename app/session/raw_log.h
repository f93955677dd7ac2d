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
  std::string time;  // "12:35:19.250", from the computer's clock
  std::string text;  // UTF-8
};

// The rows that the receiver sent, and which of them the raw log screen shows: the newest, until
// the user pauses or scrolls back. From then on the view stays on the same rows while new ones
// arrive.
class RawLog {
 public:
  static constexpr size_t kRows = 5000;

  // Truncates long rows and replaces bytes that are not UTF-8.
  void add(const DateTime& local, std::string_view text);
  void clear();

  void pause(bool paused);
  bool isPaused() const { return paused_; }
  // Positive: toward older rows; negative: toward newer ones.
  void scroll(int rows);
  void scrollPages(int pages);
  void showOldest();
  void showNewest();  // also resumes

  // Shows only rows that contain this text, ignoring case; empty: all rows.
  void setFilter(std::string text);
  const std::string& filter() const { return filter_; }

  // How many the screen has room for; until it tells, one.
  void setRoom(size_t rows) { room_ = std::max<size_t>(rows, 1); }

  // The rows of the view, oldest first, at most `most`.
  std::vector<RawLogRow> view(size_t most) const;
  // All rows that match the filter, one per line, for the clipboard.
  std::string text() const;

  size_t size() const { return rows_.size(); }
  size_t matching() const { return matching_; }
  // The number of matching rows that are newer than the view.
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
