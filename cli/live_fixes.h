#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/settings/settings.h"
#include "cli/commands.h"
#include "gps/fix.h"
#include "gps/talkers.h"

namespace vgps {

struct AppState;

struct LiveSource {
  std::string port;
  uint32_t speed = 9600;
  Simulated simulated = Simulated::none;
  double seconds = 0;                  // 0: until the user stops it
  const Settings* settings = nullptr;  // of the receiver's side; null: the defaults
  std::optional<TalkerSetting> talkers = std::nullopt;  // in place of the settings'
};

// Opens the port, or the simulation in its place, without a message.
void openSource(AppState& app, const std::string& port, uint32_t speed, Simulated simulated);

class UiMailbox;

// Lets the user end `readLiveFixes`. Make it before anything starts a thread, a journal for
// instance, which would be given the signal and die of it; and only once.
std::shared_ptr<UiMailbox> stoppableMailbox();

// Reads a receiver or the simulation until the user stops it or the time is up. Calls `take` with
// every complete fix and `tell` with a message when the receiver cannot be opened, is lost, or is
// back, and when sentences are left out; both on this thread.
void readLiveFixes(const std::shared_ptr<UiMailbox>& mailbox, const LiveSource& source,
                   const std::function<void(const FixRecord&)>& take,
                   const std::function<void(const std::string&)>& tell);

}  // namespace vgps
