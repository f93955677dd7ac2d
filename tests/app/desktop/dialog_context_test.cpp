#include "app/desktop/dialog_context.h"

#include <gtest/gtest.h>

#include "app/session/connection.h"
#include "res/dialog_ids.h"
#include "tests/fakes/app_world.h"
#include "tests/fakes/fake_dialog_view.h"

// Dialogs in the whole program: what follows from them.
namespace vgps {
namespace {

struct DialogWorld : AppWorld {
  // Confirms the dialog of that command after `edit`.
  template <typename Edit>
  void confirm(Command command, Edit edit) {
    const Dialog& dialog = *findDialog(command);
    DialogContext context = dialogContextOf(app);
    FakeDialogView view;
    fillDialog(dialog, view, context);
    edit(view);
    confirmDialog(dialog, view, context);
  }
};

TEST(DialogsInTheProgram, TheReceiverTakesTheEpochSentenceOver) {
  DialogWorld world;
  world.confirm(Command::gpsSetup, [](FakeDialogView& view) {
    view.setChecked(CONTROL_EPOCH_AUTOMATIC, false);
    view.setChecked(CONTROL_EPOCH_GGA, true);
  });
  EXPECT_EQ(world.app.gps.options.epochSentenceSetting, 2);
}

// The grid and the raw editor write into the document while the program runs.
TEST(DialogsInTheProgram, OpenWithWhatTheDocumentHoldsNow) {
  DialogWorld world;
  world.app.config.setOther("cfg\\vgps", "sxv", "90");
  world.app.config.setOther("cfg\\vgps", "smv", "1");
  world.confirm(Command::speedOptions,
                [](FakeDialogView& view) { EXPECT_EQ(view.text(CONTROL_SPEED_LIMIT), "90"); });
  EXPECT_EQ(world.app.settings.speedLimit, 90);
  EXPECT_EQ(world.app.gps.options.speedUnit, 1);
}

TEST(DialogsInTheProgram, AnIdleTrackTakesNewThresholds) {
  for (const bool recording : {false, true}) {
    DialogWorld world;
    world.app.recorder.track.state = recording ? kRecording : kIdle;
    world.app.recorder.track.speedThreshold = 7;
    world.confirm(Command::recordingOptions,
                  [](FakeDialogView& view) { view.setText(CONTROL_RECORD_SPEED_STEP, "9"); });
    EXPECT_EQ(world.app.recorder.options.speed, 9);
    EXPECT_EQ(world.app.recorder.track.speedThreshold, recording ? 7 : 0);
  }
}

// The map need not follow more often than it does otherwise.
TEST(DialogsInTheProgram, TheWindowIsPaintedAfterwards) {
  DialogWorld world;
  const auto repaintsAfter = [&](Command command) {
    const int before = world.window.repaints;
    world.confirm(command, [](FakeDialogView&) {});
    return world.window.repaints - before;
  };
  world.clock.now += 800;
  EXPECT_EQ(repaintsAfter(Command::recordingOptions), 1);
  EXPECT_EQ(repaintsAfter(Command::recordingOptions), 0);
  EXPECT_EQ(repaintsAfter(Command::distanceViews), 1);
  EXPECT_EQ(repaintsAfter(Command::distanceViews), 1);
  world.clock.now += 800;
  EXPECT_EQ(repaintsAfter(Command::recordingOptions), 1);
}

TEST(DialogsInTheProgram, PortSearchEndsTheConnectionWithoutASound) {
  DialogWorld world;
  world.ports.add(devicePath("COM40"));
  ASSERT_TRUE(connectReceiver(world.app, {.port = "COM40"}));
  world.sounds.played.clear();
  DialogContext context = dialogContextOf(world.app);
  const PortSearch search = context.beginPortSearch(4800);
  EXPECT_FALSE(world.app.fix.running);
  EXPECT_EQ(world.app.link.state(), Link::State::closed);
  int asked = 0;
  EXPECT_TRUE(search([&](uint32_t) { return ++asked > 3; }).empty());
  EXPECT_EQ(asked, 4);
  EXPECT_TRUE(world.sounds.played.empty());
  EXPECT_TRUE(stopReceiver(world.app));
}

}  // namespace
}  // namespace vgps
