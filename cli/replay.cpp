#include <cstdio>
#include <memory>

#include "app/session/app_state.h"
#include "app/session/direct_ui_thread.h"
#include "app/session/on_line.h"
#include "app/session/replay_clock.h"
#include "base/text.h"
#include "cli/commands.h"
#include "cli/log_file.h"
#include "cli/state_json.h"
#include "cli/state_text.h"
#include "gps/stray_start.h"

// Replays a log: the same processing as for a receiver's lines, but on one thread with direct
// calls.
namespace vgps {
namespace {

class Replay {
 public:
  explicit Replay(const ReplayOptions& options)
      : options_(options),
        clock_(options.utcOffsetMinutes),
        app_({clock_, sounds_, uiThread_, window_, makeSerialPort, nullptr}) {
    app_.gps.options.talkers = static_cast<int32_t>(options.talkers);
    app_.gps.options.utcOffsetMinutes = options.utcOffsetMinutes;
    uiThread_.setHandler([this](const UiMessage& message) { handle(message); });
  }

  void expect(const TalkerTranslation& talkers) { app_.gps.talkers.expect(talkers); }

  void play(LogFile& log) {
    LogPiece piece;
    while (log.next(piece)) {
      if (!piece.binary) clock_.advanceTo(withoutStrayStart(piece.text));
      lineCame_ = false;
      app_.fix.receiveLine(piece.chunk);
      if (options_.lines) printLine(piece);
    }
    onUiMessage(app_, {.event = UiEvent::repaint});  // copies the fix
  }

  // Whether anything in it came from a receiver.
  bool wasLog() const { return app_.gps.stats.total() + app_.gps.stats.binary > 0; }

  void print() const {
    const uint32_t now = clock_.tick();
    const std::string text = options_.json
                                 ? jsonText(stateJson(app_.shown, app_.fix, now, true), 2) + "\n"
                                 : alignedText(stateRows(app_.shown, now));
    std::fwrite(text.data(), 1, text.size(), stdout);
  }

 private:
  // The state is only read at the end of the log, so the fix is copied once, there.
  void handle(const UiMessage& message) {
    if (message.event != UiEvent::line) return;
    lineCame_ = true;
    app_.shown.fix.fixStatus = app_.fix.fixStatus;
    noteReceived(app_.shown, message.text, message.said, clock_.tick());
    if (options_.lines && message.record != nullptr) onUiMessage(app_, message);
  }

  void printLine(const LogPiece& piece) {
    if (piece.binary && !lineCame_) return;  // a message that the end of the log truncates
    const Json line = {{"line", piece.binary ? app_.lastMessageText : validUtf8(piece.text)},
                       {"kind", lineCame_ && !piece.binary ? app_.fix.lastSentenceKind : 0},
                       {"returned", lineCame_},
                       {"fix", fixJson(app_.fix, app_.fix)}};
    const std::string text = jsonText(line, -1) + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
  }

  const ReplayOptions& options_;
  ReplayClock clock_;
  Sounds sounds_;
  Window window_;
  DirectUiThread uiThread_;
  AppState app_;
  bool lineCame_ = false;
};

}  // namespace

int runReplay(const ReplayOptions& options) {
  LogFile log(options.path);
  const auto replay = std::make_unique<Replay>(options);
  if (const auto survey = surveyLogFile(options.path, false)) replay->expect(survey->talkers);
  replay->play(log);
  if (!log.complaint().empty()) return fail(log.complaint());
  if (!options.lines) replay->print();
  const int written = finishOutput();
  if (written != 0 || replay->wasLog()) return written;
  return fail(options.path + " is not a log: no sentence and no receiver message was found");
}

}  // namespace vgps
