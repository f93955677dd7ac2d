#include "app/desktop/commands.h"
#include "app/desktop/startup.h"
#include "base/texts.h"

// Closing the program.
namespace vgps {
namespace {

// Asks the user; No is the default.
bool confirmLoss(Desktop& app, size_t points) {
  return points == 0 || app.window.ask(textWith(Text::askToCloseUnsaved, std::to_string(points)));
}

// Whether closing loses no points, or the user agrees to lose them. `recorded` means that the
// recording ended just now and the library refused its points. The error message has been shown
// then, so the program stays open without another question; the next close asks.
bool confirmClose(Desktop& app, bool recorded) {
  Recorder& recorder = app.recorder;
  const size_t points = app.recorder.track.points.size();
  if (!recorder.hasJournal()) {
    if (recorded) return points == 0;
    return !recorder.inMemoryOnly() || confirmLoss(app, points);
  }
  if (recorder.closeJournal()) return true;
  const size_t unsavedPoints = recorder.resumeJournal();
  if (recorded && unsavedPoints > 0) return false;
  if (!confirmLoss(app, unsavedPoints)) return false;
  recorder.closeJournal();  // the disk may have space now
  return true;
}

}  // namespace

bool closeRequested(Desktop& app) {
  const int32_t state = app.recorder.track.state;
  if (state == kRecording || state == kPlaying) {
    if (!askQuestion(app, Text::askToStop)) return false;
    runCommand(app, Command::endRecording);
  }
  if (!confirmClose(app, state == kRecording)) return false;
  rememberView(app);
  app.fix.stopReaders(0);  // they end by themselves; who waits for them comes later
  app.window.destroy();
  return true;
}

}  // namespace vgps
