#include "xml/escape.h"

#include <charconv>
#include <cstdint>

#include "base/text.h"

namespace vgps {
namespace {

struct Entity {
  char plain;
  std::string_view stored;
};

constexpr Entity kEntities[] = {
    {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"}};

const Entity* entityOf(char plain) {
  for (const Entity& entity : kEntities) {
    if (entity.plain == plain) return &entity;
  }
  return nullptr;
}

const Entity* entityAt(std::string_view stored) {
  for (const Entity& entity : kEntities) {
    if (stored.starts_with(entity.stored)) return &entity;
  }
  return nullptr;
}

// Calls `put(plain text)` for each piece of `stored`.
template <class Put>
void unescapeInto(std::string_view stored, Put put) {
  for (;;) {
    const size_t mark = stored.find('&');
    put(stored.substr(0, mark));
    if (mark == std::string_view::npos) return;
    stored.remove_prefix(mark);
    const Entity* const entity = entityAt(stored);
    put(entity != nullptr ? std::string_view(&entity->plain, 1) : stored.substr(0, 1));
    stored.remove_prefix(entity != nullptr ? entity->stored.size() : 1);
  }
}

void appendEscaped(std::string& out, std::string_view plain) {
  for (size_t i = 0; i < plain.size(); ++i) {
    const bool reference = plain[i] == '&' && i + 1 < plain.size() && plain[i + 1] == '#';
    const Entity* const entity = reference ? nullptr : entityOf(plain[i]);
    if (entity != nullptr) {
      out += entity->stored;
    } else {
      out += plain[i];
    }
  }
}

// Reads "&#...;" at the start of `stored`. Returns its length, or 0 if there is none.
size_t referenceAt(std::string_view stored, char32_t& codePoint) {
  const bool hex = stored.size() > 2 && (stored[2] == 'x' || stored[2] == 'X');
  const char* const digits = stored.data() + (hex ? 3 : 2);
  const char* const end = stored.data() + stored.size();
  uint32_t value = 0;
  const auto [after, error] = std::from_chars(digits, end, value, hex ? 16 : 10);
  const bool number = after != digits && after != end && *after == ';';
  if (!number || error == std::errc::invalid_argument) return 0;
  codePoint = error == std::errc() ? value : UINT32_MAX;
  return static_cast<size_t>(after + 1 - stored.data());
}

}  // namespace

bool needsEscape(std::string_view plain) {
  for (size_t i = 0; i < plain.size(); ++i) {
    if (plain[i] == '&' && i + 1 < plain.size() && plain[i + 1] == '#') continue;
    if (entityOf(plain[i]) != nullptr) return true;
  }
  return false;
}

std::string escapeXml(std::string_view plain) {
  std::string out;
  out.reserve(plain.size());
  appendEscaped(out, plain);
  return out;
}

std::string unescapeXml(std::string_view stored) {
  std::string out;
  out.reserve(stored.size());
  unescapeInto(stored, [&out](std::string_view piece) { out += piece; });
  return out;
}

size_t unescapedLength(std::string_view stored) {
  size_t length = 0;
  unescapeInto(stored, [&length](std::string_view piece) { length += piece.size(); });
  return length;
}

bool readsAs(std::string_view stored, std::string_view plain) {
  if (stored.size() < plain.size()) return false;
  if (stored.find('&') == std::string_view::npos) return stored == plain;
  bool same = true;
  unescapeInto(stored, [&](std::string_view piece) {
    same = same && plain.starts_with(piece);
    if (same) plain.remove_prefix(piece.size());
  });
  return same && plain.empty();
}

std::string decodeReferences(std::string_view stored) {
  std::string out;
  out.reserve(stored.size());
  for (size_t mark = 0; (mark = stored.find("&#")) != std::string_view::npos;) {
    char32_t codePoint = 0;
    const size_t length = referenceAt(stored.substr(mark), codePoint);
    out += stored.substr(0, mark);
    if (length == 0) {
      out += "&#";
    } else {
      std::string character;
      appendUtf8(character, codePoint);
      appendEscaped(out, character);
    }
    stored.remove_prefix(mark + (length == 0 ? 2 : length));
  }
  out += stored;
  return out;
}

}  // namespace vgps
