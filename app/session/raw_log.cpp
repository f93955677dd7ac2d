#include "app/session/raw_log.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "base/text.h"

namespace vgps {
namespace {

constexpr size_t kRowBytes = 1000;  // wider than any screen

std::string timeText(const DateTime& time) {
  char text[32];
  std::snprintf(text, sizeof text, "%02u:%02u:%02u.%03u", unsigned{time.hour},
                unsigned{time.minute}, unsigned{time.second}, unsigned{time.millisecond});
  return text;
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

void RawLog::add(const DateTime& local, std::string_view text) {
  rows_.push_back({timeText(local), validUtf8(text.substr(0, kRowBytes))});
  if (matches(rows_.back())) {
    ++matching_;
    if (paused_ || newer_ > 0) ++newer_;
  }
  if (rows_.size() > kRows) {
    if (matches(rows_.front())) --matching_;
    rows_.pop_front();
  }
  newer_ = std::min(newer_, matching_);
}

void RawLog::clear() {
  rows_.clear();
  matching_ = newer_ = 0;
}

void RawLog::pause(bool paused) {
  paused_ = paused;
  if (!paused) newer_ = 0;
}

// The oldest row stays visible.
void RawLog::scroll(int rows) {
  const auto newest = static_cast<long long>(newer_) + rows;
  const auto most = static_cast<long long>(matching_ > room_ ? matching_ - room_ : 0);
  newer_ = static_cast<size_t>(std::clamp(newest, 0LL, most));
}

// One row of the last page stays in view, where the eye left it.
void RawLog::scrollPages(int pages) {
  scroll(pages * static_cast<int>(std::max<size_t>(room_ - 1, 1)));
}

void RawLog::showOldest() { scroll(static_cast<int>(kRows)); }

void RawLog::showNewest() { pause(false); }

void RawLog::setFilter(std::string text) {
  filter_ = std::move(text);
  matching_ = static_cast<size_t>(std::count_if(
      rows_.begin(), rows_.end(), [this](const RawLogRow& row) { return matches(row); }));
  newer_ = 0;
}

std::vector<RawLogRow> RawLog::view(size_t most) const {
  std::vector<RawLogRow> found;
  size_t below = newer_;
  for (auto row = rows_.rbegin(); row != rows_.rend() && found.size() < most; ++row) {
    if (!matches(*row)) continue;
    if (below > 0) {
      --below;
    } else {
      found.push_back(*row);
    }
  }
  std::reverse(found.begin(), found.end());
  return found;
}

std::string RawLog::text() const {
  std::string all;
  for (const RawLogRow& row : rows_) {
    if (!matches(row)) continue;
    const size_t end = row.text.find_last_not_of("\r\n");
    all.append(row.time).append("  ").append(row.text, 0, end + 1).append("\r\n");
  }
  return all;
}

bool RawLog::matches(const RawLogRow& row) const {
  const auto same = [](char a, char b) { return lower(a) == lower(b); };
  return std::search(row.text.begin(), row.text.end(), filter_.begin(), filter_.end(), same) !=
             row.text.end() ||
         filter_.empty();
}

}  // namespace vgps
