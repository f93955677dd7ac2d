#include "app/session/connection.h"

#include <utility>
#include <vector>

#include "app/session/apply_settings.h"
#include "app/session/line_notes.h"
#include "base/texts.h"
#include "gps/port_errors.h"
#include "gps/town_walk.h"

namespace vgps {
namespace {

constexpr int kReaderEndMs = 2000;

// Repeated, so that the reason is shown as long as it applies; other notices take precedence. A
// missing port needs no notice: the status already says that it is being retried.
void tellReason(AppState& app) {
  const PortError error = app.link.error();
  if (error == PortError::none || error == PortError::notFound) return;
  const std::string text = portProblem(error, app.link.source().port);
  if (currentNotice(app).empty() || currentNotice(app) == text) showNotice(app, text);
}

void tellOddLines(AppState& app) {
  if (!currentNotice(app).empty()) return;
  const std::string news = newsOfLines(app.shown.stats, app.linesTold);
  if (!news.empty()) showNotice(app, news);
}

// Sources that are not available here fall back to the serial port, if there is one.
void tellMissingSource(AppState& app, const SourceChoice& choice) {
  if (choice.simulate) return;
  if (choice.useSensorApi && app.gps.sensors != nullptr) {
    if (!app.fix.running) showNotice(app, textOf(Text::sensorNotFound));
  } else if (choice.useSensorApi) {
    showNotice(app, textWith(Text::noLocationSensors, choice.port));
  } else if (choice.useGpsApi) {
    showNotice(app, textWith(Text::noGpsInterface, choice.port));
  }
}

// Unrecognized bytes arrive, most likely because of a wrong baud rate. Reported once per
// connection.
void offerSearchForSpeed(AppState& app) {
  constexpr uint32_t kRecentMs = 5000;
  const LastReceived::Arrival& noise = app.shown.arrivals.noise;
  const bool noisy = noise.ever && app.platform.clock.tick() - noise.tick <= kRecentMs;
  if (app.searchOffered || app.shown.dataSeen || !noisy) return;
  if (app.link.state() != Link::State::open) return;
  app.searchOffered = true;
  app.platform.window.offerSearch(textWith(Text::wrongSpeedOf, app.link.source().port));
}

// Reconnecting to a receiver goes on with its maxima.
bool isSameSource(const SourceChoice& one, const SourceChoice& other) {
  return one.port == other.port && one.simulate == other.simulate && one.walk == other.walk &&
         one.useSensorApi == other.useSensorApi;
}

}  // namespace

std::string sourceName(const SourceChoice& source) {
  if (source.simulate) return std::string(textOf(Text::simulation));
  if (source.useSensorApi) return std::string(textOf(Text::locationSensor));
  if (source.port.empty()) return {};
  return textWith(Text::serialSource, source.port, std::to_string(source.speed));
}

SourceChoice sourceOfSettings(AppState& app) {
  refreshSettings(app);
  const Settings& settings = app.settings;
  return {.port = settings.port,
          .speed = static_cast<uint32_t>(settings.baudRate),
          .simulate = settings.simulate,
          .useGpsApi = settings.useGpsApi,
          .useSensorApi = settings.useSensorApi != 0};
}

void chooseSimulationData(AppState& app, bool walk) {
  const SimulationData wanted = walk ? SimulationData::walk : SimulationData::trip;
  if (app.simulationData == SimulationData::loaded || app.simulationData == wanted) return;
  app.simulationData = wanted;
  app.gps.simulation.setLines(walk ? townWalkLines() : builtInSimLines());
}

bool loadSimulationFrom(AppState& app, const std::string& path) {
  std::vector<std::string> lines;
  if (!app.extensions.simulationFrom || !app.extensions.simulationFrom(path, lines)) return false;
  return setSimulation(app, std::move(lines));
}

bool setSimulation(AppState& app, std::vector<std::string> lines) {
  if (lines.empty()) return false;
  replayLines(app, std::move(lines));
  return true;
}

void replayLines(AppState& app, std::vector<std::string> lines) {
  app.gps.simulation.setLines(std::move(lines));
  app.simulationData = SimulationData::loaded;
}

void resetSourceState(UiFix& shown) {
  shown.dataSeen = shown.fixSeen = false;
  shown.arrivals.quality = shown.arrivals.errors = shown.arrivals.noise = {};
}

void resetMaxima(AppState& app) {
  app.shown.fastest = {};
  app.shown.highest = app.shown.exactHighest = 0;
  app.pendingDisplay.maxSpeed = app.pendingDisplay.maxAltitude = 0;
  app.pendingDisplay.maximumCountdown = 0;
}

void resetTrip(AppState& app) {
  resetMaxima(app);
  app.statistics.tripMovingSeconds = app.statistics.tripStoppedSeconds = 0;
}

bool connectReceiver(AppState& app, const SourceChoice& choice) {
  resetSourceState(app.shown);
  if (!isSameSource(app.link.source(), choice)) resetMaxima(app);
  if (choice.simulate) chooseSimulationData(app, choice.walk);
  app.searchOffered = false;
  if (app.link.open(choice)) {
    tellMissingSource(app, choice);
    return true;
  }
  const std::string reason = choice.port.empty() ? std::string(textOf(Text::noReceiverChosen))
                                                 : portProblem(app.link.error(), choice.port);
  showNotice(app, reason);
  app.platform.window.offerSearch(std::string(textOf(Text::openingFailed)) + "\n\n" + reason);
  return false;
}

void checkConnection(AppState& app) {
  Link& link = app.link;
  if (link.check(app.settings.reconnect)) {
    const bool unplugged = link.error() == PortError::notFound;
    app.platform.sounds.play("ERR2");
    showNotice(app, textWith(unplugged ? Text::unpluggedRetrying : Text::noDataRetrying,
                             link.source().port));
  } else if (link.state() == Link::State::lost) {
    tellReason(app);
  } else {
    offerSearchForSpeed(app);
  }
  tellOddLines(app);
}

std::string sourceInUse(const AppState& app) {
  SourceChoice source = app.link.source();
  if (app.gps.sensors == nullptr) source.useSensorApi = false;
  return sourceName(source);
}

int32_t measureUtcOffset(const DateTime& utc, const DateTime& local) {
  int32_t utcHour = utc.hour;
  int32_t localHour = local.hour;
  if (utc.day > local.day) utcHour += 24;
  if (local.day > utc.day) localHour += 24;
  return (utcHour - localHour) * 60;
}

bool stopReceiver(AppState& app) { return app.fix.stopReaders(kReaderEndMs); }

}  // namespace vgps
