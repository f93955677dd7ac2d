#include "platform/threads.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <thread>

namespace vgps {
namespace {

TEST(Threads, OnlyTheCallingThreadGivesWay) {
  const int before = getpriority(PRIO_PROCESS, 0);
  std::thread([] {
    lowerThreadPriority();
    EXPECT_EQ(getpriority(PRIO_PROCESS, 0), 19);
  }).join();
  EXPECT_EQ(getpriority(PRIO_PROCESS, 0), before);
}

}  // namespace
}  // namespace vgps
