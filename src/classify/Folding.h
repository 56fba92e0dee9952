#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvantis::filter::classify {

/// Floats near this are 1 apart, so adding it rounds to whole numbers.
inline constexpr float wholeNumbers = 0x1.8p23F;

/// Numbers the values of an axis in steps of one size. Each empty gap between pieces has only one number, and
/// so have all values before the first piece and all values after the last one. A larger value never has a
/// smaller number, despite all rounding.
struct Folding {
  static constexpr std::size_t mostPieces = 4;

  float origin = 0.0F;  ///< the value that has number 0, where the first piece begins
  float stepsPerUnit = 1.0F;
  std::size_t numPieces = 1;
  std::array<float, mostPieces> offsets{};  ///< from the origin to the begin of each piece; 0 for the first
  std::array<float, mostPieces> counts{};   ///< the length of each piece in steps, a whole number

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
