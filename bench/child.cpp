#include "bench/child.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <chrono>

extern char** environ;

namespace vgps {

ChildRun runChild(const std::vector<std::string>& arguments) {
  std::vector<char*> words;
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  const int refused = posix_spawn(&child, words[0], &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (refused != 0) return {};
  int status = 0;
  rusage used{};
  wait4(child, &status, 0, &used);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  return {WIFEXITED(status) && WEXITSTATUS(status) == 0, took.count(),
          static_cast<double>(used.ru_maxrss) / 1024};
}

}  // namespace vgps
