#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "xml/escape.h"
#include "xml/growing_array.h"
#include "xml/text_store.h"

namespace vgps {

// Numbers the names of a document's elements and attributes, as stored (escaped). A file uses few
// names and repeats them in every point, so recently used names are recognized and stored only
// once. A name that was forgotten gets a new number; equal names may therefore have several
// numbers.
class NameTable {
 public:
  std::string_view view(const TextStore& text, uint32_t number) const {
    return text.view(names_[number]);
  }
  XmlSpan span(uint32_t number) const { return names_[number]; }
  uint32_t size() const { return names_.size(); }

  uint32_t number(TextStore& text, std::string_view stored) {
    uint64_t key = 0;
    const size_t length = stored.size();
    if (length >= sizeof key) {
      std::memcpy(&key, stored.data() + length - sizeof key, sizeof key);
    } else if (length > 0) {
      std::memcpy(&key, stored.data(), length);
    }
    return find(text, stored, key, [stored] { return stored; });
  }

  // For a name inside a file buffer, with XmlBuffer::kTail readable bytes after it.
  uint32_t numberFromWindow(TextStore& text, const char* name, size_t length) {
    uint64_t key = 0;
    if (length < sizeof key) {
      std::memcpy(&key, name, sizeof key);
      key &= (uint64_t{1} << (8 * length)) - 1;
    } else {
      std::memcpy(&key, name + length - sizeof key, sizeof key);
    }
    const std::string_view plain(name, length);
    return find(text, plain, key, [plain] { return escapeXml(plain); });
  }

 private:
  // A recently used name. `key` is the name itself if it has at most eight bytes, otherwise its
  // last bytes.
  struct Seen {
    uint64_t key = 0;
    uint32_t length = UINT32_MAX;
    uint32_t number = 0;
    uint32_t follower = 0;  // index of the name that followed it last time
  };
  static constexpr uint32_t kSets = 64;
  static constexpr uint32_t kWays = 4;  // slots for names with the same hash

  bool isName(const TextStore& text, const Seen& seen, std::string_view name, uint64_t key) const {
    return seen.key == key && seen.length == name.size() &&
           (name.size() <= sizeof key || view(text, seen.number) == name);
  }

  // `stored` returns the name in the form to be stored. Track points resemble each other, so the
  // name that followed the previous one last time is tried first.
  template <class Stored>
  uint32_t find(TextStore& text, std::string_view name, uint64_t key, Stored stored) {
    const uint32_t guess = seen_[last_].follower;
    if (!isName(text, seen_[guess], name, key)) return look(text, name, key, stored);
    last_ = guess;
    return seen_[guess].number;
  }

  template <class Stored>
  [[gnu::noinline]] uint32_t look(TextStore& text, std::string_view name, uint64_t key,
                                  Stored stored) {
    constexpr uint64_t kSpread = 0x9E3779B97F4A7C15U;
    const auto set = static_cast<uint32_t>(((key ^ name.size()) * kSpread) >> 58);
    uint32_t place = set * kWays;
    while (place < (set + 1) * kWays && !isName(text, seen_[place], name, key)) ++place;
    if (place == (set + 1) * kWays) {
      const auto kept = stored();
      const uint32_t number = names_.push(text.add(kept));
      // Not remembered: a name that contains "&" is stored escaped, so the same bytes in a file
      // would mean another name.
      if (kept.find('&') != kept.npos) return number;
      place = set * kWays + number % kWays;
      seen_[place] = {key, static_cast<uint32_t>(name.size()), number, 0};
    }
    seen_[last_].follower = place;
    last_ = place;
    return seen_[place].number;
  }

  GrowingArray<XmlSpan> names_;
  std::array<Seen, kSets * kWays> seen_;
  uint32_t last_ = 0;  // index of the name found last
};

}  // namespace vgps
