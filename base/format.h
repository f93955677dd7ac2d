#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

// printf for our own texts: the same formats, but type-safe, without the locale and with
// std::string arguments.
namespace vgps {

// One argument, with what the conversions need to know of its type.
class FormatArgument {
 public:
  template <std::integral T>
  FormatArgument(T value)  // NOLINT(google-explicit-constructor)
      : kind_(Kind::whole),
        negative_(value < T{0}),
        whole_(static_cast<uint64_t>(value)),
        mask_(UINT64_MAX >> (64 - 8 * sizeof(T))) {}
  FormatArgument(double value) : kind_(Kind::real), real_(value) {}         // NOLINT
  FormatArgument(std::string_view text) : text_(text) {}                    // NOLINT
  FormatArgument(const char* text) : text_(text == nullptr ? "" : text) {}  // NOLINT
  FormatArgument(const std::string& text) : text_(text) {}                  // NOLINT

  int64_t whole() const;
  // The bits of a whole number as an unsigned one of the same size.
  uint64_t bits() const { return static_cast<uint64_t>(whole()) & mask_; }
  double real() const;
  std::string text() const;

 private:
  enum class Kind { whole, real, text };
  Kind kind_ = Kind::text;
  bool negative_ = false;
  uint64_t whole_ = 0;
  uint64_t mask_ = UINT64_MAX;
  double real_ = 0;
  std::string_view text_;
};

// %d %i %u %x %X %c %s %f %%, with the flags "-", "0", "+" and blank, width and precision, each of
// which may be "*"; length letters (h, l, ll, z, I64) are read over, because the arguments know
// their size. A missing argument counts as an empty text, an unknown conversion is put out as it
// stands.
std::string formatArguments(std::string_view format,
                            std::initializer_list<FormatArgument> arguments);

template <class... Arguments>
std::string formatText(std::string_view format, const Arguments&... arguments) {
  return formatArguments(format, {FormatArgument(arguments)...});
}

}  // namespace vgps
