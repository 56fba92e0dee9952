#include "settings/JsonExponent.h"

#include <algorithm>

namespace orvantis::json {
namespace {

constexpr std::size_t keptDigits = 9;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isPartOfNumber(char c) {
  return isDigit(c) || c == 'e' || c == 'E' || c == '+' || c == '-' || c == '.';
}

bool isExponentSign(char c) {
  return c == '+' || c == '-';
}

// Not 0 when the letter of a long exponent may be at `at`: with and without a sign, the second to the tenth
// character after the letter are digits. This checks only two of them, without branches and in bytes, so that
// the compiler can check many places at once.
unsigned char mayStartAt(const char* at) {
  const auto lowerCase = static_cast<unsigned char>(static_cast<unsigned char>(at[0]) | 0x20U);
  const auto second = static_cast<unsigned char>(at[2] - '0');
  const auto tenth = static_cast<unsigned char>(at[keptDigits + 1] - '0');
  // NOLINTNEXTLINE(readability-implicit-bool-conversion): numbers would be made of the bytes
  return static_cast<unsigned char>((lowerCase == 'e') & (second < 10) & (tenth < 10));
}

}  // namespace

Part findLongExponent(std::string_view text, std::size_t from) {
  constexpr std::size_t length = keptDigits + 2;  // of the shortest long exponent: letter and digits
  constexpr std::size_t step = 256;
  for (std::size_t begin = from; begin + length <= text.size(); begin += step) {
    const std::size_t end = std::min(begin + step, text.size() - length + 1);
    unsigned char candidates = 0;
    for (std::size_t at = begin; at < end; ++at) {
      candidates |= mayStartAt(text.data() + at);
    }
    for (std::size_t at = begin; candidates != 0 && at < end; ++at) {
      if (mayStartAt(text.data() + at) == 0) {
        continue;
      }
      const std::size_t digits = at + (isExponentSign(text[at + 1]) ? 2 : 1);
      std::size_t endOfDigits = digits;
      while (endOfDigits < text.size() && isDigit(text[endOfDigits])) {
        ++endOfDigits;
      }
      if (endOfDigits - digits > keptDigits) {
        return {digits + keptDigits, endOfDigits};
      }
    }
  }
  return {text.size(), text.size()};
}

std::size_t endOfLastToken(std::string_view text) {
  std::size_t end = text.size();
  while (end > 0 && isPartOfNumber(text[end - 1])) {
    --end;
  }
  return end;
}

}  // namespace orvantis::json
