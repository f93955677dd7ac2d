#include "gps/sentence.h"

#include <array>

namespace vgps {
namespace {

// The exclusive-or of all characters except the first, computed eight at a time and folded at the
// end.
uint8_t xorOf(std::string_view sentence) {
  if (!sentence.empty()) sentence.remove_prefix(1);
  uint64_t wide = 0;
  for (; sentence.size() >= sizeof wide; sentence.remove_prefix(sizeof wide)) {
    uint64_t eight = 0;
    std::memcpy(&eight, sentence.data(), sizeof eight);
    wide ^= eight;
  }
  for (const char c : sentence) wide ^= static_cast<uint8_t>(c);
  wide ^= wide >> 32;
  wide ^= wide >> 16;
  wide ^= wide >> 8;
  return static_cast<uint8_t>(wide);
}

}  // namespace

const char* sentenceTypeName(SentenceType type) {
  constexpr std::array<const char*, kSentenceTypes> kNames = {"RMC", "GGA", "GSA", "GSV", "other"};
  return kNames[static_cast<size_t>(type)];
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

uint8_t nmeaChecksum(std::string_view sentence) {
  return xorOf(sentence.substr(0, sentence.find('*')));
}

Checksum checkNmeaChecksum(std::string_view sentence) {
  // Use the last star: in two sentences joined by a transmission error, the first star belongs to
  // the lost half.
  const size_t star = sentence.rfind('*');
  if (star == std::string_view::npos || sentence.size() < star + 3) return Checksum::absent;
  const int high = hexDigit(sentence[star + 1]);
  const int low = hexDigit(sentence[star + 2]);
  if (high < 0 || low < 0) return Checksum::absent;
  return xorOf(sentence.substr(0, star)) == high * 16 + low ? Checksum::right : Checksum::wrong;
}

}  // namespace vgps
