#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "trigonometry/Doubted.h"
#include "trigonometry/Exact.h"
#include "trigonometry/Rounding.h"
#include "trigonometry/Series.h"
#include "trigonometry/Trigonometry.h"

namespace orvantis::trigonometry {
namespace {

constexpr double pi = 3.141592653589793;

// Bearings are computed in units of 2^-126.
constexpr int unit = -126;
constexpr Wide halfTurn = wide(0xc90fdaa22168c234, 0xc4c6628b80dc1cd1);
// atan(i / 16)
constexpr std::array<Wide, 17> bearingsOfSixteenths = {wide(0, 0),
                                                       wide(0x03feab76e59fbd38, 0xdb2c9e4b7038b835),
                                                       wide(0x07f56ea6ab0bdb71, 0x9644bcc4f9f44477),
                                                       wide(0x0bdcbda5e72d8113, 0x47b0b4f881c9c748),
                                                       wide(0x0fadbafc96406eb1, 0x56dc79ef5f7a217e),
                                                       wide(0x1362773707ebcbcd, 0x38b576931a4f5e65),
                                                       wide(0x16f61941e4def08e, 0x715464245b9fc890),
                                                       wide(0x1a64eec3cc23fcb6, 0xc84f92bd2003ce26),
                                                       wide(0x1dac670561bb4f68, 0xadfc88bd978751a0),
                                                       wide(0x20cafd29b6619f8a, 0x92da8272d8694570),
                                                       wide(0x23c01757bdfd67e6, 0xd720d78599710dd1),
                                                       wide(0x268be0399c6f7688, 0x1089be388813fcef),
                                                       wide(0x292f1f464d3dc249, 0x066a1fca915f6b27),
                                                       wide(0x2bab130e2d363020, 0x051c978bcf9481c2),
                                                       wide(0x2e014f8af08c679c, 0xf2cb69548429110f),
                                                       wide(0x3033a16e2b149990, 0x227758b11ba4be89),
                                                       wide(0x3243f6a8885a308d, 0x313198a2e0370734)};

constexpr Factors inverseOddNumbers() {
  Factors factors{};
  for (std::size_t i = 0; i < factors.size(); ++i) {
    factors[i] = ~Wide{0} / (2 * i + 3);
  }
  return factors;
}
constexpr Factors oddFactors = inverseOddNumbers();

// A coordinate without its sign: mantissa * 2^exponent. The highest bit of the mantissa is bit 52.
struct Leg {
  std::uint64_t mantissa;
  int exponent;

