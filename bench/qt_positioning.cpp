#include "bench/qt_positioning.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QGeoPositionInfo>
#include <QNmeaPositionInfoSource>
#include <cstring>

namespace vgps {

struct QtPositioning::Source : QNmeaPositionInfoSource {
  Source() : QNmeaPositionInfoSource(RealTimeMode) {
    buffer.open(QIODevice::ReadOnly);
    setDevice(&buffer);
    connect(this, &QGeoPositionInfoSource::positionUpdated, [this] { ++positions; });
    startUpdates();
  }

  bool parse(const char* line, size_t length) {
    QGeoPositionInfo info;
    bool hasFix = false;
    return parsePosInfoFromNmeaData(line, static_cast<int>(length), &info, &hasFix);
  }

  QBuffer buffer;
  size_t positions = 0;
};

QtPositioning::QtPositioning() {
  static int argumentCount = 1;
  static char name[] = "bench";
  static char* arguments[] = {name, nullptr};
  static const QCoreApplication application(argumentCount, arguments);
  source_ = new Source;
}

QtPositioning::~QtPositioning() { delete source_; }

bool QtPositioning::installed() { return true; }

size_t QtPositioning::readLog(const std::string& log) {
  // A source of its own for each reading: it takes no time of day that it has seen before.
  delete source_;
  source_ = new Source;
  source_->buffer.buffer() =
      QByteArray::fromRawData(log.data(), static_cast<qsizetype>(log.size()));
  source_->buffer.seek(0);
  emit source_->buffer.readyRead();
  return source_->positions;
}

size_t QtPositioning::parseLines(const std::string& log) {
  size_t taken = 0;
  const char* at = log.data();
  const char* const end = at + log.size();
  while (at != end) {
    const auto* lineFeed =
        static_cast<const char*>(std::memchr(at, '\n', static_cast<size_t>(end - at)));
    taken += source_->parse(at, static_cast<size_t>(lineFeed + 1 - at));
    at = lineFeed + 1;
  }
  return taken;
}

}  // namespace vgps
