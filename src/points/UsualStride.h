#pragma once

#include <cstddef>
#include <type_traits>

namespace orvantis::toolkit {

/// What `function` answers for a distance in bytes from one value to the next. The usual distances, records
/// of three and four numbers, come as constants, so that the compiler takes several points at once.
/// @tparam Real the type of the numbers
template <typename Real, typename Function>
auto withUsualStride(std::size_t stride, const Function& function) {
  switch (stride) {
    case 3 * sizeof(Real):
      return function(std::integral_constant<std::size_t, 3 * sizeof(Real)>());
    case 4 * sizeof(Real):
      return function(std::integral_constant<std::size_t, 4 * sizeof(Real)>());
    default:
      return function(stride);
  }
}

}  // namespace orvantis::toolkit
