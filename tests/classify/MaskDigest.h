#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <filter/classify/PointClassifier.h>

#include "classify/BorderlineSites.h"

namespace orvantis::testing {

/// The masks of a million points on the borders of zones, as one number. Every machine, compiler and kind of
/// processor instructions comes to this one; a change of it is a change of verdicts.
constexpr std::uint64_t expectedDigest = 0x0d15c81b990b4096;

constexpr std::size_t numSites = 125;
constexpr std::size_t pointsPerSite = 4000;  // in floats, and as many in doubles

/// Many masks as one number.
class Digest {
 public:
  void add(const std::vector<std::uint64_t>& masks) {
    for (const std::uint64_t mask : masks) {
      value_ = (value_ ^ mask) * 0x9E3779B97F4A7C15U;
      value_ ^= value_ >> 32U;
    }
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0;
};

/// @param classifier a PointClassifier, or what stands behind it
template <typename Real, typename Classifier>
std::vector<std::uint64_t> masksOf(const Classifier& classifier,
                                   const std::vector<BorderlineSites::Point>& points) {
  std::vector<Real> coordinates;
  for (const BorderlineSites::Point& point : points) {
    for (const double coordinate : {point.x, point.y, point.z}) {
      coordinates.push_back(static_cast<Real>(coordinate));
    }
  }
  std::vector<std::uint64_t> masks(points.size());
  classifier.classify(
      filter::classify::PointsView<Real>::interleaved(coordinates.data(), 3 * sizeof(Real), points.size()),
      masks.data());
  return masks;
}

}  // namespace orvantis::testing
