#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "base/date_time.h"

namespace vgps {

// GPS satellites use the slot of their PRN. 33 and 34 are the first augmentation satellites, which
// receivers number from 33 on.
inline constexpr int kSatelliteSlots = 35;

struct SatelliteInfo {
  uint8_t visible = 0;  // listed in the current GSV cycle
  uint8_t used = 0;     // listed by a GSA
  int32_t prn = 0;
  float elevation = 0;  // degrees above the horizon
  float azimuth = 0;    // degrees true
  float snr = 0;        // C/N0, dB-Hz
};

struct SatelliteTable {
  int32_t usedCount = 0;    // as counted by GGA
  int32_t inViewCount = 0;  // as counted by GSV
  float pdop = 0;
  float hdop = 0;
  float vdop = 0;
  std::array<SatelliteInfo, kSatelliteSlots> slots{};
};

// Values that the receiver has not reported since it acquired the fix, one bit each. The record
// still contains the previous value or 0, so an altitude of 0 m may not be measured.
enum Unknown : uint32_t {
  kUnknownAltitude = 1U << 0,
  kUnknownSpeed = 1U << 1,
  kUnknownCourse = 1U << 2,
  kUnknownDate = 1U << 3,  // cold receivers tell one that is years off before they have a fix
  kAllUnknown = kUnknownAltitude | kUnknownSpeed | kUnknownCourse | kUnknownDate,
  // Not of that kind, and not kept with a point: the position came with a wrong checksum.
  kDoubtfulPosition = 1U << 4,
};

// The values of a fix: everything that is drawn, recorded, and timed. A plain copyable record.
struct FixRecord {
  int32_t fixStatus = 0;  // 0 none, 1 GPS, 2 differential, further GGA qualities
  double longitude = 0;   // decimal degrees, east positive
  double latitude = 0;    // decimal degrees, north positive
  double altitude = 0;    // meters above mean sea level
  double reserved = 0;
  DateTime utcTime;    // date from RMC, time of day from RMC and GGA; day of week is never set
  DateTime localTime;  // time of day only
  double speedKnots = 0;
  double speedMps = 0;
  double speedKmh = 0;
  double speedMph = 0;
  double speedSpare = 0;
  double course = 0;             // over ground, degrees true
  double magneticVariation = 0;  // degrees, west negative
  int32_t lastSentenceKind = 0;  // of the last line: SentenceKind
  uint32_t receiveTick = 0;      // milliseconds, when the last line was received
  uint32_t previousReceiveTick = 0;
  uint32_t ticksWithoutData = 0;
  uint32_t unknown = 0;  // Unknown bits
  // Fraction of the second in `utcTime`, from the decimals: ".5" is 500 here, but 5 there.
  uint32_t utcMilliseconds = 0;
  double exactAltitude = 0;  // meters, with the decimals that `altitude` lacks; see below

  // The altitude with the decimals of GGA, or without if only the whole meters are known, as for a
  // point from a track file.
  double preciseAltitude() const {
    return std::trunc(exactAltitude) == altitude ? exactAltitude : altitude;
  }
  bool altitudeKnown() const { return (unknown & kUnknownAltitude) == 0; }
  bool speedKnown() const { return (unknown & kUnknownSpeed) == 0; }
  bool positionDoubtful() const { return (unknown & kDoubtfulPosition) != 0; }
  bool courseKnown() const { return (unknown & kUnknownCourse) == 0; }
  bool dateKnown() const { return (unknown & kUnknownDate) == 0; }
};

// GSA and GSV share a number; SentenceType tells them apart.
enum SentenceKind : int32_t { kNoSentence = 0, kRmc = 1, kGga = 2, kSatellites = 4 };

// What a sentence actually reported, one bit each; a value missing in a sentence does not affect
// the one in the fix. A time of 000000 or a date with day 0 comes from a clock that is not set yet
// and is not reported.
enum Said : uint32_t {
  kSaidValidity = 1U << 0,  // RMC: whether there is a fix
  kSaidQuality = 1U << 1,   // GGA: the kind of fix
  kSaidPosition = 1U << 2,
  kSaidTime = 1U << 3,
  kSaidDate = 1U << 4,
  kSaidAltitude = 1U << 5,
  kSaidSpeed = 1U << 6,
  kSaidCourse = 1U << 7,
  kSaidVariation = 1U << 8,
  kSaidUsedCount = 1U << 9,  // GGA
  kSaidUsed = 1U << 10,      // GSA: which satellites
  kSaidPdop = 1U << 11,
  kSaidHdop = 1U << 12,
  kSaidVdop = 1U << 13,
  kSaidNewCycle = 1U << 14,  // GSV: a new list begins
  kSaidInView = 1U << 15,    // GSV: satellites listed
  kSaidInViewCount = 1U << 16,
  // Set if the field contained a number. An empty field is applied as 0, but reports nothing.
  kGaveAltitude = 1U << 17,
  kGaveSpeed = 1U << 18,
  kGaveCourse = 1U << 19,
};

// The contents of one sentence, in the record for its kind. Values missing in the sentence are
// zero.
struct NmeaSentence {
  struct Position {  // RMC and RMCX
    int32_t valid;
    double longitude, latitude, altitude;
    DateTime utc, local;
    double knots, mps, kmh, mph, spare;
    double course, magneticVariation;
  };
  struct Quality {  // GGA
    int32_t quality;
    double longitude, latitude, altitude;
    DateTime utc, local;
    int32_t usedCount;
    double exactAltitude;  // `altitude` is cut to whole meters
  };
  struct Active {  // GSA: `used` flags
    float pdop, hdop, vdop;
    std::array<SatelliteInfo, kSatelliteSlots> slots;
  };
  struct InView {  // GSV: all fields except `used`
    int32_t inViewCount;
    std::array<SatelliteInfo, kSatelliteSlots> slots;
  };

  int32_t kind = kNoSentence;
  int32_t tag = 0;  // 0x88 RMC, 0x410 GGA, 0x3A0 GSA and GSV
  union {
    Position rmc;
    Quality gga;
    Active gsa;
    InView gsv;
  };

  NmeaSentence();
  // Sets the kind and clears its record; the other records are not used then.
  void begin(int32_t newKind, int32_t newTag);
};

}  // namespace vgps
