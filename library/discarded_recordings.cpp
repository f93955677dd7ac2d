#include "library/discarded_recordings.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string_view>

#include "files/input_file.h"
#include "library/journal_format.h"
#include "platform/files.h"

namespace vgps {
namespace {

constexpr size_t kMostKept = 20;
constexpr int64_t kLongestKeptMs = int64_t{30} * kDayMs;
constexpr uint64_t kMostBytes = 200'000'000;
constexpr int kNamesTried = 100;

constexpr std::string_view kWord = "discarded-";
constexpr std::string_view kTimeForm = "YYYYMMDD-hhmmss";
constexpr std::string_view kExtension = ".journal";

// The time in the name of a file, which may be followed by "-2" etc.
std::optional<int64_t> discardedAt(std::string_view name) {
  DateTime time;
  if (!name.ends_with(kExtension)) return std::nullopt;
  if (!name.starts_with(kWord)) return std::nullopt;
  if (!readDateTime(name.substr(kWord.size(), kTimeForm.size()), kTimeForm, time)) {
    return std::nullopt;
  }
  return millisecondsOf(time).value_or(0);  // 0 if the computer's clock had no valid date
}

}  // namespace

std::vector<DiscardedRecording> discardedRecordings(const std::string& folder) {
  std::vector<DiscardedRecording> found;
  for (const std::string& name : filesIn(folder)) {
    const std::optional<int64_t> utc = discardedAt(name);
    FileStamp stamp;
    const std::string path = pathIn(folder, name);
    if (utc && fileStamp(path, stamp)) found.push_back({path, *utc, stamp.size});
  }
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
    return a.utc != b.utc ? a.utc > b.utc : a.path > b.path;
  });
  return found;
}

TrackSummary summaryOfDiscarded(const DiscardedRecording& recording) {
  Track track;
  InputFile file(recording.path);
  if (file && recording.bytes <= kMostBytes) track.points = readJournal(file.source()).points;
  if (!track.points.empty()) track.startUtc = startOf(track.points.front());
  return summaryOf(track);
}

std::string freeDiscardedPath(const std::string& folder, const DateTime& utc) {
  char name[80];
  std::snprintf(name, sizeof name, "discarded-%04u%02u%02u-%02u%02u%02u", unsigned{utc.year},
                unsigned{utc.month}, unsigned{utc.day}, unsigned{utc.hour}, unsigned{utc.minute},
                unsigned{utc.second});
  const std::string stem = pathIn(folder, name);
  for (int number = 1; number <= kNamesTried; ++number) {
    const std::string more = number == 1 ? "" : "-" + std::to_string(number);
    std::string path = stem + more + std::string(kExtension);
    if (!fileExists(path)) return path;
  }
  return {};
}

void pruneDiscarded(const std::string& folder, const DateTime& utc) {
  const std::optional<int64_t> now = millisecondsOf(utc);
  size_t count = 0;
  uint64_t bytes = 0;
  for (const DiscardedRecording& one : discardedRecordings(folder)) {
    bytes += one.bytes;
    const bool old = now && *now - one.utc > kLongestKeptMs;
    if (count++ > 0 && (old || count > kMostKept || bytes > kMostBytes)) removeFile(one.path);
  }
}

}  // namespace vgps
