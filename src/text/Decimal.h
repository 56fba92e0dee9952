#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include "text/DecimalDigits.h"

namespace orvantis::toolkit {

namespace detail {

/// Reads a number of up to 19 digits. @return whether it could be decided; else nothing is changed
bool readUsual(const char* first, const char* last, double& value, const char*& end);

/// Reads the numbers that `readShort` cannot read.
std::from_chars_result readLongDecimal(const char* first, const char* last, float& value);
std::from_chars_result readLongDecimal(const char* first, const char* last, double& value);

}  // namespace detail

/// Reads a decimal number. It gives what `readNumber` gives, the nearest number, and also accepts a plus in
/// front. A number that is too small for a float becomes the nearest float, which may be zero. Inline for
/// numbers of the usual length, because a frame has hundreds of thousands of them.
/// @param last the end of the text; bytes before it may be read even behind the number
template <typename Real>
std::from_chars_result readDecimal(const char* first, const char* last, Real& value) {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  if (last - first >= detail::shortWindow) {
    detail::ShortDecimal number;
    const std::size_t size = detail::readShort(first, number);
    if (size != 0 && detail::toReal(number, value)) {
      return {first + size, std::errc()};
    }
  }
#endif
  return detail::readLongDecimal(first, last, value);
}

}  // namespace orvantis::toolkit
