#pragma once

#include <cstdint>
#include <cstring>
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
  // Where the text of an element stands: on a line of its own as in this program's documents, or
  // between its tags, as other programs like names best.
  enum class Texts { onLines, inTags };

  // The first element is indented by `depth` tabs.
  explicit XmlText(TextSink sink, size_t depth = 0, Texts texts = Texts::onLines);

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
  // Of a text that needs no escaping.
  void elementAsItIs(std::string_view name, std::string_view text) {
    beginElement(name), put(text), endElement(name);
  }
  // Of a text in which "&#" is no reference: elsewhere references by number pass as they are.
  void elementWithPlainText(std::string_view name, std::string_view text);

  // The text of the open element piece by piece, as it stands; `endText` behind the last one.
  void piece(std::string_view text) { settleForText(), put(text); }
  void piece(double value, int decimals) { settleForText(), putNumber(value, decimals); }
  void endText();

  // Whether everything has been written so far. `finish` passes on the rest.
  bool good() const { return good_; }
  bool finish();

 private:
  struct Open {
    std::string name;
    bool pending = false;  // its tag has no ">" yet
    bool inLine = false;   // its text stands behind its tag
  };

  // So many bytes at `at_`.
  char* room(size_t size) {
    return static_cast<size_t>(end_ - at_) >= size ? at_ : roomAfterHanding(size);
  }
  char* roomAfterHanding(size_t size);
  void put(std::string_view text) {
    std::memcpy(room(text.size()), text.data(), text.size());
    at_ += text.size();
  }
  void putEscaped(std::string_view text);
  void putNumber(double value, int decimals);
  void settle();
  void settleForText();
  void beginLine(std::string_view mark, std::string_view name);
  void beginElement(std::string_view name);
  void endElement(std::string_view name);

  TextSink sink_;
  std::vector<char> buffer_;
  char* at_;
  char* end_;
  const size_t depth_;
  const Texts texts_;
  std::vector<Open> open_;
  bool good_ = true;
};

}  // namespace vgps
