#include <charconv>
#include <optional>

#include "base/number.h"
#include "xml/element.h"
#include "xml/escape.h"
#include "xml/tags.h"

// Query: LEFT OPERATOR RIGHT, for example  ? == "Placemark"
namespace vgps {
namespace {

struct Condition {
  std::string_view left;
  std::string_view comparison;
  std::string_view right;
  bool rightIsText = false;
};

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kXmlBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kXmlBlanks) + 1 - first);
}

std::optional<Condition> parse(std::string_view expression) {
  const size_t at = expression.find_first_of("=!<>");
  if (at == std::string_view::npos) return std::nullopt;
  const bool two = at + 1 < expression.size() && expression[at + 1] == '=';
  Condition condition;
  condition.left = trimmed(expression.substr(0, at));
  condition.comparison = expression.substr(at, two ? 2 : 1);
  condition.right = trimmed(expression.substr(at + (two ? 2 : 1)));
  if (condition.right.starts_with('"')) {
    const size_t close = condition.right.rfind('"');
    condition.right = close == 0 ? condition.right.substr(1) : condition.right.substr(1, close - 1);
    condition.rightIsText = true;
  }
  return condition;
}

// A text that parses as 0 must be exactly "0".
std::optional<int32_t> wholeNumber(std::string_view text) {
  const int32_t value = leadingInt(text);
  if (value == 0 && text != "0") return std::nullopt;
  return value;
}

bool compareNumbers(int32_t left, std::string_view comparison, int32_t right) {
  if (comparison == "==") return left == right;
  if (comparison == "!=") return left != right;
  if (comparison == "<") return left < right;
  if (comparison == "<=") return left <= right;
  if (comparison == ">") return left > right;
  return comparison == ">=" && left >= right;
}

bool holds(const Condition& condition, std::string_view left) {
  if (condition.rightIsText) {
    const bool equal = condition.right == "*" || left == condition.right;
    if (condition.comparison == "==") return equal;
    return condition.comparison == "!=" && !equal;
  }
  const auto leftNumber = wholeNumber(left);
  const auto rightNumber = wholeNumber(condition.right);
  return leftNumber && rightNumber &&
         compareNumbers(*leftNumber, condition.comparison, *rightNumber);
}

// Calls `found` for each element of `top`'s subtree that satisfies `expression`.
template <class Found>
void query(XmlElement top, std::string_view expression, int depth, Found found) {
  const auto condition = parse(expression);
  if (!top || !condition) return;
  XmlTree& tree = *top.tree();
  uint32_t lastName = kNoRow;
  bool matches = false;
  uint32_t level = 0;
  for (uint32_t at = top.index(); at != kNoRow;) {
    const XmlElementRow& row = tree.elements[at];
    if (row.name != lastName) {
      lastName = row.name;
      matches = holds(*condition, condition->left == "?" ? unescapeXml(tree.nameOf(row))
                                                         : std::string(condition->left));
    }
    if (matches) found(XmlElement(&tree, at));
    const bool deeper = depth < 0 || level < static_cast<uint32_t>(depth);
    at = deeper ? tree.nextInSubtree(top.index(), at, level)
                : tree.nextBeside(top.index(), at, level);
  }
}

}  // namespace

size_t XmlElement::Query(std::string_view expression, XmlElement* results, int depth) const {
  size_t count = 0;
  query(*this, expression, depth, [&](XmlElement element) { results[count++] = element; });
  return count;
}

std::vector<XmlElement> XmlElement::Query(std::string_view expression, int depth) const {
  std::vector<XmlElement> results;
  query(*this, expression, depth, [&](XmlElement element) { results.push_back(element); });
  return results;
}

}  // namespace vgps
