#pragma once

#include <charconv>
#include <string>

namespace orvantis::toolkit {

// Only these functions convert between text and floating-point numbers: always in the classic locale, always
// to the nearest number, and in the same way on systems whose standard library lacks these conversions.

/// Reads a decimal number at the beginning of a text as std::from_chars does: also "inf" and "nan", but
/// neither blanks nor a plus in front. When the number is out of range, the value is unchanged. Throws
/// nothing.
std::from_chars_result readNumber(const char* first, const char* last, double& value);
std::from_chars_result readNumber(const char* first, const char* last, float& value);

/// The shortest decimal text that reads back as the same double.
std::string toText(double value);

/// The value with that many significant digits, without trailing zeros, and with an exponent if that is
/// shorter: what a stream of that precision writes. At most 17 digits.
std::string toDigits(double value, int digits);

/// The value with at most that many decimals, without trailing zeros, and from 1e15 on the shortest text.
/// Never "-0".
std::string toText(double value, int decimals);

/// The value with exactly that many decimals, for columns of figures.
std::string toFixed(double value, int decimals);

}  // namespace orvantis::toolkit
