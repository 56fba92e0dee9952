#include "Token.h"

#include <cstddef>
#include <random>

namespace orvantis::studio {

std::string newToken() {
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr std::size_t length = 32;
  std::random_device random;  // of the system
  std::string token;
  for (std::size_t i = 0; i < length; ++i) {
    token += digits[random() % digits.size()];
  }
  return token;
}

bool isSame(std::string_view token, std::string_view other) {
  if (token.size() != other.size()) {
    return false;
  }
  unsigned difference = 0;
  for (std::size_t i = 0; i < token.size(); ++i) {
    difference |= static_cast<unsigned char>(token[i]) ^ static_cast<unsigned char>(other[i]);
  }
  return difference == 0;
}

}  // namespace orvantis::studio
