#pragma once

#include <charconv>
#include <string>

namespace orvantis::toolkit {

// The only place that converts text to floating-point numbers and back: always in the classic locale, always
// to the nearest number, and the same on systems whose standard library cannot do it.

/// Reads a decimal number at the beginning of a text, "inf" and "nan" among them, as std::from_chars does: no
/// blanks, no leading plus. Out of range, the value stays as it was. Throws nothing.
std::from_chars_result readNumber(const char* first, const char* last, double& value);
std::from_chars_result readNumber(const char* first, const char* last, float& value);

/// The shortest decimal text that reads back as the same double.
std::string toText(double value);

/// The value with so many significant digits, without trailing zeros, and with an exponent where that is
/// shorter: what a stream of that precision writes. At most 17 digits.
std::string toDigits(double value, int digits);

/// The value with at most that many decimals, without trailing zeros and without "-0".
std::string toText(double value, int decimals);

/// The value with exactly that many decimals, for columns of figures.
std::string toFixed(double value, int decimals);

}  // namespace orvantis::toolkit
