#pragma once

#include <chrono>
#include <string>

namespace orvantis::toolkit {

/// Seconds as the double next to them, for numbers in JSON.
double toSeconds(std::chrono::nanoseconds time);

/// Seconds to the nanosecond, without trailing zeros.
std::string toText(std::chrono::nanoseconds time);

/// Seconds with three decimals, for columns.
std::string toMilliseconds(std::chrono::nanoseconds time);

}  // namespace orvantis::toolkit
