#include "app/session/connection.h"

#include <utility>
#include <vector>

#include "app/session/apply_settings.h"
#include "base/texts.h"

namespace vgps {
namespace {

constexpr int kReaderEndMs = 2000;

std::string nameOf(const SourceChoice& choice) {
  if (choice.simulate) return std::string(textOf(Text::simulation));
  if (choice.useSensorApi) return std::string(textOf(Text::locationSensor));
  return serialSourceName(choice.port, choice.speed);
}

}  // namespace

std::string serialSourceName(const std::string& port, uint32_t speed) {
  return textWith(Text::serialSource, port, std::to_string(speed));
}

std::string portProblem(PortError error, const std::string& port) {
  switch (error) {
    case PortError::notThere: return textWith(Text::portMissing, port);
    case PortError::busy: return textWith(Text::portBusy, port);
    case PortError::noPermission: return textWith(Text::portForbidden, port);
    default: return textWith(Text::portUnusable, port);
  }
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

bool loadSimulationFrom(AppState& app, const std::string& path) {
  std::vector<std::string> lines;
  if (!app.extensions.simulationFrom || !app.extensions.simulationFrom(path, lines)) return false;
  if (lines.empty()) return false;
  app.gps.simulation.setLines(std::move(lines));
  return true;
}

bool connectReceiver(AppState& app, const SourceChoice& choice) {
  endSupervision(app);
  app.fix.close(true);
  app.shown.dataSeen = app.shown.fixSeen = false;
  app.shown.arrivals.quality = app.shown.arrivals.noise = {};
  app.sourceName = nameOf(choice);
  app.fix.setPort(choice.port, choice.speed);
  if (app.fix.open(choice.simulate, choice.useGpsApi, choice.useSensorApi, false)) {
    const bool serial = !app.fix.simulate && app.fix.sensor == nullptr && app.fix.running;
    if (serial) superviseConnection(app, choice.port, choice.speed);
    return true;
  }
  showNotice(app, choice.port.empty() ? std::string(textOf(Text::noReceiverChosen))
                                      : portProblem(app.fix.portError, choice.port));
  app.platform.window.tellError(textOf(Text::openingFailed));
  return false;
}

bool disconnectReceiver(AppState& app) {
  endSupervision(app);
  return app.fix.close(false);
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
