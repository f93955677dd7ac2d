#include "base/format.h"

#include <charconv>
#include <cmath>

#include "base/number.h"

namespace vgps {
namespace {

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

// What stands between "%" and the conversion letter.
struct Conversion {
  bool left = false;
  bool zeros = false;
  char plus = 0;  // '+' or ' ' in front of a number that is not negative
  size_t width = 0;
  bool hasPrecision = false;
  size_t precision = 0;
};

class Formatter {
 public:
  Formatter(std::string_view format, std::initializer_list<FormatArgument> arguments)
      : rest_(format), next_(arguments.begin()), end_(arguments.end()) {}

  std::string format() {
    while (!rest_.empty()) {
      const size_t percent = rest_.find('%');
      out_ += rest_.substr(0, percent);
      if (percent == std::string_view::npos) break;
      rest_.remove_prefix(percent);
      convert();
    }
    return std::move(out_);
  }

 private:
  FormatArgument take() { return next_ == end_ ? FormatArgument("") : *next_++; }

  char peek() const { return rest_.empty() ? '\0' : rest_.front(); }
  char step() {
    const char c = peek();
    if (!rest_.empty()) rest_.remove_prefix(1);
    return c;
  }

  size_t number() {
    constexpr size_t kMost = 1 << 20;
    if (peek() == '*') {
      step();
      const int64_t value = take().whole();
      return value < 0 ? 0 : static_cast<size_t>(value) % kMost;
    }
    size_t value = 0;
    while (isDigit(peek())) value = (value * 10 + static_cast<size_t>(step() - '0')) % kMost;
    return value;
  }

  Conversion takeConversion() {
    Conversion conversion;
    for (; std::string_view("-0+ #").find(peek()) != std::string_view::npos; step()) {
      if (peek() == '-') conversion.left = true;
      if (peek() == '0') conversion.zeros = true;
      if (peek() == '+' || (peek() == ' ' && conversion.plus == 0)) conversion.plus = peek();
    }
    conversion.width = number();
    conversion.hasPrecision = peek() == '.';
    if (conversion.hasPrecision) {
      step();
      conversion.precision = number();
    }
    if (rest_.starts_with("I64")) rest_.remove_prefix(3);
    while (std::string_view("hlzjt").find(peek()) != std::string_view::npos) step();
    return conversion;
  }

  void convert() {
    const std::string_view whole = rest_;
    step();
    const Conversion conversion = takeConversion();
    switch (step()) {
      case '%': out_ += '%'; break;
      case 'c': pad(std::string(1, static_cast<char>(take().whole())), conversion); break;
      case 's':
        pad(take().text().substr(0, conversion.hasPrecision ? conversion.precision : SIZE_MAX),
            conversion);
        break;
      case 'd':
      case 'i': putWhole(take(), conversion); break;
      case 'u': putDigits(false, decimalText(take().bits()), conversion); break;
      case 'x': putDigits(false, hexText(take().bits(), 0), conversion); break;
      case 'X': putDigits(false, hexText(take().bits(), 'A' - 'a'), conversion); break;
      case 'f': putReal(take().real(), conversion); break;
      default: out_ += whole.substr(0, whole.size() - rest_.size());
    }
  }

  static std::string hexText(uint64_t value, int shift) {
    char buffer[16];
    std::string text(buffer, std::to_chars(buffer, buffer + sizeof buffer, value, 16).ptr);
    for (char& c : text) {
      if (c >= 'a') c = static_cast<char>(c + shift);
    }
    return text;
  }

  void putWhole(const FormatArgument& argument, const Conversion& conversion) {
    const int64_t value = argument.whole();
    const std::string text = decimalText(value);
    putDigits(value < 0, value < 0 ? text.substr(1) : text, conversion);
  }

  void putReal(double value, const Conversion& conversion) {
    constexpr size_t kMostDecimals = 40;
    const size_t decimals = conversion.hasPrecision ? conversion.precision : 6;
    const std::string text =
        fixedText(value, static_cast<int>(decimals < kMostDecimals ? decimals : kMostDecimals));
    const bool negative = text.starts_with('-');
    Conversion plain = conversion;
    plain.hasPrecision = false;
    putDigits(negative, text.substr(negative ? 1 : 0), plain);
  }

  void putDigits(bool negative, std::string digits, const Conversion& conversion) {
    if (conversion.hasPrecision && digits.size() < conversion.precision)
      digits.insert(0, conversion.precision - digits.size(), '0');
    const char sign = negative ? '-' : conversion.plus;
    const size_t taken = digits.size() + (sign != 0 ? 1 : 0);
    if (conversion.zeros && !conversion.left && !conversion.hasPrecision &&
        taken < conversion.width) {
      digits.insert(0, conversion.width - taken, '0');
    }
    if (sign != 0) digits.insert(0, 1, sign);
    pad(digits, conversion);
  }

  void pad(const std::string& text, const Conversion& conversion) {
    const size_t blanks = text.size() < conversion.width ? conversion.width - text.size() : 0;
    if (!conversion.left) out_.append(blanks, ' ');
    out_ += text;
    if (conversion.left) out_.append(blanks, ' ');
  }

  std::string_view rest_;
  const FormatArgument* next_;
  const FormatArgument* end_;
  std::string out_;
};

}  // namespace

int64_t FormatArgument::whole() const {
  constexpr double kMost = 9e18;
  if (kind_ == Kind::real) return std::abs(real_) < kMost ? static_cast<int64_t>(real_) : 0;
  return kind_ == Kind::whole ? static_cast<int64_t>(whole_) : leadingInt64(text_);
}

double FormatArgument::real() const {
  if (kind_ == Kind::real) return real_;
  if (kind_ == Kind::text) return leadingDouble(text_);
  return negative_ ? static_cast<double>(static_cast<int64_t>(whole_))
                   : static_cast<double>(whole_);
}

std::string FormatArgument::text() const {
  if (kind_ == Kind::text) return std::string(text_);
  if (kind_ == Kind::real) return shortestText(real_);
  return negative_ ? decimalText(static_cast<int64_t>(whole_)) : decimalText(whole_);
}

std::string formatArguments(std::string_view format,
                            std::initializer_list<FormatArgument> arguments) {
  return Formatter(format, arguments).format();
}

}  // namespace vgps
