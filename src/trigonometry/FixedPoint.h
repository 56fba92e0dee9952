#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "trigonometry/Binary.h"

namespace orvantis::trigonometry {

/// A number from 0 up to 2^32 with as many binary digits behind the point as are asked for. What does not fit
/// behind the point is cut off, so that a product or a quotient is less than one unit of the last digit too
/// small. Two that are put together must have as many digits.
class FixedPoint {
 public:
  /// With `numWords` words of 32 digits behind the point.
  explicit FixedPoint(std::size_t numWords, std::uint32_t value = 0);
  FixedPoint(std::size_t numWords, const Binary& value);

  bool isZero() const;
  bool operator<(const FixedPoint& other) const;

  FixedPoint& operator+=(const FixedPoint& other);
  /// `other` must not be greater.
  FixedPoint& operator-=(const FixedPoint& other);
  FixedPoint& operator/=(std::uint32_t divisor);
  FixedPoint operator*(const FixedPoint& other) const;

  /// Without the last words.
  FixedPoint cutTo(std::size_t numWords) const;

  /// 1 when `a` is greater, -1 when `b` is, 0 when they differ by less than one unit of the word before the
  /// last.
  friend int compare(const FixedPoint& a, const FixedPoint& b);

 private:
  std::vector<std::uint32_t> words_;  // the lowest first; the last one is before the point
};

}  // namespace orvantis::trigonometry
