#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "trigonometry/Binary.h"

namespace orvantis::trigonometry {

/// A number from 0 up to 2^32 with a chosen number of binary digits behind the point. Further digits are cut
/// off, so a product or a quotient is too small by less than one unit of the last digit. Both operands of an
/// operation must have the same number of digits.
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

  /// The number with only that many words behind the point.
  FixedPoint cutTo(std::size_t numWords) const;

  /// 1 when `a` is greater, -1 when `b` is, 0 when they differ by less than one unit of the word before the
  /// last.
  friend int compare(const FixedPoint& a, const FixedPoint& b);

 private:
  std::vector<std::uint32_t> words_;  // the lowest first; the last one is before the point
};

}  // namespace orvantis::trigonometry
