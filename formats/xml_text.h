#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vgps {

// Receives bytes in order; returns false on failure.
using TextSink = std::function<bool(std::string_view)>;

// Writes elements in the layout of saved documents: every tag and text on a line of its own, tabs
// before tags, CR LF at line ends. Keeps no tree in memory, only what has not been passed on yet.
//
//   XmlText xml(sink);
//   xml.open("trk"), xml.element("name", name), xml.close();
class XmlText {
 public:
  // The first element is indented by `depth` tabs.
  explicit XmlText(TextSink sink, size_t depth = 0);

  void declaration();
  // Starts a tag. Add its attributes with `attribute`, then call `endTag`.
  void beginTag(std::string_view name);
  void attribute(std::string_view name, std::string_view value);
  void attribute(std::string_view name, double value, int decimals);
  void endTag() { open_.back().pending = true; }
  void open(std::string_view name) { beginTag(name), endTag(); }
  // Closes the element; an empty one is written as a self-closing tag.
  void close();

  // Writes an element with a text, or an empty element if the text is empty.
  void element(std::string_view name, std::string_view text);
  void element(std::string_view name, double value, int decimals);
  void element(std::string_view name, uint32_t value);

  // Writes the text of the open element piece by piece, unescaped; call `endText` after the last
  // one.
  void piece(std::string_view text) { settle(), put(text); }
  void piece(double value, int decimals) { settle(), putNumber(value, decimals); }
  void endText() { put("\r\n"); }

  // Whether everything has been written so far. `finish` passes on the rest.
  bool good() const { return good_; }
  bool finish();

 private:
  struct Open {
    std::string name;
    bool pending = false;  // its tag has no ">" yet
  };

  char* room(size_t size);
  void put(std::string_view text);
  void putEscaped(std::string_view text);
  void putNumber(double value, int decimals);
  void settle();
  void beginLine(std::string_view mark, std::string_view name);

  TextSink sink_;
  std::vector<char> buffer_;
  char* at_;
  const size_t depth_;
  std::vector<Open> open_;
  bool good_ = true;
};

}  // namespace vgps