  friend bool operator<(const Leg& a, const Leg& b) {
    return a.exponent != b.exponent ? a.exponent < b.exponent : a.mantissa < b.mantissa;
  }
};

Leg legOf(std::uint64_t magnitude) {
  const Binary binary = binaryOf(magnitude);
  const int shift = leadingZeros(binary.mantissa) - (128 - mantissaBits);
  return {lowHalf(binary.mantissa) << shift, binary.exponent - shift};
}

// mantissa * 2^exponent, with a mantissa above 2^126. When it is not exact, less than 1 unit is missing.
struct Quotient {
  Wide mantissa;
  int exponent;
  bool isExact;
};

Quotient divide(std::uint64_t dividend, std::uint64_t divisor) {
  const int dividendShift = std::countl_zero(dividend);
  const int divisorShift = std::countl_zero(divisor);
  divisor <<= divisorShift;
  // The dividend is less than twice the divisor, so both halves of the quotient fit.
  const Wide first = static_cast<Wide>(dividend << dividendShift) << 63;
  const std::uint64_t high = lowHalf(first / divisor);
  const Wide second = (first - static_cast<Wide>(high) * divisor) << 64;
  const std::uint64_t low = lowHalf(second / divisor);
  return {wide(high, low), divisorShift - dividendShift - 127, second == static_cast<Wide>(low) * divisor};
}

// atan(q) = q (1 - q^2 (1/3 - q^2 (1/5 - ...))) for q up to 1/32. The quotient is too small by less than one
// unit, and its square by less than 2 parts of 2^128. The bracket is off by less than 4 parts, plus a third
// of the error of the square. The terms that the series leaves out are far below one part. With one part for
// the product, the sum is less than 8 units.
Estimate seriesOf(const Quotient& q) {
  const Wide square = highProduct(q.mantissa, q.mantissa);  // in units of 2^(128 + 2 * exponent)
  const Wide less =
      highProduct(q.mantissa, alternating(oddFactors, shiftedRight(square, -256 - 2 * q.exponent)));
  return {q.mantissa - less, q.exponent, 8};
}

// For y below 2^-61 of x, the bearing is y/x less about 2^-122 of it. The middle between two doubles has 54
// digits, a coordinate 53. So the middle is either y/x itself or at least 2^-107 of y/x away from it, and
// then the bearing is on the same side of the middle as y/x.
double leastBearing(const Leg& y, const Leg& x) {
  const Quotient q = divide(y.mantissa, x.mantissa);
  return nearest({q.mantissa, q.exponent + y.exponent - x.exponent, 0},
                 [&](const Binary&) { return !q.isExact; });
}

// The angle between a direction and an axis that is at most an eighth turn away: atan(shorter / longer). It
// is split into atan(i/16) and a rest, by atan(a) - atan(b) = atan((a - b) / (1 + a b)).
struct FromAxis {
  Wide sixteenths;  // in units of 2^-126, less than one too small
  bool isLess;      // whether the rest is subtracted
  Estimate rest;
};

FromAxis fromAxis(const Leg& shorter, const Leg& longer) {
  const int shift = longer.exponent - shorter.exponent;
  // Below 1/32 the nearest sixteenth is 0.
  const std::uint64_t i = shift <= 5 ? ((shorter.mantissa * 32 >> shift) / longer.mantissa + 1) / 2 : 0;
  if (i == 0) {
    Quotient q = divide(shorter.mantissa, longer.mantissa);
    q.exponent -= shift;
    return {0, false, seriesOf(q)};
  }
  // All of these numbers are exact and below 2^63.
  const std::uint64_t wanted = 16 * shorter.mantissa;
  const std::uint64_t given = i * longer.mantissa << shift;
  const std::uint64_t divisor = (16 * longer.mantissa << shift) + i * shorter.mantissa;
  const bool isLess = wanted < given;
  const std::uint64_t difference = isLess ? given - wanted : wanted - given;
  const Estimate rest = difference == 0 ? Estimate{0, unit, 0} : seriesOf(divide(difference, divisor));
  return {bearingsOfSixteenths[static_cast<std::size_t>(i)], isLess, rest};
}

// The bearing of a direction that is not along an axis, in the half plane above the x axis.
double bearingOf(const Leg& y, const Leg& x, bool isLeft, Wide doubt) {
  const bool isSteep = x < y;
  const Leg& longer = isSteep ? y : x;
  const Leg& shorter = isSteep ? x : y;
  const int shift = longer.exponent - shorter.exponent;
  const bool isFromXAxis = !isSteep && !isLeft;
  if (isFromXAxis && shift >= 62) {
    return leastBearing(y, x);
  }
  const FromAxis part = fromAxis(shorter, longer);
  Estimate value = part.rest;
  if (!isFromXAxis || part.sixteenths != 0) {
    const Wide rest = shiftedRight(part.rest.mantissa, unit - part.rest.exponent);
    const Wide angle = part.isLess ? part.sixteenths - rest : part.sixteenths + rest;
    const Wide axis = isSteep ? halfTurn / 2 : (isLeft ? halfTurn : 0);
    // Each of the three terms is too small by less than one unit, and the rest by 8 * 2^-5 more.
    value = {isSteep == isLeft ? axis + angle : axis - angle, unit, 4};
  }
  value.error += doubt;
  return nearest(value, [&](const Binary& middle) {
    const Binary longerBelow1{longer.mantissa, -mantissaBits};
    const Binary shorterBelow1{shorter.mantissa, -mantissaBits - shift};
    return bearingExceeds(isSteep ? longerBelow1 : shorterBelow1, isSteep ? shorterBelow1 : longerBelow1,
                          isLeft, middle);
  });
}

double bearingOf(std::uint64_t y, std::uint64_t x, bool isLeft, Wide doubt) {
  if (y == bitsOfInfinity && x == bitsOfInfinity) {
    return isLeft ? 3.0 * pi / 4.0 : pi / 4.0;
  }
  if (y == 0 || x == bitsOfInfinity) {
    return isLeft ? pi : 0.0;
  }
  if (x == 0 || y == bitsOfInfinity) {
    return pi / 2.0;
  }
  return bearingOf(legOf(y), legOf(x), isLeft, doubt);
}

}  // namespace

double bearing(double y, double x, Wide doubt) {
  const std::uint64_t ySign = bitsOf(y) & signBit;
  const std::uint64_t xSign = bitsOf(x) & signBit;
  const std::uint64_t up = bitsOf(y) ^ ySign;
  const std::uint64_t along = bitsOf(x) ^ xSign;
  if (up > bitsOfInfinity || along > bitsOfInfinity) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  const double result = bearingOf(up, along, xSign != 0, doubt);
  return ySign != 0 ? -result : result;
}

double bearing(double y, double x) {
  return bearing(y, x, 0);
}

}  // namespace orvantis::trigonometry
