#include "settings/JsonNotation.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvantis::json {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The end of the run of digits that starts at `at`.
std::size_t skipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && isDigit(text[at])) {
    ++at;
  }
  return at;
}

bool isNumber(std::string_view text) {
  std::size_t at = text.starts_with('-') ? 1 : 0;
  const std::size_t integer = at;
  at = skipDigits(text, at);
  if (at == integer || (text[integer] == '0' && at > integer + 1)) {
    return false;
  }
  if (at < text.size() && text[at] == '.') {
    const std::size_t fraction = ++at;
    at = skipDigits(text, at);
    if (at == fraction) {
      return false;
    }
  }
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
      ++at;
    }
    const std::size_t exponent = at;
    at = skipDigits(text, at);
    if (at == exponent) {
      return false;
    }
  }
  return at == text.size();
}

}  // namespace

bool isLiteral(std::string_view text) {
  return text == "true" || text == "false" || text == "null" || isNumber(text);
}

bool needsQuotedFlag(std::string_view text) {
  return text.empty() || isLiteral(text);
}

bool isListName(std::string_view name) {
  static constexpr std::array<std::string_view, 7> names = {
      "Point", "ExclusionZone", "EvaluationField", "Zone", "lidar", "Zone3d", "CounterLine"};
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace orvantis::json
