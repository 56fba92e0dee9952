#include "trigonometry/Arguments.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace orvantis::testing {
namespace {

double anyDouble(std::uint64_t bits) {
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

constexpr double pi = 3.141592653589793;

}  // namespace

double scaled(std::int64_t mantissa, int exponent) {
  return std::ldexp(static_cast<double>(mantissa), exponent);
}

// From -1 to 1, of 53 digits.
double Arguments::signedFraction() {
  const double size = scaled(static_cast<std::int64_t>(random_() >> 11), -53);
  return below(2) == 0 ? size : -size;
}

double Arguments::nearby(double value, int steps) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  const auto reach = static_cast<std::uint64_t>(steps);
  return anyDouble(bits + below(2 * reach + 1) - reach);
}

// Here and below each number has its own statement: the order within one is the compiler's.
double Arguments::angle() {
  const std::uint64_t first = random_();
  const double fraction = signedFraction();
  switch (number_++ % 8) {
    case 0:
      return anyDouble(first);
    case 1:
      return 4.0 * fraction;
    case 2:
      return nearby(static_cast<double>(first % 64 + 1) * (pi / 4.0), 3);
    case 3:  // a rounded multiple of pi/4, often many turns away
      return nearby(static_cast<double>(first >> (11 + below(50))) * (pi / 4.0), 1);
    case 4:
      return std::ldexp(fraction, -static_cast<int>(first % 80));
    case 5:
      return std::ldexp(fraction, static_cast<int>(first % 1024));
    case 6:
      return scaled(static_cast<std::int64_t>(first % 4096) - 2048, -static_cast<int>(below(12)));
    default:
      return static_cast<double>(first % 1440 + 1) * 0.25 * 0.017453292519943295;
  }
}

Arguments::Direction Arguments::direction() {
  const std::uint64_t first = random_();
  const std::uint64_t second = random_();
  const double y = signedFraction();
  const double x = signedFraction();
  Direction result{y, x};
  switch (number_++ % 8) {
    case 0:
      result = {anyDouble(first), anyDouble(second)};
      break;
    case 1:
      result = {100.0 * y, 100.0 * x};
      break;
    case 2:  // near an axis
      result.y = std::ldexp(y, -static_cast<int>(first % 140));
      break;
    case 3:  // near a diagonal
      result.y = nearby(first % 2 == 0 ? x : -x, 3);
      break;
    case 4:  // near a multiple of a sixteenth
      result.y = nearby(static_cast<double>(first % 17) * 0.0625 * x, 3);
      break;
    case 5:  // the least doubles
      result = {scaled(static_cast<std::int64_t>(first % 64), -1074 + static_cast<int>(first % 30)),
                scaled(static_cast<std::int64_t>(second % 64) + 1, -static_cast<int>(second % 30))};
      break;
    case 6:
      result = {static_cast<double>(first % 200) - 100.0, static_cast<double>(second % 200) - 100.0};
      break;
    default:
      result = {static_cast<double>(static_cast<float>(50.0 * y)),
                static_cast<double>(static_cast<float>(50.0 * x))};
  }
  if (below(2) == 0) {
    std::swap(result.y, result.x);
  }
  return result;
}

}  // namespace orvantis::testing
