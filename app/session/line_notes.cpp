#include "app/session/line_notes.h"

#include <algorithm>
#include <span>

#include "base/texts.h"

namespace vgps {
namespace {

std::string reasonText(const TalkerVerdict& why) {
  switch (why.reason) {
    case LeftOutReason::none: break;
    case LeftOutReason::waiting: return std::string(textOf(Text::leftOutWaiting));
    case LeftOutReason::another: return textWith(Text::leftOutInstead, nameOfTalker(why.instead));
    case LeftOutReason::turnedOff: return std::string(textOf(Text::leftOutTurnedOff));
    case LeftOutReason::unknownTalker: return std::string(textOf(Text::leftOutUnknown));
  }
  return {};
}

}  // namespace

std::string nameOfTalker(uint32_t talker) {
  return {static_cast<char>(talker & 0xFF), static_cast<char>(talker >> 8 & 0xFF)};
}

std::string leftOutText(const SentenceStats& stats, bool lastingOnly) {
  std::string text;
  for (const LeftOutSentences& one : std::span(stats.leftOut).first(stats.leftOutKinds)) {
    if (lastingOnly && one.why.reason == LeftOutReason::waiting) continue;
    if (!text.empty()) text += ", ";
    text += nameOfTalker(one.talker) + sentenceTypeName(one.type) + " " +
            std::to_string(one.count) + " (" + reasonText(one.why) + ")";
  }
  return text;
}

std::string newsOfLines(const SentenceStats& stats, LinesTold& told) {
  const LinesTold before = told;
  const auto kinds = std::span(stats.leftOut).first(stats.leftOutKinds);
  const auto lasts = [](const LeftOutSentences& one) {
    return one.why.reason != LeftOutReason::waiting;
  };
  told = {static_cast<size_t>(std::count_if(kinds.begin(), kinds.end(), lasts)),
          stats.strayStarts > 0};
  const std::string leftOut = leftOutText(stats, true);
  if (!leftOut.empty() && told.leftOutKinds > before.leftOutKinds) {
    told.strayStarts = before.strayStarts;  // reported next time
    return textWith(Text::sentencesLeftOut, leftOut);
  }
  if (!told.strayStarts || before.strayStarts) return {};
  return textWith(Text::strayStarts, std::to_string(stats.strayStarts));
}

}  // namespace vgps
