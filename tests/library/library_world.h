#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "library/track_library.h"
#include "platform/files.h"
#include "tests/fakes/test_folder.h"
#include "tests/track/recording_world.h"

namespace vgps {

// The system's files, on a disk that stops working after so many steps: what is written, cut,
// flushed or deleted then does not happen any more.
class DyingDisk {
 public:
  explicit DyingDisk(int steps) : left_(std::make_shared<int>(steps)) {}

  LibraryDisk disk() const {
    return {.open = [left = left_](const std::string& path, OpenMode mode,
                                   FileOpening& opening) -> std::unique_ptr<ExclusiveFile> {
              if (!step(*left)) {
                opening = FileOpening::refused;
                return nullptr;
              }
              auto file = openExclusive(path, mode, opening);
              if (file == nullptr) return nullptr;
              return std::make_unique<File>(std::move(file), left);
            },
            .waitForOthersMs = 0};
  }
  bool isDead() const { return *left_ <= 0; }

 private:
  static bool step(int& left) { return left > 0 && --left >= 0; }

  class File : public ExclusiveFile {
   public:
    File(std::unique_ptr<ExclusiveFile> file, std::shared_ptr<int> left)
        : file_(std::move(file)), left_(std::move(left)) {}
    uint64_t size() override { return file_->size(); }
    size_t readAt(uint64_t offset, std::span<uint8_t> into) override {
      return file_->readAt(offset, into);
    }
    bool writeAt(uint64_t offset, std::span<const uint8_t> bytes) override {
      if (step(*left_)) return file_->writeAt(offset, bytes);
      file_->writeAt(offset, bytes.first(bytes.size() / 2));  // as far as it came
      return false;
    }
    bool cutAt(uint64_t size) override { return step(*left_) && file_->cutAt(size); }
    bool flush() override { return step(*left_) && file_->flush(); }
    bool remove() override { return step(*left_) && file_->remove(); }

   private:
    std::unique_ptr<ExclusiveFile> file_;
    std::shared_ptr<int> left_;
  };

  std::shared_ptr<int> left_;
};

inline RecordingOptions allAttributes() {
  RecordingOptions options;
  options.recordSpeed = options.recordTime = options.recordCourse = true;
  return options;
}

// `count` points a thousandth of a degree of longitude apart, ten seconds apart; marks say which is
// which.
inline Track walkingTrack(const std::string& name, uint32_t count, uint32_t firstMark = 1) {
  Track track;
  track.name = name;
  for (uint32_t i = 0; i < count; ++i) {
    TrackPoint point{FixAt{.course = 90, .kmh = 36, .longitude = 11 + i * 0.001}};
    point.localTime = {.year = 2010,
                       .month = 7,
                       .day = 5,
                       .hour = 9,
                       .minute = static_cast<uint16_t>(i / 6 % 60),
                       .second = static_cast<uint16_t>(i % 6 * 10)};
    point.m = firstMark + i;
    track.points.push_back(point);
  }
  return track;
}

inline const DateTime kAddedAt = {2010, 7, 1, 5, 9, 3, 4, 56};

inline LibraryResult addWalk(TrackLibrary& library, const std::string& name, uint32_t count,
                             uint32_t firstMark = 1) {
  Track track = walkingTrack(name, count, firstMark);
  return library.add(track, allAttributes(), kAddedAt);
}

// "Ride 1,2,3 | Hike 1,2": names and the points' marks.
inline std::string contentsOf(TrackLibrary& library) {
  std::string text;
  for (size_t i = 0; i < library.tracks().size(); ++i) {
    Track track;
    EXPECT_EQ(library.load(i, 0, track), LibraryResult::done);
    EXPECT_EQ(track.points.size(), library.tracks()[i].points);
    EXPECT_EQ(track.name, library.tracks()[i].name);
    text += (i == 0 ? "" : " | ") + track.name;
    for (size_t p = 0; p < track.points.size(); ++p) {
      text += (p == 0 ? " " : ",") + std::to_string(track.points[p].m);
    }
  }
  return text;
}

inline std::string contentsAt(const std::string& path) {
  TrackLibrary library;
  EXPECT_NE(library.open(path), LibraryState::unreadable);
  return contentsOf(library);
}

}  // namespace vgps
