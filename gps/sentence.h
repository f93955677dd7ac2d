#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "gps/fields.h"

// One line from a receiver, recognized once: talker, type of sentence, fields, and checksum. The
// parser, counters, talker translation, satellite view, clocks, and port search all use this.
namespace vgps {

// Packs up to eight letters into one number, so that names can be compared as integers.
constexpr uint64_t lettersKey(std::string_view letters) {
  uint64_t key = 0;
  for (size_t i = 0; i < letters.size(); ++i) {
    key |= uint64_t{static_cast<uint8_t>(letters[i])} << (8 * i);
  }
  return key;
}

enum class SentenceType : uint8_t { rmc, gga, gsa, gsv, other };
inline constexpr size_t kSentenceTypes = 5;

// "RMC"; "other".
const char* sentenceTypeName(SentenceType type);

enum class Checksum : uint8_t { right, wrong, absent };

// -1 when it is none.
int hexDigit(char c);

// The exclusive-or of the characters between the first one ("$") and the "*".
uint8_t nmeaChecksum(std::string_view sentence);

// Compares the checksum in a sentence. The result is only counted; it does not accept or reject
// anything.
Checksum checkNmeaChecksum(std::string_view sentence);

// The name of a line.
//
//    $ GP RMC ,...      talker, type; any letters between the type and the first comma
struct SentenceName {
  static constexpr size_t kLength = 6;
  static constexpr uint32_t kGps = static_cast<uint32_t>(lettersKey("GP"));
  static constexpr uint32_t kBeiDouPq = static_cast<uint32_t>(lettersKey("PQ"));

  uint32_t talker = 0;  // two letters, packed by `lettersKey`; 0 if the line is too short
  SentenceType type = SentenceType::other;
  bool dollar = false;  // the line starts with "$", so it counts as a sentence
  bool whole = false;   // the type is followed by a comma: "$GPRMC," but not "$GPRMCX,"

  // "$P" begins a maker's own sentence, whatever letters follow; only "PQ" is also the talker of
  // BeiDou, in the sentences that everyone sends.
  bool isProprietary() const {
    return (talker & 0xFF) == 'P' && (talker != kBeiDouPq || type == SentenceType::other);
  }
  // "$G" begins one of a satellite receiver.
  bool isFromGnss() const { return (talker & 0xFF) == 'G'; }
  bool isPosition() const { return type == SentenceType::rmc || type == SentenceType::gga; }
};

inline SentenceType typeOfLetters(uint64_t letters) {
  switch (letters) {
    case lettersKey("RMC"): return SentenceType::rmc;
    case lettersKey("GGA"): return SentenceType::gga;
    case lettersKey("GSA"): return SentenceType::gsa;
    case lettersKey("GSV"): return SentenceType::gsv;
    default: return SentenceType::other;
  }
}

inline SentenceName nameOf(std::string_view line) {
  SentenceName name;
  name.dollar = !line.empty() && line[0] == '$';
  if (!name.dollar || line.size() < SentenceName::kLength) return name;
  name.talker = static_cast<uint32_t>(lettersKey(line.substr(1, 2)));
  name.type = typeOfLetters(lettersKey(line.substr(3, 3)));
  name.whole = line.size() > SentenceName::kLength && line[SentenceName::kLength] == ',';
  return name;
}

// A line without its line ending. Refers to the text that it was made from.
struct Sentence {
  explicit Sentence(std::string_view line) : text(line), name(nameOf(line)), fields(line) {
    forGps = name.talker == SentenceName::kGps;
  }

  // Of the line as received.
  Checksum checksum() const { return checkNmeaChecksum(text); }
  // The type for the parser, which only accepts the talker GP or one that stands in for it.
  SentenceType parsedType() const { return forGps ? name.type : SentenceType::other; }
  // The program's own sentence for simulated positions, "$GPRMCX".
  bool isExtendedRmc() const {
    return name.type == SentenceType::rmc && fields[0].size() == 7 && fields[0][6] == 'X';
  }

  std::string_view text;
  SentenceName name;
  bool forGps;  // because of its talker, or because that stands in for GPS
  Fields fields;
};

}  // namespace vgps
