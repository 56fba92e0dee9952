#include "trigonometry/Exact.h"

#include <algorithm>

#include "trigonometry/FixedPoint.h"

// The two values that are compared are computed with more and more words behind the point, twice as many each
// time, until they differ by more than a word. The error stays far below that: counted in units of the last
// digit, each of the t terms of a series takes a few operations, and each operation drops less than one unit,
// so the errors are below 10 t. As t is below 32 times the number of words, they are below 2^32 for any
// number of words that fits into a memory.

namespace orvantis::trigonometry {
namespace {

constexpr std::size_t fewestWords = 8;  // room for the exact digits of all arguments

// atan(1 / n) = 1/n - 1/(3 n^3) + 1/(5 n^5) - ...
FixedPoint bearingOfInverse(std::uint32_t n, std::size_t numWords) {
  FixedPoint power(numWords, 1);
  power /= n;
  FixedPoint added = power;
  FixedPoint taken(numWords);
  for (std::uint32_t i = 3; !power.isZero(); i += 2) {
    power /= n * n;
    FixedPoint term = power;
    term /= i;
    (i % 4 == 3 ? taken : added) += term;
  }
  added -= taken;
  return added;
}

FixedPoint multiple(const FixedPoint& value, int factor) {
  FixedPoint sum = value;
  for (int i = 1; i < factor; ++i) {
    sum += value;
  }
  return sum;
}

// pi/2 = 8 atan(1/5) - 2 atan(1/239) (J. Machin, 1706).
FixedPoint halfPi(std::size_t numWords) {
  FixedPoint result = multiple(bearingOfInverse(5, numWords), 8);
  result -= multiple(bearingOfInverse(239, numWords), 2);
  return result;
}

// An angle as quarter turns and a rest from 0 to pi/2.
struct Quadrant {
  unsigned count;  // modulo 4
  FixedPoint rest;
};

Quadrant quadrantOf(const Binary& angle, std::size_t numWords) {
  constexpr int angleBits = 64;
  // Begins with a number below 1 and doubles it up to the angle. Each time it passes a quarter turn, the
  // quarter turn is subtracted. The doubling also doubles the error of pi/2, so the first steps have more
  // digits.
  const int numDoublings = std::max(angle.exponent + angleBits, 0);
  const std::size_t numFirst = numWords + static_cast<std::size_t>(numDoublings) / 32 + 1;
  const FixedPoint quarterTurn = halfPi(numFirst);
  Quadrant result{0, FixedPoint(numFirst, {angle.mantissa, angle.exponent - numDoublings})};
  for (int i = 0; i < numDoublings; ++i) {
    result.count *= 2;
    result.rest += result.rest;
    if (!(result.rest < quarterTurn)) {
      result.rest -= quarterTurn;
      ++result.count;
    }
  }
  result.count %= 4;
  result.rest = result.rest.cutTo(numWords);
  return result;
}

struct Direction {
  FixedPoint cosine;
  FixedPoint sine;
};

// Of an angle from 0 to pi/2: x^0/0! - x^2/2! + x^4/4! - ... and x^1/1! - x^3/3! + ...
Direction directionOf(const FixedPoint& angle, std::size_t numWords) {
  FixedPoint term(numWords, 1);
  Direction added{term, FixedPoint(numWords)};
  Direction taken{FixedPoint(numWords), FixedPoint(numWords)};
  for (std::uint32_t i = 1; !term.isZero(); ++i) {
    term = term * angle;
    term /= i;
    Direction& sum = i % 4 < 2 ? added : taken;
    (i % 2 == 0 ? sum.cosine : sum.sine) += term;
  }
  // The error may make the cosine negative near a quarter turn, and the sine near zero.
  const auto difference = [&](FixedPoint all, const FixedPoint& less) {
    return all < less ? FixedPoint(numWords) : all -= less;
  };
  return {difference(added.cosine, taken.cosine), difference(added.sine, taken.sine)};
}

// Asks with more and more digits until the answer is not 0, which means undecided.
template <typename Question>
bool isPositive(const Question& compareWith) {
  for (std::size_t numWords = fewestWords;; numWords *= 2) {
    const int answer = compareWith(numWords);
    if (answer != 0) {
      return answer > 0;
    }
  }
}

bool exceeds(const Binary& angle, const Binary& bound, bool isSine) {
  return isPositive([&](std::size_t numWords) {
    const Quadrant quadrant = quadrantOf(angle, numWords);
    const Direction direction = directionOf(quadrant.rest, numWords);
    const bool isUpright = quadrant.count % 2 != 0;
    return compare(isSine != isUpright ? direction.sine : direction.cosine, FixedPoint(numWords, bound));
  });
}

}  // namespace

bool sineExceeds(const Binary& angle, const Binary& bound) {
  return exceeds(angle, bound, true);
}

bool cosineExceeds(const Binary& angle, const Binary& bound) {
  return exceeds(angle, bound, false);
}

// The bearing exceeds the bound when (x, y) is to the left of the direction of the bound: when y cos(bound)
// is greater than x sin(bound).
bool bearingExceeds(const Binary& y, const Binary& x, bool isLeft, const Binary& bound) {
  return isPositive([&](std::size_t numWords) {
    const Quadrant quadrant = quadrantOf(bound, numWords);
    const Direction direction = directionOf(quadrant.rest, numWords);
    const bool isUpright = quadrant.count % 2 != 0;
    const FixedPoint rise = FixedPoint(numWords, y) * (isUpright ? direction.sine : direction.cosine);
    const FixedPoint run = FixedPoint(numWords, x) * (isUpright ? direction.cosine : direction.sine);
    const bool isRiseNegative = quadrant.count == 1 || quadrant.count == 2;
    const bool isRunNegative = isLeft != (quadrant.count >= 2);
    if (isRiseNegative != isRunNegative) {
      return isRiseNegative ? -1 : 1;
    }
    return isRiseNegative ? compare(run, rise) : compare(rise, run);
  });
}

}  // namespace orvantis::trigonometry
