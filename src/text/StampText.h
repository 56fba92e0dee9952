#pragma once

#include <charconv>
#include <chrono>
#include <string>

namespace orvantis::toolkit {

// Times as decimal numbers of seconds, exact to the nanosecond. They do not go through floating-point
// numbers, whose width differs between systems.

/// Reads a decimal number at the beginning of a text, such as "-1.5" or "15e-1", as seconds: to the nearest
/// nanosecond, halves away from zero. It accepts neither blanks nor a plus in front, and neither "inf" nor
/// "nan". A time of 4.6e9 s (145 years) or more is out of range, so that the time between any two fits into
/// nanoseconds; the value is then unchanged. Throws nothing.
std::from_chars_result readSeconds(const char* first, const char* last, std::chrono::nanoseconds& value);

/// Seconds as the nearest double, for numbers in JSON.
double toSeconds(std::chrono::nanoseconds time);

/// Seconds to the nanosecond, without trailing zeros.
std::string toText(std::chrono::nanoseconds time);

/// Seconds with three decimals, for columns.
std::string toMilliseconds(std::chrono::nanoseconds time);

}  // namespace orvantis::toolkit
