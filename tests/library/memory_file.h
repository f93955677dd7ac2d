#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/exclusive_file.h"

namespace vgps {

// A disk in memory that can be full, slow to flush, or broken.
struct MemoryDisk {
  struct Entry {
    std::vector<uint8_t> bytes;
    bool held = false;
  };

  ExclusiveOpener opener() {
    return [this](const std::string& path, OpenMode mode, FileOpening& opening) {
      return open(path, mode, opening);
    };
  }

  // Bytes that the disk has for sure: as they were at the last flush.
  std::vector<uint8_t> flushed() {
    const std::lock_guard lock(mutex);
    return safe;
  }
  void setRoom(size_t bytes) {
    const std::lock_guard lock(mutex);
    room = bytes;
  }

  std::mutex mutex;
  std::map<std::string, std::shared_ptr<Entry>> files;
  std::vector<uint8_t> safe;
  size_t room = SIZE_MAX;  // bytes that a file may have
  bool flushWorks = true;
  size_t readable = SIZE_MAX;  // bytes of a file before a fault

 private:
  class File;
  std::unique_ptr<ExclusiveFile> open(const std::string& path, OpenMode mode, FileOpening& opening);
};

class MemoryDisk::File : public ExclusiveFile {
 public:
  File(MemoryDisk& disk, std::string path, std::shared_ptr<Entry> entry)
      : disk_(disk), path_(std::move(path)), entry_(std::move(entry)) {}
  ~File() override { entry_->held = false; }

  uint64_t size() override { return entry_->bytes.size(); }
  size_t readAt(uint64_t offset, std::span<uint8_t> into) override {
    const size_t end = std::min(entry_->bytes.size(), disk_.readable);
    const size_t from = std::min<size_t>(offset, end);
    const size_t count = std::min(into.size(), end - from);
    std::copy_n(entry_->bytes.begin() + static_cast<std::ptrdiff_t>(from), count, into.begin());
    return count;
  }
  bool writeAt(uint64_t offset, std::span<const uint8_t> bytes) override {
    const std::lock_guard lock(disk_.mutex);
    const size_t end = std::min<size_t>(offset + bytes.size(), disk_.room);
    if (end > entry_->bytes.size()) entry_->bytes.resize(end);
    for (size_t i = 0; offset + i < end; ++i) entry_->bytes[offset + i] = bytes[i];
    return end == offset + bytes.size();
  }
  bool cutAt(uint64_t size) override {
    entry_->bytes.resize(size);
    return true;
  }
  bool flush() override {
    const std::lock_guard lock(disk_.mutex);
    if (disk_.flushWorks) disk_.safe = entry_->bytes;
    return disk_.flushWorks;
  }
  bool remove() override { return disk_.files.erase(path_) > 0; }

 private:
  MemoryDisk& disk_;
  std::string path_;
  std::shared_ptr<Entry> entry_;
};

inline std::unique_ptr<ExclusiveFile> MemoryDisk::open(const std::string& path, OpenMode mode,
                                                       FileOpening& opening) {
  auto found = files.find(path);
  if (found != files.end() && mode == OpenMode::createNew) {
    opening = FileOpening::inUse;
    return nullptr;
  }
  if (found == files.end() && mode != OpenMode::existing)
    found = files.emplace(path, std::make_shared<Entry>()).first;
  opening = FileOpening::missing;
  if (found == files.end()) return nullptr;
  opening = FileOpening::inUse;
  if (found->second->held) return nullptr;
  opening = FileOpening::opened;
  found->second->held = true;
  return std::make_unique<File>(*this, path, found->second);
}

}  // namespace vgps
