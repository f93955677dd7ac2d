#include "app/connection.h"

#include "app/texts.h"

namespace vgps {
namespace {

constexpr uint32_t kOpeningFailed = 601;
constexpr int kReaderEndMs = 2000;

std::string nameOf(const SourceChoice& choice) {
  if (choice.simulate) return "Simulation";
  if (choice.useSensorApi) return "Location sensor";
  return choice.port + ", " + std::to_string(choice.speed) + " baud";
}

}  // namespace

bool connectReceiver(AppState& app, const SourceChoice& choice) {
  app.fix.close(true);
  app.shown.dataSeen = app.shown.fixSeen = false;
  app.sourceName = nameOf(choice);
  app.fix.setPort(choice.port, choice.speed);
  if (app.fix.open(choice.simulate, choice.useGpsApi, choice.useSensorApi, false)) return true;
  app.platform.window.tellError(textOf(kOpeningFailed));
  return false;
}

bool disconnectReceiver(AppState& app) { return app.fix.close(false); }

int32_t measureUtcOffset(const DateTime& utc, const DateTime& local) {
  int32_t utcHour = utc.hour;
  int32_t localHour = local.hour;
  if (utc.day > local.day) utcHour += 24;
  if (local.day > utc.day) localHour += 24;
  return (utcHour - localHour) * 60;
}

bool stopReceiver(AppState& app) { return app.fix.stopReaders(kReaderEndMs); }

}  // namespace vgps
