#include "xml/foreign.h"

#include <algorithm>
#include <map>

#include "base/text.h"
#include "xml/encoding.h"
#include "xml/tags.h"

namespace vgps {
namespace {

constexpr size_t kMostGrowth = size_t{64} << 20;
constexpr int kMostDepth = 16;

using Entities = std::map<std::string, std::string, std::less<>>;

std::string decoded(std::string_view bytes) {
  std::string_view rest = bytes;
  XmlDecoder decoder(XmlSource::of(rest));
  const XmlSource source = decoder.source();
  constexpr size_t kBlock = size_t{1} << 16;
  std::string text;
  for (size_t got = 1; got > 0;) {
    const size_t used = text.size();
    text.resize(used + kBlock);
    got = source.read(source.from, text.data() + used, kBlock);
    text.resize(used + got);
  }
  return text;
}

// <!ENTITY name "text">, with either kind of quote; external entities ("SYSTEM") and parameter
// entities ("%") are ignored.
Entities entitiesIn(std::string_view subset) {
  constexpr std::string_view kEntity = "<!ENTITY";
  Entities found;
  for (size_t at = 0; (at = subset.find(kEntity, at)) != std::string_view::npos;) {
    at += kEntity.size();
    const size_t name = subset.find_first_not_of(kXmlBlanks, at);
    const size_t nameEnd = subset.find_first_of(kXmlBlanks, name);
    const size_t quote = subset.find_first_not_of(kXmlBlanks, nameEnd);
    if (quote == std::string_view::npos) break;
    if (subset[quote] != '"' && subset[quote] != '\'') continue;
    const size_t end = subset.find(subset[quote], quote + 1);
    if (end == std::string_view::npos) break;
    found.emplace(subset.substr(name, nameEnd - name), subset.substr(quote + 1, end - quote - 1));
    at = end;
  }
  return found;
}

class Expansion {
 public:
  Expansion(const Entities& entities, std::string& out, size_t most)
      : entities_(entities), out_(out), most_(most) {}

  bool append(std::string_view text, int depth) {
    while (!text.empty()) {
      const size_t mark = std::min(text.find('&'), text.size());
      out_ += text.substr(0, mark);
      text.remove_prefix(mark);
      if (text.empty()) break;
      const size_t end = text.find(';');
      const auto entity =
          end == std::string_view::npos ? entities_.end() : entities_.find(text.substr(1, end - 1));
      if (entity == entities_.end()) {
        out_ += '&';
        text.remove_prefix(1);
      } else {
        if (depth >= kMostDepth || !append(entity->second, depth + 1)) return false;
        text.remove_prefix(end + 1);
      }
      if (out_.size() > most_) return false;
    }
    return out_.size() <= most_;
  }

 private:
  const Entities& entities_;
  std::string& out_;
  size_t most_;
};

// Calls `visit` for each element, with its depth, in document order until it returns false.
template <class Visit>
void walk(const XmlDocument& document, Visit visit) {
  const XmlElement root = document.GetRootElement();
  const XmlTree& tree = *root.tree();
  uint32_t depth = 0;
  for (uint32_t at = root.index(); at != kNoRow;) {
    if (!visit(XmlElement(root.tree(), at), depth)) return;
    at = tree.nextInSubtree(root.index(), at, depth);
  }
}

bool isNameStart(char c) {
  const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return letter || c == '_' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}

bool isName(std::string_view text) {
  const auto inside = [](char c) {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
  };
  return !text.empty() && isNameStart(text[0]) && std::all_of(text.begin(), text.end(), inside);
}

// Shortens the text to one line of a message.
std::string shown(std::string_view stored) {
  std::string text = validUtf8(stored.substr(0, 60));
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c >= 0 && c < ' '; }, ' ');
  return text;
}

bool isCharacterData(std::string_view text) {
  return validUtf8(text) == text && std::all_of(text.begin(), text.end(), [](char c) {
           return static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\r' || c == '\n';
         });
}

// In texts and values, every "&" must begin a reference that XML itself defines.
bool isStoredText(std::string_view text) {
  if (!isCharacterData(text) || text.find('<') != std::string_view::npos) return false;
  for (size_t at = 0; (at = text.find('&', at)) != std::string_view::npos; ++at) {
    const size_t end = text.find(';', at);
    if (end == std::string_view::npos) return false;
    const std::string_view name = text.substr(at + 1, end - at - 1);
    const bool named =
        name == "amp" || name == "lt" || name == "gt" || name == "quot" || name == "apos";
    const bool number = name.size() > 1 && name[0] == '#' &&
                        name.find_first_not_of("0123456789abcdefABCDEFx", 1) == name.npos;
    if (!named && !number) return false;
  }
  return true;
}

