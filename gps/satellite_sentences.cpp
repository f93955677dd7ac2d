#include "gps/satellite_sentences.h"

namespace vgps {

int systemIdOf(const Sentence& sentence) {
  const std::string_view field = sentence.fields.orEmpty(GsaReport::kSystemField);
  const std::string_view digit = field.substr(0, field.find_first_of("*\r\n"));
  return digit.size() == 1 ? std::max(hexDigit(digit[0]), 0) : 0;
}

void readGsa(const Sentence& sentence, GsaReport& report) {
  const Fields& fields = sentence.fields;
  const size_t end = std::min(GsaReport::kFirst + GsaReport::kChannels, fields.size());
  report.channels = std::max(end, GsaReport::kFirst) - GsaReport::kFirst;
  for (size_t i = 0; i < report.channels; ++i) {
    report.ids[i] = fields.wholeNumber(GsaReport::kFirst + i);
  }
}

void readGsv(const Sentence& sentence, GsvReport& report) {
  const Fields& fields = sentence.fields;
  report.messages = fields.has(1) ? fields.wholeNumber(1) : 0;
  report.message = fields.has(2) ? fields.wholeNumber(2) : 0;
  report.inView = fields.has(3) ? fields.wholeNumber(3) : 0;
  const size_t listed = fields.size() <= GsvReport::kHead ? 0 : fields.size() - GsvReport::kHead;
  report.groups = std::min((listed + 1) / 4, GsvReport::kGroups);
  for (size_t i = 0; i < report.groups; ++i) {
    readGsvGroup(fields, GsvReport::kHead + 4 * i, report.satellites[i]);
  }
}

Body::Body(const Sentence& sentence)
    : fields_(sentence.fields), star_(std::min(sentence.text.find('*'), sentence.text.size())) {
  const bool cut = fields_.more() || star_ < fields_.startOf(fields_.size() - 1);
  const std::string_view text = sentence.text.substr(0, star_);
  count_ =
      cut ? static_cast<size_t>(std::count(text.begin(), text.end(), ',')) + 1 : fields_.size();
}

}  // namespace vgps
