#pragma once

#include <string>
#include <string_view>

namespace orvantis::studio {

/// 128 bits that nobody can guess, in hexadecimal digits.
std::string newToken();

/// Compares in a time that does not tell how much of it is right.
bool isSame(std::string_view token, std::string_view other);

}  // namespace orvantis::studio
