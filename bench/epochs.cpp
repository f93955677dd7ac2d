#include "bench/epochs.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

#include "gps/nmea.h"

namespace vgps {
namespace {

constexpr size_t kSatellites = 12;

class Random {
 public:
  double below(double limit) {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return static_cast<double>(state_ >> 11) * 0x1p-53 * limit;
  }
  double between(double low, double high) { return low + below(high - low); }

 private:
  uint64_t state_ = 0x9E3779B97F4A7C15;
};

struct Satellite {
  int prn = 0;
  double elevation = 0;
  double azimuth = 0;
  double snr = 0;
};

class Receiver {
 public:
  Receiver() {
    for (size_t i = 0; i < kSatellites; ++i) {
      satellites_[i] = {static_cast<int>(2 + i * 5 / 2), random_.between(5, 88), random_.below(360),
                        random_.between(20, 48)};
    }
  }

  void step() {
    second_ = (second_ + 1) % 86400;
    if (second_ == 0) ++day_;
    speed_ = std::max(0.0, speed_ + random_.between(-1.5, 1.6));
    if (speed_ > 140) speed_ = 0;
    course_ = std::fmod(course_ + random_.between(-8, 8) + 360, 360);
    const double radians = course_ * 0.017453292519943295;
    latitude_ += std::cos(radians) * speed_ * 5e-6;
    longitude_ += std::sin(radians) * speed_ * 8e-6;
    altitude_ += random_.between(-2, 2);
    for (Satellite& satellite : satellites_) {
      satellite.elevation = std::clamp(satellite.elevation + random_.between(-0.6, 0.6), 1.0, 89.0);
      satellite.azimuth = std::fmod(satellite.azimuth + random_.between(-1, 1) + 360, 360);
      satellite.snr = std::clamp(satellite.snr + random_.between(-2.5, 2.5), 0.0, 52.0);
    }
  }

  void say(std::string& out) {
    sayPosition(out);
    saySatellites(out);
  }

 private:
  void sayPosition(std::string& out) {
    char time[32];
    std::snprintf(time, sizeof time, "%02d%02d%02d.%03d", second_ / 3600, second_ / 60 % 60,
                  second_ % 60, static_cast<int>(random_.below(1000)));
    char position[64];
    std::snprintf(position, sizeof position, "%02d%07.4f,%c,%03d%07.4f,%c", whole(latitude_),
                  minutes(latitude_), latitude_ < 0 ? 'S' : 'N', whole(longitude_),
                  minutes(longitude_), longitude_ < 0 ? 'W' : 'E');
    const double hdop = random_.between(0.6, 2.4);
    line(out, "GPGGA,%s,%s,1,%02d,%.1f,%.1f,M,%.1f,M,,", time, position, used(), hdop, altitude_,
         random_.between(40, 50));
    line(out, "GPRMC,%s,A,%s,%.2f,%.1f,%02d0626,%.1f,E", time, position, speed_, course_,
         1 + day_ % 30, random_.below(5));
  }

  void saySatellites(std::string& out) {
    std::string prns;
    for (const Satellite& satellite : satellites_) {
      char prn[8] = ",";
      if (satellite.snr > 25) std::snprintf(prn, sizeof prn, ",%02d", satellite.prn);
      prns += prn;
    }
    line(out, "GPGSA,A,3%s,%.1f,%.1f,%.1f", prns.c_str(), random_.between(1, 4),
         random_.between(0.6, 3), random_.between(0.8, 3));
    for (size_t message = 0; message < 3; ++message) {
      std::string groups;
      for (size_t i = message * 4; i < message * 4 + 4; ++i) groups += group(satellites_[i]);
      line(out, "GPGSV,3,%d,12%s", static_cast<int>(message + 1), groups.c_str());
    }
  }

  static std::string group(const Satellite& satellite) {
    char text[48];
    std::snprintf(text, sizeof text, ",%02d,%02d,%03d,", satellite.prn,
                  static_cast<int>(satellite.elevation), static_cast<int>(satellite.azimuth));
    return satellite.snr < 8 ? text : text + std::to_string(static_cast<int>(satellite.snr));
  }

  [[gnu::format(printf, 2, 3)]] static void line(std::string& out, const char* format, ...) {
    char text[256] = "$";
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text + 1, sizeof text - 1, format, arguments);
    va_end(arguments);
    char end[8];
    std::snprintf(end, sizeof end, "*%02X\r\n", nmeaChecksum(text));
    out.append(text).append(end);
  }

  static int whole(double degrees) { return static_cast<int>(std::abs(degrees)); }
  static double minutes(double degrees) {
    return std::min((std::abs(degrees) - whole(degrees)) * 60, 59.9999);
  }
  int used() const {
    return static_cast<int>(std::count_if(satellites_.begin(), satellites_.end(),
                                          [](const Satellite& s) { return s.snr > 25; }));
  }

  Random random_;
  int second_ = 20000;
  int day_ = 0;
  double latitude_ = 50.08;
  double longitude_ = 14.42;
  double altitude_ = 236;
  double speed_ = 10;
  double course_ = 75;
  std::array<Satellite, kSatellites> satellites_;
};

}  // namespace

std::string makeEpochs(size_t count) {
  Receiver receiver;
  std::string out;
  for (size_t i = 0; i < count; ++i) {
    receiver.step();
    receiver.say(out);
  }
  return out;
}

bool writeEpochs(const std::string& path, size_t bytes) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  Receiver receiver;
  std::string epoch;
  bool written = true;
  for (size_t length = 0; written && length < bytes; length += epoch.size()) {
    epoch.clear();
    receiver.step();
    receiver.say(epoch);
    written = std::fwrite(epoch.data(), 1, epoch.size(), file) == epoch.size();
  }
  return std::fclose(file) == 0 && written;
}

}  // namespace vgps
