#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "tests/places.h"

namespace vgps {

// In the program to be: what the tests themselves ignore, run in the background, is none of it.
inline void setSignals(int ignored) {
  for (const int each : {SIGINT, SIGTERM, SIGHUP}) {
    ::signal(each, each == ignored ? SIG_IGN : SIG_DFL);
  }
}

// The real `vgps`, started with its output going through pipes.
class Program {
 public:
  // `ignored`: the signal that it is told at its start to ignore.
  explicit Program(const std::vector<std::string>& arguments, int ignored = 0) {
    int out[2], err[2];
    EXPECT_EQ(pipe2(out, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(err, O_CLOEXEC), 0);
    std::vector<const char*> words = {vgpsProgram()};
    for (const std::string& word : arguments) words.push_back(word.c_str());
    words.push_back(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
      dup2(out[1], STDOUT_FILENO);
      dup2(err[1], STDERR_FILENO);
      setSignals(ignored);
      execv(vgpsProgram(), const_cast<char**>(words.data()));
      _exit(127);
    }
    ::close(out[1]);
    ::close(err[1]);
    out_ = out[0];
    err_ = err[0];
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
    ::close(out_);
    ::close(err_);
  }

  // Takes what it writes until `done`, its end or the time. True when `done`.
  bool readUntil(const std::function<bool()>& done, int limitMs = 20000) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMs);
    while (!done() && !ended_ && std::chrono::steady_clock::now() < end) readSome(20);
    return done();
  }

  // The last whole line of its output.
  std::string lastLine() const {
    const size_t end = output.rfind('\n');
    if (end == std::string::npos) return {};
    const size_t start = end == 0 ? std::string::npos : output.rfind('\n', end - 1);
    return output.substr(start == std::string::npos ? 0 : start + 1,
                         end - (start == std::string::npos ? 0 : start + 1));
  }
  nlohmann::json lastJson() const { return nlohmann::json::parse(lastLine(), nullptr, false); }

  void signal(int number) const { kill(pid_, number); }

  // From now on its files can have so many bytes, as on a full disk. It has to ignore SIGXFSZ.
  void limitFiles(rlim_t bytes) const {
    const rlimit limit = {bytes, RLIM_INFINITY};
    EXPECT_EQ(prlimit(pid_, RLIMIT_FSIZE, &limit, nullptr), 0);
  }

  // Waits for its end; the exit status, 1000 + the signal that ended it, -1 when it hangs.
  int finish(int limitMs = 20000) {
    readUntil([] { return false; }, limitMs);
    if (!ended_) return -1;
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  }

  // The time on a processor that all its threads together have used so far, in milliseconds.
  double processorMs() const {
    double nanoseconds = 0;
    const std::string folder = "/proc/" + std::to_string(pid_) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(folder)) {
      double ran = 0;
      std::ifstream(task.path() / "schedstat") >> ran;
      nanoseconds += ran;
    }
    return nanoseconds / 1e6;
  }

  std::string output;
  std::string errors;

 private:
  void readSome(int waitMs) {
    pollfd waited[] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
    if (poll(waited, 2, waitMs) <= 0) return;
    const bool outEnded = waited[0].revents != 0 && !take(out_, output);
    const bool errEnded = waited[1].revents != 0 && !take(err_, errors);
    if (outEnded && (errEnded || !take(err_, errors))) ended_ = true;
  }
  static bool take(int fd, std::string& into) {
    char buffer[65536];
    const ssize_t count = read(fd, buffer, sizeof buffer);
    if (count > 0) into.append(buffer, static_cast<size_t>(count));
    return count > 0;
  }

  pid_t pid_ = -1;
  int out_ = -1;
  int err_ = -1;
  bool ended_ = false;
};

struct Finished {
  int status = 0;
  std::string output;
  std::string errors;
};

inline Finished runProgram(const std::vector<std::string>& arguments) {
  Program program(arguments);
  const int status = program.finish();
  return {status, program.output, program.errors};
}

inline bool says(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

inline std::string sourcePath(const std::string& path) {
  return std::string(sourceFolder()) + "/" + path;
}

// The folder of recorded logs, which is no part of this tree.
inline std::string dataFolder() {
  const char* const given = std::getenv("VEXA_DATA");
  return (given != nullptr ? std::string(given) : sourcePath("../shared/data")) + "/nmea";
}

#define SKIP_WITHOUT_DATA()                                                      \
  if (!std::filesystem::exists(dataFolder())) {                                  \
    GTEST_SKIP() << "the recorded logs are missing: no folder " << dataFolder(); \
  }

}  // namespace vgps
