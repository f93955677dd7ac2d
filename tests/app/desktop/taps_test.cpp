#include "app/desktop/taps.h"

#include <gtest/gtest.h>

#include "app/session/timers.h"
#include "tests/fakes/app_world.h"

namespace vgps {
namespace {

TEST(Taps, ATapFollowsOnceAfterATenthOfASecond) {
  AppWorld world;
  delayTap(world.app, 0x00100020);
  delayTap(world.app, 0x00300040);  // the second takes the place of the first
  EXPECT_EQ(world.window.timers[kTapTimer], 100U);
  onTapTimer(world.app);
  EXPECT_EQ(world.window.taps, std::vector<uint32_t>{0x00300040});
  EXPECT_FALSE(world.window.timers.contains(kTapTimer));
}

}  // namespace
}  // namespace vgps
