#include "app/commands.h"
#include "app/startup.h"

// The wish to close the program.
namespace vgps {
namespace {

constexpr uint32_t kEndCommand = 1204;
constexpr uint32_t kAskToStop = 406;

}  // namespace

bool closeRequested(AppState& app) {
  Window& window = app.platform.window;
  window.closeBrowser();
  const int32_t state = app.track.state;
  if (state == kRecording || state == kPlaying) {
    if (!askQuestion(app, kAskToStop)) return false;
    runCommand(app, kEndCommand);
    // The library refused the track and no journal has it: closing now would lose it. The message
    // says why; who closes again has been told.
    const bool kept = app.track.points.empty() || app.recordingHooks.hasJournal();
    if (state == kRecording && !kept) return false;
  }
  app.fix.stopReaders(0);  // they end by themselves; who waits for them comes later
  window.destroy();
  return true;
}

}  // namespace vgps
