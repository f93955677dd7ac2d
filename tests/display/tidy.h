#pragma once

#include <gtest/gtest.h>

#include "tests/fakes/recording_canvas.h"

namespace vgps {

inline bool isInside(const Rect& inner, const Rect& outer) {
  constexpr float kSlack = 1;
  return inner.x >= outer.x - kSlack && inner.y >= outer.y - kSlack &&
         inner.x + inner.width <= outer.x + outer.width + kSlack &&
         inner.y + inner.height <= outer.y + outer.height + kSlack;
}

inline bool overlap(const Rect& a, const Rect& b) {
  constexpr float kSlack = 1.5f;
  return a.x + a.width > b.x + kSlack && b.x + b.width > a.x + kSlack &&
         a.y + a.height > b.y + kSlack && b.y + b.height > a.y + kSlack;
}

// Everything is inside the canvas, and no text is cut off, too small, or overlapped.
inline void expectTidy(const RecordingCanvas& canvas) {
  for (const auto& fill : canvas.fills) {
    EXPECT_TRUE(isInside(fill.box, canvas.bounds()));
    EXPECT_GT(fill.box.width, 0);
    EXPECT_GT(fill.box.height, 0);
  }
  for (size_t i = 0; i < canvas.texts.size(); ++i) {
    const auto& text = canvas.texts[i];
    EXPECT_TRUE(isInside(text.ink, canvas.bounds())) << text.text;
    EXPECT_TRUE(isInside(text.ink, text.box)) << text.text << " is clipped";
    EXPECT_GE(text.font.size, 9) << text.text;
    for (size_t j = 0; j < i; ++j) {
      EXPECT_FALSE(overlap(text.ink, canvas.texts[j].ink))
          << text.text << " over " << canvas.texts[j].text;
    }
  }
}

}  // namespace vgps
