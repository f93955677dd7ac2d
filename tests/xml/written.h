#pragma once

#include <gtest/gtest.h>

#include <string>

#include "xml/document.h"

namespace vgps {

// The document as it is written, without its declaration.
inline std::string written(XmlDocument& document) {
  std::string text;
  EXPECT_EQ(document.saveText(text), 1);
  return text.substr(kXmlDeclaration.size() + 2);
}

}  // namespace vgps
