#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include "recording/DecimalDigits.h"

namespace orvantis::toolkit {

namespace detail {

/// The numbers that `readShort` does not know.
std::from_chars_result readLongDecimal(const char* first, const char* last, float& value);
std::from_chars_result readLongDecimal(const char* first, const char* last, double& value);

}  // namespace detail

/// Reads a decimal number, of the usual length without a call: a frame has hundreds of thousands. Gives what
/// `readNumber` gives, the nearest number, and takes a leading plus as well. A number that is too small for a
/// float becomes the nearest float, which may be zero.
/// @param last where the text ends; what lies before it may be looked at, beyond the number too
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
