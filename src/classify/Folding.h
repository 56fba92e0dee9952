#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvantis::filter::classify {

/// Floats near this are one apart: adding it rounds to whole numbers.
inline constexpr float wholeNumbers = 0x1.8p23F;

/// Numbers the values of an axis in steps of one size, but for gaps in which nothing is: these have one
/// number each, and so have all values before the first piece and after the last one. A larger value never
/// has a smaller number, whatever is rounded.
struct Folding {
  static constexpr std::size_t mostPieces = 4;

  float origin = 0.0F;  ///< value number 0 lies here, when the first piece begins here
  float stepsPerUnit = 1.0F;
  std::size_t numPieces = 1;
  std::array<float, mostPieces> offsets{};  ///< from the origin to where a piece begins; the first one's is 0
  std::array<float, mostPieces> counts{};   ///< how many steps a piece is long: whole numbers

  /// The number of a value that is `distance` from the origin, before it is rounded to a whole number.
  float position(float distance) const {
    float sum = 0.0F;
    for (std::size_t k = 0; k < numPieces; ++k) {
      const float steps = (distance - offsets[k]) * stepsPerUnit;
      const float atLeast = steps > 0.0F ? steps : 0.0F;
      sum += atLeast < counts[k] ? atLeast : counts[k];
    }
    return sum;
  }

  /// The number that a value has.
  int number(float value) const {
    return static_cast<int>(position(value - origin) + wholeNumbers - wholeNumbers);
  }

  int last() const {
    float sum = 0.0F;
    for (std::size_t k = 0; k < numPieces; ++k) {
      sum += counts[k];
    }
    return static_cast<int>(sum);
  }
};

}  // namespace orvantis::filter::classify