bool isComment(std::string_view text) {
  return isCharacterData(text) && text.find("--") == text.npos && !text.ends_with('-');
}

std::string faultOf(const XmlElement& element) {
  const std::string name = shown(element.storedName());
  if (!isName(element.storedName())) return "'" + name + "' is not a name";
  const std::vector<XmlAttribute> attributes = element.GetVariables();
  for (size_t i = 0; i < attributes.size(); ++i) {
    const std::string_view key = attributes[i].storedName();
    const std::string what = "'" + shown(key) + "' of <" + name + ">";
    if (!isName(key)) return what + " is not a name";
    if (!isStoredText(attributes[i].storedValue())) return "the value of " + what + " is not text";
    const auto same = [&](const XmlAttribute& other) { return other.storedName() == key; };
    if (std::any_of(attributes.begin(), attributes.begin() + static_cast<ptrdiff_t>(i), same)) {
      return what + " stands there twice";
    }
  }
  for (const XmlItem& content : element.GetContents()) {
    if (!isStoredText(content.stored)) return "the text of <" + name + "> has a stray character";
  }
  for (const XmlItem& comment : element.GetComments()) {
    if (!isComment(comment.stored)) return "a comment in <" + name + "> has a stray character";
  }
  for (const XmlItem& section : element.GetCDatas()) {
    if (!isCharacterData(section.stored)) return "a CDATA section has a stray character";
  }
  return {};
}

}  // namespace

bool isBinary(std::string_view bytes) {
  const bool wide = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
  return !wide && bytes.find('\0') != std::string_view::npos;
}

bool expandEntities(std::string_view bytes, std::string& text) {
  const std::string plain = decoded(bytes);
  text.clear();
  const size_t type = plain.find("<!DOCTYPE");
  const size_t open = plain.find('[', type);
  const size_t close = plain.find("]>", open);
  const bool has =
      type != std::string::npos && open < plain.find('>', type) && close != std::string::npos;
  const std::string_view all = plain;
  const Entities entities = has ? entitiesIn(all.substr(open, close - open)) : Entities();
  if (entities.empty()) {
    text = plain;
    return true;
  }
  text = all.substr(0, close);
  return Expansion(entities, text, plain.size() + kMostGrowth).append(all.substr(close), 0);
}

uint64_t indentationOf(const XmlDocument& document) {
  uint64_t tabs = 0;
  walk(document, [&](const XmlElement& element, uint32_t depth) {
    const XmlTree& tree = *element.tree();
    const XmlElementRow& row = tree.elements[element.index()];
    const bool oneLine = !row.textOnly && row.lastChild == kNoRow && row.lastItem == kNoRow;
    tabs += uint64_t{depth} * (oneLine ? 1 : 2);
    return true;
  });
  return tabs;
}

bool haveSameNames(const XmlDocument& a, const XmlDocument& b) {
  const XmlTree& tree = *b.GetRootElement().tree();
  const uint32_t top = b.GetRootElement().index();
  uint32_t other = top;
  uint32_t otherDepth = 0;
  bool same = true;
  walk(a, [&](const XmlElement& element, uint32_t depth) {
    const XmlElement twin(b.GetRootElement().tree(), other);
    same = other != kNoRow && depth == otherDepth && element.storedName() == twin.storedName() &&
           element.GetVariableNum() == twin.GetVariableNum();
    for (size_t i = 0; same && i < element.GetVariableNum(); ++i) {
      same = element.GetVariable(i).storedName() == twin.GetVariable(i).storedName();
    }
    if (same) other = tree.nextInSubtree(top, other, otherDepth);
    return same;
  });
  return same && other == kNoRow;
}

std::string whyNotWellFormed(const XmlDocument& document) {
  for (const XmlComment& comment : document.GetHeader().comments) {
    if (!isComment(comment.text)) return "a comment has a stray character";
  }
  std::string fault;
  walk(document, [&](const XmlElement& element, uint32_t) {
    fault = faultOf(element);
    return fault.empty();
  });
  return fault;
}

}  // namespace vgps
