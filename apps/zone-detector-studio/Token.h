#pragma once

#include <string>
#include <string_view>

namespace orvantis::studio {

/// 128 random bits from the system, in hexadecimal digits.
std::string newToken();

/// Compares in a time that does not depend on how many characters are equal, so that nobody can guess a token
/// step by step.
bool isSame(std::string_view token, std::string_view other);

}  // namespace orvantis::studio
