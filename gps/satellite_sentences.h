#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "gps/sentence.h"

// GSA and GSV sentences of any talker, decoded once for both the fix and the satellite view. The
// two differ in how they read a damaged sentence: the fix reads fields up to the end of the line,
// including a checksum attached to the last one; the view stops at the first "*".
namespace vgps {

// $GPGSA,mode,fix,id x 12,pdop,hdop,vdop[,system]*hh
//   0     1    2   3..14   15   16   17   18
struct GsaReport {
  static constexpr size_t kFirst = 3;
  static constexpr size_t kChannels = 12;
  static constexpr size_t kSystemField = 18;  // since NMEA 4.10

  size_t channels;  // number of ID fields present
  std::array<int32_t, kChannels> ids;
};

// $GPGSV,messages,message,in view,{id,elevation,azimuth,snr} x 0..4[,signal]*hh
//   0       1        2       3     4      5        6     7
struct GsvReport {
  static constexpr size_t kHead = 4;
  static constexpr size_t kGroups = 4;

  struct Satellite {
    int32_t id;
    float elevation, azimuth;  // degrees
    float snr;                 // dB-Hz
  };

  int32_t messages;
  int32_t message;
  int32_t inView;
  size_t groups;  // the last one may lack its last field; a longer line has more
  std::array<Satellite, kGroups> satellites;
};

// The system number of a GSA, one hexadecimal digit; 0 if there is none. Some receivers write a
// fourth DOP there ("1.2").
int systemIdOf(const Sentence& sentence);

void readGsa(const Sentence& sentence, GsaReport& report);
void readGsv(const Sentence& sentence, GsvReport& report);

// Reads one group; a missing last field is 0.
inline void readGsvGroup(const Fields& fields, size_t at, GsvReport::Satellite& satellite) {
  satellite.id = fields.wholeNumber(at);
  satellite.elevation = fields.number32(at + 1);
  satellite.azimuth = fields.number32(at + 2);
  satellite.snr = fields.has(at + 3) ? fields.number32(at + 3) : 0;
}

// A line together with the satellites that it lists.
struct DecodedSentence {
  explicit DecodedSentence(std::string_view line) : sentence(line) {
    if (sentence.name.type == SentenceType::gsa) readGsa(sentence, gsa);
    if (sentence.name.type == SentenceType::gsv) readGsv(sentence, gsv);
  }

  Sentence sentence;
  GsaReport gsa;  // empty for other lines, like `gsv`
  GsvReport gsv;
};

// The fields of a sentence before the first "*".
class Body {
 public:
  explicit Body(const Sentence& sentence);

  // The number of fields, including those beyond what `Fields` keeps.
  size_t count() const { return count_; }
  bool isEmpty(size_t index) const {
    return index >= count_ || fields_.startOf(index) == std::min(star_, fields_.endOf(index));
  }

 private:
  const Fields& fields_;
  size_t star_;
  size_t count_;
};

}  // namespace vgps
