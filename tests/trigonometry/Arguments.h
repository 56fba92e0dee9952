#pragma once

#include <cstdint>
#include <random>

namespace orvantis::testing {

/// Arguments made of random bits, the same on every machine: no distribution of the standard library and no
/// function that might round otherwise elsewhere.
class Arguments {
 public:
  explicit Arguments(std::uint64_t seed) : random_(seed) {}

  /// An angle, every kind in turn: any double at all, a heading, around a multiple of an eighth turn, tiny,
  /// huge, of few digits, a whole number of degrees.
  double angle();

  struct Direction {
    double y;
    double x;
  };
  /// A direction, every kind in turn: any two doubles at all, coordinates of a site, near an axis or a
  /// diagonal, with a bearing that is tiny or below all doubles, of few digits, of floats.
  Direction direction();

 private:
  std::uint64_t below(std::uint64_t limit) { return random_() % limit; }
  double signedFraction();
  double nearby(double value, int steps);

  std::mt19937_64 random_;
  unsigned number_ = 0;
};

/// mantissa * 2^exponent
double scaled(std::int64_t mantissa, int exponent);

}  // namespace orvantis::testing
