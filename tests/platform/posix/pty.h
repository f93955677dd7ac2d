#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace vgps {

// A receiver's line: what is written here arrives at the port `path()`. `link`: a name that leads
// to it, so that another line can be plugged in at the same place later.
class Pty {
 public:
  explicit Pty(std::string link = {}) : link_(std::move(link)) {
    char name[64] = {};
    termios raw{};
    cfmakeraw(&raw);
    EXPECT_EQ(openpty(&master_, &slave_, name, &raw, nullptr), 0);
    fcntl(master_, F_SETFD, FD_CLOEXEC);
    fcntl(slave_, F_SETFD, FD_CLOEXEC);
    name_ = name;
    if (link_.empty()) return;
    std::filesystem::remove(link_);
    std::filesystem::create_symlink(name_, link_);
  }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;
  ~Pty() { unplug(); }

  const std::string& path() const { return link_.empty() ? name_ : link_; }

  void write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t count = ::write(master_, bytes.data(), bytes.size());
      ASSERT_GT(count, 0);
      bytes.remove_prefix(static_cast<size_t>(count));
    }
  }

  // What the program wrote to the receiver: waits for so many bytes.
  std::string readBack(size_t count) {
    std::string bytes(count, '\0');
    size_t have = 0;
    while (have < count) {
      const ssize_t got = ::read(master_, bytes.data() + have, count - have);
      if (got <= 0) break;
      have += static_cast<size_t>(got);
    }
    bytes.resize(have);
    return bytes;
  }

  void unplug() {
    if (master_ >= 0) ::close(master_);
    if (slave_ >= 0) ::close(slave_);
    master_ = slave_ = -1;
    if (!link_.empty()) std::filesystem::remove(link_);
  }

  int slave() const { return slave_; }

 private:
  std::string link_;
  std::string name_;
  int master_ = -1;
  int slave_ = -1;
};

}  // namespace vgps
